#include "fontlens/FontLensGraphicsView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

const QSize firstGridCell(24, 24);
// One notch of an ordinary wheel; finer ones add up to it.
constexpr int wheelStep = 120;

} // namespace

FontLensGraphicsView::FontLensGraphicsView(QWidget* parent)
    : QGraphicsView(parent)
    , m_gridCellSize(firstGridCell)
{
    setAlignment(Qt::AlignCenter);
    setTransformationAnchor(QGraphicsView::AnchorViewCenter);
    setResizeAnchor(QGraphicsView::AnchorViewCenter);
    // The grid and lines of a screen pixel's width do not move with what is scrolled.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    setRenderHint(QPainter::Antialiasing);
    // Pictures dropped on the view are the window's to open.
    setAcceptDrops(false);
    viewport()->setMouseTracking(true);
}

void FontLensGraphicsView::setGridCellSize(QSize size)
{
    m_gridCellSize = size;
    viewport()->update();
}

void FontLensGraphicsView::setGridEnabled(bool enabled)
{
    m_gridEnabled = enabled;
    viewport()->update();
}

void FontLensGraphicsView::setZoom(double percent)
{
    if (!(percent > 0) || percent == m_zoom)
        return;
    m_zoom = percent;
    applyTransform();
    emit zoomChanged();
}

void FontLensGraphicsView::setZoomAt(double percent, QPoint viewPos)
{
    const QPointF held = mapToScene(viewPos);
    setZoom(percent);
    scrollBy(mapFromScene(held) - viewPos);
}

void FontLensGraphicsView::setRotation(double degrees)
{
    if (degrees == m_rotation)
        return;
    m_rotation = degrees;
    applyTransform();
    emit rotationChanged();
}

void FontLensGraphicsView::applyTransform()
{
    setTransform(QTransform().rotate(m_rotation).scale(m_zoom / 100, m_zoom / 100));
}

void FontLensGraphicsView::scrollBy(QPoint distance)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + distance.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + distance.y());
}

void FontLensGraphicsView::setPanning(bool panning)
{
    m_panning = panning;
    m_dragButton = Qt::NoButton;
    updateCursor();
}

void FontLensGraphicsView::updateCursor()
{
    if (m_dragButton != Qt::NoButton)
        viewport()->setCursor(Qt::ClosedHandCursor);
    else if (m_panning)
        viewport()->setCursor(Qt::OpenHandCursor);
    else
        viewport()->unsetCursor();
}

bool FontLensGraphicsView::startDrag(QMouseEvent* event)
{
    if (m_dragButton != Qt::NoButton || (!m_panning && event->button() != Qt::MiddleButton))
        return false;
    m_dragButton = event->button();
    m_dragPoint = mapToScene(event->pos());
    updateCursor();
    return true;
}

void FontLensGraphicsView::mousePressEvent(QMouseEvent* event)
{
    emit mousePressed(mapToScene(event->pos()));
    if (m_dragButton == Qt::NoButton && !startDrag(event))
        QGraphicsView::mousePressEvent(event);
}

void FontLensGraphicsView::mouseDoubleClickEvent(QMouseEvent* event)
{
    emit mousePressed(mapToScene(event->pos()));
    if (m_dragButton == Qt::NoButton && !startDrag(event))
        QGraphicsView::mouseDoubleClickEvent(event);
}

void FontLensGraphicsView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_dragButton == Qt::NoButton) {
        QGraphicsView::mouseReleaseEvent(event);
    } else if (event->button() == m_dragButton) {
        m_dragButton = Qt::NoButton;
        updateCursor();
    }
    emit mouseReleased(mapToScene(event->pos()), event->modifiers() & Qt::ShiftModifier,
                       event->button() == Qt::RightButton);
}

void FontLensGraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragButton == Qt::NoButton)
        QGraphicsView::mouseMoveEvent(event);
    else
        scrollBy(mapFromScene(m_dragPoint) - event->pos());
    emit mouseMoved(mapToScene(event->pos()));
}

void FontLensGraphicsView::wheelEvent(QWheelEvent* event)
{
    QGraphicsView::wheelEvent(event);
    event->accept();
    m_wheelDelta += event->angleDelta().y();
    while (qAbs(m_wheelDelta) >= wheelStep) {
        const bool zoomIn = m_wheelDelta > 0;
        m_wheelDelta -= zoomIn ? wheelStep : -wheelStep;
        emit zoomRequested(zoomIn, event->position().toPoint());
    }
}

void FontLensGraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    emit resized(event->size());
}

// A shade that neither a white page nor a dark one is lost on.
void FontLensGraphicsView::drawBackground(QPainter* painter, const QRectF& rect)
{
    painter->fillRect(rect, palette().color(QPalette::Window).darker(112));
}

// White first and dotted black over it: one of the two shows on any ground.
void FontLensGraphicsView::paintEvent(QPaintEvent* event)
{
    QGraphicsView::paintEvent(event);
    if (!m_gridEnabled || m_gridCellSize.isEmpty())
        return;
    QVector<QLine> lines;
    const QSize size = viewport()->size();
    for (int x = m_gridCellSize.width(); x < size.width(); x += m_gridCellSize.width())
        lines.append(QLine(x, 0, x, size.height() - 1));
    for (int y = m_gridCellSize.height(); y < size.height(); y += m_gridCellSize.height())
        lines.append(QLine(0, y, size.width() - 1, y));
    QPainter painter(viewport());
    for (const QPen& pen : {QPen(Qt::white, 1, Qt::SolidLine), QPen(Qt::black, 1, Qt::DotLine)}) {
        painter.setPen(pen);
        painter.drawLines(lines);
    }
}
