#pragma once

#include <QGraphicsView>

// The picture, zoomed and turned, with a grid that stays upright over it: turning the picture until a line of text
// follows the grid sets it straight. Zoom is in percent, rotation in degrees clockwise; both are applied from scratch
// each time, so going there and back leaves no trace of rounding. The wheel asks for a zoom, it does not scroll. The
// middle button moves the picture whatever the tool.
class FontLensGraphicsView : public QGraphicsView
{
    Q_OBJECT
    // In pixels of the view, 24 by 24 at first: near the height of text lines once a picture fits the window. An empty
    // size draws no lines.
    Q_PROPERTY(QSize gridCellSize READ gridCellSize WRITE setGridCellSize)
    Q_PROPERTY(bool gridEnabled READ isGridEnabled WRITE setGridEnabled)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
    Q_PROPERTY(double rotation READ rotation WRITE setRotation NOTIFY rotationChanged)

public:
    explicit FontLensGraphicsView(QWidget* parent = nullptr);

    QSize gridCellSize() const { return m_gridCellSize; }
    void setGridCellSize(QSize size);
    bool isGridEnabled() const { return m_gridEnabled; }
    void setGridEnabled(bool enabled);

    double zoom() const { return m_zoom; }
    // Around the middle of the view; values not above zero are ignored.
    void setZoom(double percent);
    // Keeps the scene's point under viewPos where it is, as far as the picture can be scrolled.
    void setZoomAt(double percent, QPoint viewPos);
    double rotation() const { return m_rotation; }
    void setRotation(double degrees);

    // With the hand, a drag moves the picture; without it the view only forwards its mouse events.
    void setPanning(bool panning);

signals:
    void resized(QSize size);
    void mousePressed(QPointF scenePos);
    void mouseReleased(QPointF scenePos, bool shiftPressed, bool rightButtonPressed);
    void mouseMoved(QPointF scenePos);
    void zoomRequested(bool zoomIn, QPoint viewPos);
    void zoomChanged();
    void rotationChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTransform();
    bool startDrag(QMouseEvent* event);
    void scrollBy(QPoint distance);
    void updateCursor();

    QSize m_gridCellSize;
    bool m_gridEnabled = false;
    double m_zoom = 100;
    double m_rotation = 0;
    bool m_panning = false;
    Qt::MouseButton m_dragButton = Qt::NoButton;
    QPointF m_dragPoint; // of the scene, held under the mouse
    int m_wheelDelta = 0;
};
