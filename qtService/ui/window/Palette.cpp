#include "qtService/ui/window/Palette.h"

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

} // namespace ui
