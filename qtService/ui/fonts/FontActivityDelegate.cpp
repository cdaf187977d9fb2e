#include "qtService/ui/fonts/FontActivityDelegate.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyle>

FontActivityDelegate::FontActivityDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{
}

void FontActivityDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);
    const QImage image = index.data(Qt::DecorationRole).value<QImage>();
    if (image.isNull())
        return;
    QRect target(QPoint(), image.size() / image.devicePixelRatio());
    target.moveCenter(option.rect.center());
    painter->drawImage(target, image);
}
