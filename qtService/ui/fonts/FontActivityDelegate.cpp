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
    if (option.state & QStyle::State_Selected) {
        // The drawing's colours are made for the list's ground, not for any theme's highlight.
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(option.palette.color(QPalette::Base));
        painter->drawEllipse(target);
        painter->restore();
    }
    painter->drawImage(target, image);
}
