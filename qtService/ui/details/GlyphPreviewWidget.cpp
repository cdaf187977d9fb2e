#include "qtService/ui/details/GlyphPreviewWidget.h"

#include "qtService/ui/details/DetailsStyle.h"
#include "qtService/ui/window/Palette.h"

#include <QPainter>

GlyphPreviewWidget::GlyphPreviewWidget(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName(QStringLiteral("glyphPreview"));
    hide();
}

void GlyphPreviewWidget::setImage(const QImage& image)
{
    m_image = image;
    resize((QSizeF(image.size()) / image.devicePixelRatio()).toSize());
    update();
}

void GlyphPreviewWidget::paintEvent(QPaintEvent*)
{
    const bool dark = ui::isDark(palette());
    QPainter painter(this);
    painter.setBrush(dark ? palette().color(QPalette::Base) : QColor(Qt::white));
    painter.setPen(QPen(ui::gridColor(palette()), 1));
    painter.drawRect(0, 0, width() - 1, height() - 1);
    painter.drawImage(rect(), ui::tinted(m_image, dark ? palette().color(QPalette::Text) : QColor(Qt::black)));
}
