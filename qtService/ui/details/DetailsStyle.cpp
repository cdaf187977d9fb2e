#include "qtService/ui/details/DetailsStyle.h"

#include "qtService/ui/window/Palette.h"

#include <QPainter>
#include <QPalette>

namespace ui {

QImage tinted(QImage image, const QColor& color)
{
    if (image.isNull() || color == Qt::black)
        return image;
    if (image.format() == QImage::Format_Indexed8) {
        QVector<QRgb> palette = image.colorTable();
        for (QRgb& entry : palette)
            entry = qRgba(color.red(), color.green(), color.blue(), qAlpha(entry));
        image.setColorTable(palette);
        return image;
    }
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QColor gridColor(const QPalette& palette)
{
    return isDark(palette) ? palette.color(QPalette::Base).lighter(170) : QColor(Qt::lightGray);
}

QString plainHeaderStyle()
{
    return QStringLiteral("QHeaderView { background: palette(base); border: none; }"
                          "QHeaderView::section { background: palette(base); color: palette(text); border: none;"
                          " padding: 0px 10px 0px 8px; }");
}

} // namespace ui
