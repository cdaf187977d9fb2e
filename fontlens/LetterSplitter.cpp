#include "fontlens/LetterSplitter.h"

#include <QGraphicsScene>
#include <QPen>

namespace {

// Of the screen's pixels, whatever the zoom.
QPen screenPen(const QColor& color, Qt::PenStyle style, qreal width)
{
    QPen pen(color, width, style);
    pen.setCosmetic(true);
    return pen;
}

} // namespace

LetterSplitter::LetterSplitter(QGraphicsScene* scene, QPointF firstPoint, QGraphicsItem* parent)
    : QGraphicsPathItem(parent)
    , m_points({firstPoint})
    , m_companion(new QGraphicsPathItem(this))
{
    setPen(screenPen(Qt::black, Qt::DashLine, 1));
    setZValue(1);
    m_companion->setPen(screenPen(Qt::white, Qt::SolidLine, 3));
    m_companion->setFlag(QGraphicsItem::ItemStacksBehindParent);
    if (scene && !parent)
        scene->addItem(this);
    updatePath();
}

LetterSplitter::~LetterSplitter()
{
    if (scene())
        scene()->removeItem(this);
}

void LetterSplitter::addPoint(QPointF point)
{
    m_points.append(point);
    updatePath();
}

void LetterSplitter::setPreviewEndPoint(QPointF point)
{
    m_previewEndPoint = point;
    updatePath();
}

// A path of one point paints nothing; the drawing starts to show with the first move.
void LetterSplitter::updatePath()
{
    QPainterPath path;
    path.addPolygon(m_points);
    if (!m_previewEndPoint.isNull())
        path.lineTo(m_previewEndPoint);
    setPath(path);
    m_companion->setPath(path);
}

// The pen's width belongs to the screen, so a zoomed-out view needs more of the scene than the path's own outline.
QRectF LetterSplitter::boundingRect() const
{
    constexpr qreal margin = 60;
    return path().controlPointRect().adjusted(-margin, -margin, margin, margin);
}
