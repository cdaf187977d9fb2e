#include "fontlens/FontLensBusyIndicator.h"
#include "fontlens/FontLensDialog.h"
#include "fontlens/FontLensForm.h"
#include "fontlens/FontLensGraphicsScene.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/LetterSplitter.h"
#include "fontlens/recognition/FontRecognizerSession.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>

// What the mouse does in the picture, and how the picture is shown.

using FontRecognizer::FontRecognizerLetterSelectionPtr;

void FontLensDialog::onToolTriggered(QAction* action)
{
    // A cut line with two ends is one; a single point is none.
    if (m_splitter && m_splitter->polygon().size() > 1) {
        endSplitter();
    } else if (m_splitter) {
        m_scene->deleteSplitter(m_splitter);
        m_splitter = nullptr;
    }
    m_form->view->setPanning(action == m_form->panImage);
    showPage(FontLensForm::PicturePage);
}

void FontLensDialog::onMouseMoved(QPointF scenePos, QPointF, Qt::MouseButtons, Qt::MouseButton, Qt::KeyboardModifiers)
{
    if (m_splitter && m_form->tools->checkedAction() == m_form->splitLetters)
        m_splitter->setPreviewEndPoint(scenePos);
}

void FontLensDialog::onMouseReleased(QPointF scenePos, Qt::MouseButtons, Qt::MouseButton eventTriggerButton,
                                     Qt::KeyboardModifiers keyboardModifiers)
{
    if (!m_session || isAwaiting())
        return;
    const QAction* tool = m_form->tools->checkedAction();
    if (tool == m_form->selectLetter && m_scene->sceneRect().contains(scenePos))
        selectLetterAt(scenePos, keyboardModifiers & Qt::ShiftModifier);
    else if (tool == m_form->splitLetters)
        continueSplitter(scenePos, eventTriggerButton);
}

void FontLensDialog::selectLetterAt(QPointF scenePos, bool extend)
{
    setAwaiting(tr("Cutting out the letter..."));
    const int threshold = m_form->cmbSelectionSensitivity->currentData().toInt();
    const int angle = int(m_form->view->rotation());
    const QPoint point = scenePos.toPoint();
    if (extend && m_session->letterCount() > 0)
        m_session->extendLastSelectedLetter(point, angle, threshold);
    else
        m_session->selectLetter(point, angle, threshold);
}

void FontLensDialog::onLetterSelected(bool success, FontRecognizerLetterSelectionPtr)
{
    setAwaiting(QString());
    if (!success)
        tellFailure(m_session->lastResult(), tr("Failed to select the letter."));
}

void FontLensDialog::onLetterSelectionExtended(bool success)
{
    setAwaiting(QString());
    if (!success)
        tellFailure(m_session->lastResult(), tr("Failed to extend the letter selection."));
}

// The strip learns its new width from an event that is under way.
void FontLensDialog::onLetterAdded()
{
    QScrollBar* bar = m_form->lettersArea->horizontalScrollBar();
    QMetaObject::invokeMethod(
        bar, [bar] { bar->setValue(bar->maximum()); }, Qt::QueuedConnection);
}

void FontLensDialog::continueSplitter(QPointF scenePos, Qt::MouseButton button)
{
    if (button == Qt::LeftButton && !m_splitter) {
        m_splitter = m_scene->createSplitter(scenePos);
    } else if (button == Qt::LeftButton) {
        m_splitter->addPoint(scenePos);
    } else if (button == Qt::RightButton && m_splitter) {
        m_splitter->addPoint(scenePos);
        endSplitter();
    }
}

void FontLensDialog::endSplitter()
{
    m_splitter->setPreviewEndPoint(QPointF());
    m_splitter = nullptr;
    m_form->removeSplitters->setVisible(true);
    handOverSplitters();
}

void FontLensDialog::handOverSplitters()
{
    QList<QPolygonF> polygons;
    const QList<LetterSplitter*> splitters = m_scene->splitters();
    for (const LetterSplitter* splitter : splitters)
        polygons.append(splitter->polygon());
    if (m_session)
        m_session->setSplitters(polygons);
}

void FontLensDialog::onClearSplitters()
{
    m_splitter = nullptr;
    m_scene->deleteSplitters();
    m_form->removeSplitters->setVisible(false);
    handOverSplitters();
}

void FontLensDialog::fitPicture()
{
    const QComboBox* zoom = m_form->cmbZoom;
    const QRectF picture = QTransform().rotate(m_form->view->rotation()).mapRect(m_scene->sceneRect());
    const QSize room = m_form->view->maximumViewportSize();
    int best = 0;
    for (int i = 0; i < zoom->count() && zoom->itemData(i).toDouble() <= 100; ++i) {
        const double factor = zoom->itemData(i).toDouble() / 100;
        if (picture.width() * factor <= room.width() && picture.height() * factor <= room.height())
            best = i;
    }
    m_form->cmbZoom->setCurrentIndex(best);
}

void FontLensDialog::stepZoom(int steps)
{
    m_form->cmbZoom->setCurrentIndex(qBound(0, m_form->cmbZoom->currentIndex() + steps, m_form->cmbZoom->count() - 1));
}

void FontLensDialog::onZoomLevelChanged()
{
    m_form->view->setZoom(m_form->cmbZoom->currentData().toDouble());
}

void FontLensDialog::onZoomRequested(bool zoomIn, QPoint viewPos)
{
    const QSignalBlocker blocker(m_form->cmbZoom);
    stepZoom(zoomIn ? +1 : -1);
    m_form->view->setZoomAt(m_form->cmbZoom->currentData().toDouble(), viewPos);
}

void FontLensDialog::onRotationChanged()
{
    m_form->view->setRotation(m_form->spbRotation->value());
}

void FontLensDialog::onShowGridStateChanged()
{
    m_form->view->setGridEnabled(m_form->chkbDisplayGrid->isChecked());
}
