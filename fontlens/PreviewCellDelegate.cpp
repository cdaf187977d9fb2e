#include "fontlens/PreviewCellDelegate.h"

#include <QImage>
#include <QPainter>

void PreviewCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    auto image = index.data(Qt::DecorationRole).value<QImage>();
    if (image.isNull() || !(option->state & QStyle::State_Selected))
        return;
    // What lies on nothing is ink; a picture with a ground of its own stays as it is.
    if (qAlpha(image.pixel(0, 0)) == 0) {
        const QPalette::ColorGroup group = option->state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRectF(QPointF(), QSizeF(image.size()) / image.devicePixelRatio()),
                         option->palette.color(group, QPalette::HighlightedText));
    }
    QIcon icon;
    icon.addPixmap(QPixmap::fromImage(image), QIcon::Selected); // or the style would tint it
    option->icon = icon;
}
