#include "fontlens/LetterSplitter.h"

#include <QGraphicsScene>
#include <QPen>

namespace {

QPen hairline(const QColor& color, Qt::PenStyle style)
{
    QPen pen(style);
    pen.setColor(color);
    pen.setCosmetic(true);
    return pen;
}

} // namespace

LetterSplitter::LetterSplitter(QGraphicsScene* scene, QPointF firstPoint, QGraphicsItem* parent)
    : QGraphicsPathItem(parent)
    , m_points({firstPoint})
    , m_companion(new QGraphicsPathItem(this))
{
    setPen(hairline(Qt::black, Qt::DashLine));
    setZValue(1);
    m_companion->setPen(hairline(Qt::white, Qt::SolidLine));
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
    constexpr qreal margin = 40;
    return path().controlPointRect().adjusted(-margin, -margin, margin, margin);
}
