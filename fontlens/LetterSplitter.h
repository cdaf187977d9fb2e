#pragma once

#include <QGraphicsPathItem>
#include <QPolygonF>

// A cut line over the picture, for letters that touch: a polyline in scene coordinates, dashed over a wider solid
// white companion so that it shows on every ground. Both keep their width on the screen at every zoom. The companion is
// a child of the line, so whoever deletes the line, its scene included, removes both.
class LetterSplitter : public QGraphicsPathItem
{
public:
    LetterSplitter(QGraphicsScene* scene, QPointF firstPoint, QGraphicsItem* parent = nullptr);
    ~LetterSplitter() override;

    void addPoint(QPointF point);
    // Where the line would go next, drawn but not part of polygon(). A null point means nowhere.
    void setPreviewEndPoint(QPointF point);
    QPolygonF polygon() const { return m_points; }

    QRectF boundingRect() const override;

private:
    void updatePath();

    QPolygonF m_points;
    QPointF m_previewEndPoint;
    QGraphicsPathItem* m_companion;
};
