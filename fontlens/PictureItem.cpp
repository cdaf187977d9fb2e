#include "fontlens/PictureItem.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

constexpr qreal pixelsShowFrom = 2; // screen pixels for each of the picture's

} // namespace

PictureItem::PictureItem()
{
    setShapeMode(QGraphicsPixmapItem::BoundingRectShape);
}

void PictureItem::setPicture(const QPixmap& picture)
{
    m_reduced.clear();
    setPixmap(picture);
}

const QPixmap& PictureItem::copyFor(qreal scale)
{
    constexpr int smallest = 64;
    int halvings = 0;
    for (; scale <= 0.5; scale *= 2)
        ++halvings;
    if (m_reduced.isEmpty())
        m_reduced.append(pixmap());
    while (m_reduced.size() <= halvings && m_reduced.last().width() > smallest && m_reduced.last().height() > smallest)
        m_reduced.append(
            m_reduced.last().scaled(m_reduced.last().size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return m_reduced.at(qMin(halvings, m_reduced.size() - 1));
}

void PictureItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (pixmap().isNull())
        return;
    const qreal scale = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform()) *
                        painter->device()->devicePixelRatioF();
    const QPixmap& copy = copyFor(scale);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, scale < pixelsShowFrom);
    painter->drawPixmap(QRectF(QPointF(), QSizeF(pixmap().size())), copy, QRectF(copy.rect()));
}
