#include "fontlens/FontLensGraphicsScene.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/LetterSplitter.h"
#include "tests/support/testregistry.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

// The picture's view, its scene and the cut lines.
class PictureViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scene = std::make_unique<FontLensGraphicsScene>();
        m_view = std::make_unique<FontLensGraphicsView>();
        QPixmap picture(400, 200);
        picture.fill(Qt::gray);
        m_scene->setPicture(picture);
        m_view->setScene(m_scene.get());
        m_view->resize(300, 300);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }

    void cleanup()
    {
        m_view.reset();
        m_scene.reset();
    }

    void sceneCoordinatesArePixelsOfThePicture()
    {
        QCOMPARE(m_scene->sceneRect(), QRectF(0, 0, 400, 200));
        QVERIFY(m_scene->hasPicture());
    }

    void zoomAndRotationLeaveNoTraceOfRounding()
    {
        QSignalSpy zoomed(m_view.get(), &FontLensGraphicsView::zoomChanged);
        QSignalSpy rotated(m_view.get(), &FontLensGraphicsView::rotationChanged);
        for (const double zoom : {3.13, 66.66, 6400.0, 100.0})
            m_view->setZoom(zoom);
        for (const double angle : {13.0, -359.0, 0.0})
            m_view->setRotation(angle);
        QCOMPARE(zoomed.count(), 4);
        QCOMPARE(rotated.count(), 3);
        QVERIFY(m_view->transform().isIdentity());
        m_view->setRotation(90);
        m_view->setZoom(200);
        QCOMPARE(m_view->transform().map(QPointF(10, 0)), QPointF(0, 20));
        QCOMPARE(m_view->property("zoom").toDouble(), 200.0);
        QCOMPARE(m_view->property("rotation").toDouble(), 90.0);
        m_view->setZoom(0);
        m_view->setZoom(qQNaN());
        QCOMPARE(m_view->zoom(), 200.0);
    }

    void zoomingAtAPointKeepsItThere()
    {
        m_view->setZoom(200);
        m_view->centerOn(200, 100);
        const QPoint at(100, 120);
        const QPointF held = m_view->mapToScene(at);
        for (const double zoom : {300.0, 1600.0, 6400.0, 400.0, 200.0}) {
            m_view->setZoomAt(zoom, at);
            const QPointF now = m_view->mapToScene(at);
            QVERIFY2(QLineF(now, held).length() < 2, qPrintable(QString::number(zoom)));
        }
    }

    void aSmallPictureStaysInTheMiddle()
    {
        m_view->setZoom(25);
        m_view->resize(500, 350);
        const QPoint middle = m_view->mapFromScene(m_scene->sceneRect().center());
        QVERIFY((middle - m_view->viewport()->rect().center()).manhattanLength() <= 2);
    }

    void theWheelAsksForAZoomAndDoesNotScroll()
    {
        m_view->setZoom(800);
        const int before = m_view->verticalScrollBar()->value();
        QSignalSpy asked(m_view.get(), &FontLensGraphicsView::zoomRequested);
        QSignalSpy sceneAsked(m_scene.get(), &FontLensGraphicsScene::zoomRequested);
        turnWheel(-120);
        turnWheel(40); // a fine wheel adds up to a notch
        turnWheel(40);
        QCOMPARE(asked.count(), 1);
        turnWheel(40);
        QCOMPARE(asked.count(), 2);
        QCOMPARE(asked.at(0).at(0).toBool(), false);
        QCOMPARE(asked.at(1).at(0).toBool(), true);
        QCOMPARE(asked.at(1).at(1).toPoint(), QPoint(50, 60));
        QCOMPARE(sceneAsked.first().at(0).toDouble(), -120.0);
        QCOMPARE(m_view->verticalScrollBar()->value(), before);
    }

    void theHandMovesThePicture()
    {
        m_view->setZoom(800);
        m_view->centerOn(200, 100);
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
        m_view->setPanning(true);
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::OpenHandCursor);
        int released = 0;
        connect(m_scene.get(), &FontLensGraphicsScene::mouseReleased, m_view.get(), [&released] { ++released; });
        const QPointF held = m_view->mapToScene(150, 150);
        QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, QPoint(150, 150));
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ClosedHandCursor);
        moveMouse(QPoint(110, 190), Qt::LeftButton);
        QVERIFY(QLineF(m_view->mapToScene(110, 190), held).length() < 1);
        QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, QPoint(110, 190));
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::OpenHandCursor);
        QCOMPARE(released, 0);
        m_view->setPanning(false);
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
    }

    void mouseEventsReachBothSignals()
    {
        struct Event
        {
            QPoint at;
            Qt::MouseButton button;
            Qt::KeyboardModifiers modifiers;
        };
        QVector<Event> pressed;
        QVector<Event> released;
        int moved = 0;
        connect(m_scene.get(), &FontLensGraphicsScene::mousePressed, m_view.get(),
                [&pressed](QPointF at, Qt::MouseButtons, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
                    pressed.append({at.toPoint(), button, modifiers});
                });
        connect(m_scene.get(), &FontLensGraphicsScene::mouseReleased, m_view.get(),
                [&released](QPointF at, Qt::MouseButtons, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
                    released.append({at.toPoint(), button, modifiers});
                });
        connect(m_scene.get(), &FontLensGraphicsScene::mouseMoved, m_view.get(), [&moved] { ++moved; });
        QSignalSpy viewReleased(m_view.get(), &FontLensGraphicsView::mouseReleased);
        const QPoint at = m_view->mapFromScene(QPointF(30, 40));
        moveMouse(at, Qt::NoButton);
        QTest::mouseClick(m_view->viewport(), Qt::RightButton, Qt::ShiftModifier, at);
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(moved, 1);
        QCOMPARE(pressed.size(), 2);
        QCOMPARE(released.size(), 2);
        QCOMPARE(released.first().at, QPoint(30, 40));
        QCOMPARE(released.first().button, Qt::RightButton);
        QCOMPARE(released.first().modifiers, Qt::KeyboardModifiers(Qt::ShiftModifier));
        QCOMPARE(viewReleased.first().at(1).toBool(), true);
        QCOMPARE(viewReleased.first().at(2).toBool(), true);
        QCOMPARE(viewReleased.last().at(2).toBool(), false);
    }

    void theGridIsWhiteWithBlackDots()
    {
        m_view->setGridCellSize(QSize(20, 30));
        m_view->setProperty("gridEnabled", true);
        m_view->setRotation(20); // the grid stays upright
        const QImage shown = m_view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QVERIFY(hasWhiteAndBlackOnly(shown.copy(40, 0, 1, shown.height())));
        QVERIFY(hasWhiteAndBlackOnly(shown.copy(0, 60, shown.width(), 1)));
        m_view->setProperty("gridEnabled", false);
        const QImage without = m_view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QVERIFY(!hasWhiteAndBlackOnly(without.copy(40, 0, 1, without.height())));
        m_view->setGridCellSize(QSize(0, 0));
        m_view->setGridEnabled(true);
        m_view->viewport()->grab(); // an empty cell draws nothing, and ends
    }

    void aSplitterFollowsItsPointsAndTheMouse()
    {
        LetterSplitter* splitter = m_scene->createSplitter(QPointF(10, 20));
        QCOMPARE(m_scene->splitters().size(), 1);
        QCOMPARE(splitter->zValue(), 1.0);
        QCOMPARE(splitter->pen().style(), Qt::DashLine);
        QCOMPARE(splitter->pen().color(), QColor(Qt::black));
        QCOMPARE(splitter->pen().widthF(), QPen().widthF());
        splitter->addPoint(QPointF(30, 40));
        splitter->setPreviewEndPoint(QPointF(50, 60));
        QCOMPARE(splitter->polygon(), QPolygonF(QVector<QPointF>{QPointF(10, 20), QPointF(30, 40)}));
        QCOMPARE(splitter->path().elementCount(), 3);
        QCOMPARE(splitter->path().currentPosition(), QPointF(50, 60));
        splitter->setPreviewEndPoint(QPointF());
        QCOMPARE(splitter->path().currentPosition(), QPointF(30, 40));

        const auto companion = dynamic_cast<QGraphicsPathItem*>(splitter->childItems().value(0));
        QVERIFY(companion);
        QCOMPARE(companion->path(), splitter->path());
        QCOMPARE(companion->pen().style(), Qt::SolidLine);
        QCOMPARE(companion->pen().color(), QColor(Qt::white));

        const int items = m_scene->items().size();
        m_scene->deleteSplitters();
        QCOMPARE(m_scene->items().size(), items - 2);
        QVERIFY(m_scene->splitters().isEmpty());
    }

    void aSplitterMayOutliveOrGoWithItsScene()
    {
        {
            QGraphicsScene scene;
            const std::unique_ptr<LetterSplitter> splitter(new LetterSplitter(&scene, QPointF(1, 2)));
            QCOMPARE(scene.items().size(), 2);
        }
        auto scene = std::make_unique<QGraphicsScene>();
        new LetterSplitter(scene.get(), QPointF(1, 2));
        scene.reset();
    }

private:
    void turnWheel(int delta)
    {
        QWheelEvent event(QPointF(50, 60), m_view->viewport()->mapToGlobal(QPoint(50, 60)), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_view->viewport(), &event);
    }

    // As an event of its own: the platform's cursor does not move without a display.
    void moveMouse(QPoint pos, Qt::MouseButtons buttons)
    {
        QMouseEvent event(QEvent::MouseMove, pos, m_view->viewport()->mapToGlobal(pos), Qt::NoButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(m_view->viewport(), &event);
    }

    static bool hasWhiteAndBlackOnly(const QImage& line)
    {
        int white = 0;
        int black = 0;
        for (int y = 0; y < line.height(); ++y) {
            for (int x = 0; x < line.width(); ++x) {
                white += line.pixel(x, y) == qRgb(255, 255, 255);
                black += line.pixel(x, y) == qRgb(0, 0, 0);
            }
        }
        return white > 10 && black > 10 && white + black == line.width() * line.height();
    }

    std::unique_ptr<FontLensGraphicsScene> m_scene;
    std::unique_ptr<FontLensGraphicsView> m_view;
};

KERVAL_TEST(PictureViewTest)

#include "PictureViewTest.moc"
