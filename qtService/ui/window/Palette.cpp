#include "qtService/ui/window/Palette.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace ui {

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

void outlineChecks(QWidget* widget)
{
    QPalette palette = widget->palette();
    if (!isDark(palette))
        return;
    const QColor text = palette.color(QPalette::WindowText);
    palette.setColor(QPalette::Window, text.darker(140));
    widget->setPalette(palette);
}

void mute(QWidget* label)
{
    constexpr int faint = 160;
    QColor text = label->parentWidget()->palette().color(QPalette::WindowText);
    text.setAlpha(faint);
    QPalette palette;
    palette.setColor(QPalette::WindowText, text);
    label->setPalette(palette);
}

void ensureLegibleLinks()
{
    constexpr int darkestGray = 80;
    // Only colours that are set here count as the application's own; all others go on following the theme.
    QPalette palette = QApplication::palette();
    if (!isDark(palette) || qGray(palette.color(QPalette::Link).rgb()) >= darkestGray)
        return;
    palette.setColor(QPalette::Link, QColor(74, 144, 226));
    palette.setColor(QPalette::LinkVisited, QColor(160, 130, 220));
    QApplication::setPalette(palette);
}

} // namespace ui
