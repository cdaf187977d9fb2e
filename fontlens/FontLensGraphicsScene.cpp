#include "fontlens/FontLensGraphicsScene.h"

#include "fontlens/LetterSplitter.h"
#include "fontlens/PictureItem.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSceneWheelEvent>

FontLensGraphicsScene::FontLensGraphicsScene(QObject* parent)
    : QGraphicsScene(parent)
    , m_picture(new PictureItem)
{
    // A handful of items: an index costs more than it saves.
    setItemIndexMethod(QGraphicsScene::NoIndex);
    addItem(m_picture);
}

void FontLensGraphicsScene::setPicture(const QPixmap& picture)
{
    m_picture->setPicture(picture);
    setSceneRect(QRectF(QPointF(), QSizeF(picture.size())));
}

bool FontLensGraphicsScene::hasPicture() const
{
    return !m_picture->pixmap().isNull();
}

LetterSplitter* FontLensGraphicsScene::createSplitter(QPointF firstPoint)
{
    m_splitters.append(new LetterSplitter(this, firstPoint));
    return m_splitters.last();
}

void FontLensGraphicsScene::deleteSplitter(LetterSplitter* splitter)
{
    if (m_splitters.removeOne(splitter))
        delete splitter;
}

void FontLensGraphicsScene::deleteSplitters()
{
    qDeleteAll(m_splitters);
    m_splitters.clear();
}

void FontLensGraphicsScene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mousePressEvent(event);
    emit mousePressed(event->scenePos(), event->buttons(), event->button(), event->modifiers());
}

// The second of two quick clicks is a press like any other: the user may click two letters within that time.
void FontLensGraphicsScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseDoubleClickEvent(event);
    emit mousePressed(event->scenePos(), event->buttons(), event->button(), event->modifiers());
}

void FontLensGraphicsScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseReleaseEvent(event);
    emit mouseReleased(event->scenePos(), event->buttons(), event->button(), event->modifiers());
}

void FontLensGraphicsScene::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseMoveEvent(event);
    emit mouseMoved(event->scenePos(), event->lastScenePos(), event->buttons(), event->button(), event->modifiers());
}

void FontLensGraphicsScene::wheelEvent(QGraphicsSceneWheelEvent* event)
{
    // Accepted, or the view would scroll as well.
    event->accept();
    emit zoomRequested(event->delta(), event->scenePos());
}
