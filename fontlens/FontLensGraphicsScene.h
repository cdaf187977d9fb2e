#pragma once

#include <QGraphicsScene>

class LetterSplitter;
class PictureItem;

// The picture and the cut lines over it. One unit of the scene is one pixel of the picture, whose top left corner is
// the origin. Tells where the mouse goes; what that means is the window's to decide.
class FontLensGraphicsScene : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit FontLensGraphicsScene(QObject* parent = nullptr);

    void setPicture(const QPixmap& picture);
    bool hasPicture() const;

    LetterSplitter* createSplitter(QPointF firstPoint);
    QList<LetterSplitter*> splitters() const { return m_splitters; }
    void deleteSplitter(LetterSplitter* splitter);
    void deleteSplitters();

signals:
    // The wheel's delta in eighths of a degree.
    void zoomRequested(double deltaPercent, QPointF scenePos);
    void mousePressed(QPointF scenePos, Qt::MouseButtons pressedButtons, Qt::MouseButton eventTriggerButton,
                      Qt::KeyboardModifiers keyboardModifiers);
    void mouseReleased(QPointF scenePos, Qt::MouseButtons pressedButtons, Qt::MouseButton eventTriggerButton,
                       Qt::KeyboardModifiers keyboardModifiers);
    void mouseMoved(QPointF scenePos, QPointF lastScenePos, Qt::MouseButtons pressedButtons,
                    Qt::MouseButton eventTriggerButton, Qt::KeyboardModifiers keyboardModifiers);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void wheelEvent(QGraphicsSceneWheelEvent* event) override;

private:
    PictureItem* m_picture;
    QList<LetterSplitter*> m_splitters;
};
