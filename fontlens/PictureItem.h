#pragma once

#include <QGraphicsPixmapItem>
#include <QVector>

// The picture in its scene. Zoomed out it is drawn from a copy reduced by averaging, since picking single pixels breaks
// thin strokes; zoomed in far its pixels show as they are.
class PictureItem : public QGraphicsPixmapItem
{
public:
    PictureItem();

    void setPicture(const QPixmap& picture);

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    const QPixmap& copyFor(qreal scale);

    QVector<QPixmap> m_reduced; // each half as large as the one before, made when first needed
};
