#include "fontlens/FontLensGraphicsScene.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/LetterSplitter.h"
#include "fontlens/SelectedLetterWidget.h"
#include "tests/fontlens/FontLensDriver.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

namespace {

const QString noConnection =
    QStringLiteral("Failed to connect to the Kerval server.\nPlease make sure you have a working Internet connection "
                   "and/or try again later!");

QString item(const QUrlQuery& query, const char* name)
{
    return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

} // namespace

// Opening a picture, looking at it, and picking letters out of it.
class FontLensDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_lens = std::make_unique<FontLensDriver>(); }
    void cleanup() { m_lens.reset(); }

    void withoutAPictureOnlyOpeningIsOffered()
    {
        for (const char* name : {"actionSelectLetter", "actionPanImage", "actionSplitLetters"})
            QVERIFY2(!m_lens->action(name)->isEnabled(), name);
        QVERIFY(m_lens->action("actionOpenImage")->isEnabled());
        QVERIFY(!m_lens->action("actionRemoveSplitters")->isVisible());
        QVERIFY(m_lens->find<QWidget>("dropHint")->isVisible());
        m_lens->click(QPoint(0, 0));
        QCOMPARE(m_lens->service().count("objat"), 0);
    }

    void aFileOpensAndFillsTheWindow()
    {
        QVERIFY(m_lens->openPicture());
        QCOMPARE(scene()->sceneRect(), QRectF(QPointF(), QSizeF(FakeRecognition::pictureSize())));
        QVERIFY(scene()->hasPicture());
        QVERIFY(!m_lens->find<QWidget>("dropHint")->isVisible());
        QCOMPARE(zoom()->currentText(), QStringLiteral("100%"));
        const QPoint middle = view()->mapFromScene(QPointF(200, 100));
        QVERIFY((middle - view()->viewport()->rect().center()).manhattanLength() <= 2);
    }

    void whileAnAnswerIsAwaitedTheWindowIsUsable()
    {
        m_lens->service().answer("imgupload", ScriptedRecognitionServer::silence());
        m_lens->choosePicture();
        QVERIFY(m_lens->isBusy());
        for (const char* name : {"actionOpenImage", "actionOpenImageFromURL", "actionSelectLetter", "actionHelp"})
            QVERIFY2(!m_lens->action(name)->isEnabled(), name);
        for (const char* name : {"btnIdentify", "btnBack"})
            QVERIFY2(!m_lens->find<QPushButton>(name)->isEnabled(), name);
        QVERIFY(!m_lens->find<QComboBox>("cmbSelectionSensitivity")->isEnabled());
        const QWidget* indicator = m_lens->find<QWidget>("busyIndicator");
        QTRY_VERIFY(indicator->isVisible());
        QVERIFY(!m_lens->find<QWidget>("dropHint")->isVisible());
        m_lens->dialog()->resize(700, 600);
        const auto centreOf = [](const QWidget* widget) { return widget->mapToGlobal(widget->rect().center()); };
        QTRY_VERIFY((centreOf(indicator) - centreOf(view()->viewport())).manhattanLength() <= 2);

        QTest::keyClick(m_lens->dialog(), Qt::Key_Escape); // stops waiting
        QVERIFY(!m_lens->isBusy());
        QVERIFY(!indicator->isVisible());
        QVERIFY(m_lens->dialog()->isVisible());
        QVERIFY(m_lens->find<QPushButton>("btnIdentify")->isEnabled());
        QVERIFY(!m_lens->action("actionSelectLetter")->isEnabled());
        m_lens->service().restore("imgupload");
        QVERIFY(m_lens->openPicture());

        m_lens->service().answer("objat", ScriptedRecognitionServer::silence());
        m_lens->click(QPoint(5, 5));
        QVERIFY(m_lens->isBusy());
        QSignalSpy closed(m_lens->dialog(), &FontLensDialog::closed);
        m_lens->dialog()->close();
        QCOMPARE(closed.count(), 1);
    }

    void whatCannotBeOpenedIsTold()
    {
        FontLensDriver::Message message;
        kerval::testing::writeFile(m_lens->pictureFile(), "no picture");
        {
            ModalAnswers answers({FontLensDriver::read(&message)});
            drop({QUrl::fromLocalFile(m_lens->pictureFile())});
            QTRY_COMPARE(answers.given(), 1);
        }
        QCOMPARE(message.title, QStringLiteral("FontLens - Open Image From File"));
        QCOMPARE(message.text, QStringLiteral("Please open a valid image file!"));
        {
            ModalAnswers answers(
                {ModalAnswers::typeAndAccept(QStringLiteral("no address")), FontLensDriver::read(&message)});
            m_lens->action("actionOpenImageFromURL")->trigger();
            QCOMPARE(answers.given(), 2);
        }
        QCOMPARE(message.title, QStringLiteral("FontLens - Open Image From URL"));
        QCOMPARE(message.text, QStringLiteral("Please enter a valid image URL!"));
        QCOMPARE(m_lens->service().count("imgdownload"), 0);
    }

    void aPictureThatTheServiceRefusesKeepsTheOneThatIsOpen()
    {
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(2));
        FontLensDriver::Message message;
        m_lens->service().answer("imgdownload", FakeRecognition::brokenPage());
        {
            ModalAnswers answers({FontLensDriver::read(&message)});
            drop({QUrl(QStringLiteral("http://example.org/a.png"))});
            QTRY_COMPARE(answers.given(), 1);
        }
        QCOMPARE(message.title, QStringLiteral("FontLens"));
        QCOMPARE(message.text,
                 QStringLiteral("Failed to open the supplied image.\nPlease make sure that the image file "
                                "or URL is valid!"));
        m_lens->service().answer("imgdownload", ScriptedRecognitionServer::earlyClose());
        {
            ModalAnswers answers({FontLensDriver::read(&message)});
            drop({QUrl(QStringLiteral("http://example.org/a.png"))});
            QTRY_COMPARE(answers.given(), 1);
        }
        QCOMPARE(message.text, noConnection);
        QCOMPARE(m_lens->letterCount(), 2);
        QVERIFY(m_lens->action("actionSelectLetter")->isEnabled());
        // A new one takes the place of all that.
        QVERIFY(m_lens->openPicture());
        QTRY_COMPARE(m_lens->letterCount(), 0);
    }

    void addressesAreOfferedFromTheClipboardAndTyped()
    {
        QGuiApplication::clipboard()->setText(QStringLiteral("http://example.org/b.png"));
        QString offered;
        QString title;
        QSignalSpy announced(m_lens->dialog(), &FontLensDialog::addressTyped);
        ModalAnswers answers({[&](QDialog* dialog) {
            offered = dialog->findChild<QLineEdit*>()->text();
            title = dialog->windowTitle();
            dialog->accept();
        }});
        m_lens->action("actionOpenImageFromURL")->trigger();
        QCOMPARE(offered, QStringLiteral("http://example.org/b.png"));
        QCOMPARE(title, QStringLiteral("FontLens - Open Image From URL"));
        QCOMPARE(announced.count(), 1);
        QCOMPARE(announced.first().first().toUrl(), QUrl(QStringLiteral("http://example.org/b.png")));
        QTRY_VERIFY(m_lens->action("actionSelectLetter")->isEnabled());
        QCOMPARE(m_lens->service().count("imgdownload"), 1);
    }

    void picturesAreDroppedAndPasted()
    {
        QImage image(30, 20, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QGuiApplication::clipboard()->setImage(image);
        QTest::keyClick(m_lens->dialog()->windowHandle(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(m_lens->service().count("imgupload"), 1);
        QTRY_VERIFY(m_lens->action("actionSelectLetter")->isEnabled());
        drop({QUrl::fromLocalFile(m_lens->pictureFile())});
        QTRY_COMPARE(m_lens->service().count("imgupload"), 2);
        QTRY_VERIFY(!m_lens->isBusy());
        QGuiApplication::clipboard()->setText(QStringLiteral("just words"));
        QTest::keyClick(m_lens->dialog()->windowHandle(), Qt::Key_V, Qt::ControlModifier);
        QVERIFY(!m_lens->isBusy());
    }

    void zoomLevelsReadAsListedAndEndWhereTheyEnd()
    {
        QVERIFY(m_lens->openPicture());
        QCOMPARE(zoom()->count(), 23);
        QCOMPARE(zoom()->itemText(0), QStringLiteral("3.13%"));
        QCOMPARE(zoom()->itemText(4), QStringLiteral("12.5%"));
        QCOMPARE(zoom()->itemText(22), QStringLiteral("6400%"));
        QCOMPARE(zoom()->itemData(5).toDouble(), 16.66);
        zoom()->setCurrentIndex(21);
        QCOMPARE(view()->zoom(), 4800.0);
        for (int i = 0; i < 3; ++i)
            turnWheel(120);
        QCOMPARE(zoom()->currentText(), QStringLiteral("6400%"));
        QCOMPARE(view()->zoom(), 6400.0);
        zoom()->setCurrentIndex(1);
        for (int i = 0; i < 3; ++i)
            turnWheel(-120);
        QCOMPARE(zoom()->currentText(), QStringLiteral("3.13%"));
        QCOMPARE(view()->zoom(), 3.13);
        QTest::keyClick(m_lens->dialog()->windowHandle(), Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(zoom()->currentText(), QStringLiteral("100%"));
    }

    void rotationAndGridFollowTheirControls()
    {
        auto* rotation = m_lens->find<QSpinBox>("spbRotation");
        QCOMPARE(rotation->minimum(), -360);
        QCOMPARE(rotation->maximum(), 360);
        rotation->setValue(-37);
        QCOMPARE(view()->rotation(), -37.0);
        m_lens->find<QCheckBox>("chkbDisplayGrid")->click();
        QVERIFY(view()->isGridEnabled());
        m_lens->find<QCheckBox>("chkbDisplayGrid")->click();
        QVERIFY(!view()->isGridEnabled());
    }

    void aClickAsksForTheLetterUnderIt()
    {
        QVERIFY(m_lens->openPicture());
        m_lens->find<QSpinBox>("spbRotation")->setValue(-12);
        m_lens->find<QComboBox>("cmbSelectionSensitivity")->setCurrentText(QStringLiteral("High"));
        m_lens->click(QPoint(40, 50), Qt::LeftButton, Qt::ShiftModifier); // nothing to extend: a new letter
        QVERIFY(m_lens->isBusy());
        m_lens->click(QPoint(90, 50)); // one at a time
        QTRY_COMPARE(m_lens->letterCount(), 1);
        m_lens->find<QSpinBox>("spbRotation")->setValue(0);
        m_lens->find<QComboBox>("cmbSelectionSensitivity")->setCurrentText(QStringLiteral("Low"));
        QVERIFY(m_lens->selectLetters(1));
        const QList<QUrlQuery> asked = m_lens->service().queries("objat");
        QCOMPARE(asked.size(), 2);
        QCOMPARE(item(asked.first(), "imgid"), QStringLiteral("a0"));
        QCOMPARE(item(asked.first(), "angle"), QStringLiteral("-12"));
        QCOMPARE(item(asked.first(), "threshold"), QStringLiteral("4"));
        QCOMPARE(item(asked.first(), "spltrs"), QString());
        const QStringList point = item(asked.first(), "points").split(QLatin1Char(','));
        QVERIFY(qAbs(point.value(0).toInt() - 40) <= 1 && qAbs(point.value(1).toInt() - 50) <= 1);
        QCOMPARE(item(asked.last(), "points"), QStringLiteral("20,50"));
        QCOMPARE(item(asked.last(), "angle"), QStringLiteral("0"));
        QCOMPARE(item(asked.last(), "threshold"), QStringLiteral("50"));

        m_lens->click(QPoint(-10, 50)); // outside
        m_lens->action("actionPanImage")->trigger();
        m_lens->click(QPoint(60, 60));
        QVERIFY(!m_lens->isBusy());
        QCOMPARE(m_lens->service().count("objat"), 2);
    }

    // The newest letter is in view when it comes, and the one that is typed into while it is.
    void theStripScrollsToWhereTheUserIs()
    {
        QVERIFY(m_lens->openPicture());
        m_lens->dialog()->resize(620, 500);
        QVERIFY(m_lens->selectLetters(8, false));
        const auto tiles = m_lens->dialog()->findChildren<SelectedLetterWidget*>();
        const auto isVisible = [](const QWidget* tile) { return tile->visibleRegion().boundingRect() == tile->rect(); };
        QTRY_VERIFY(isVisible(tiles.last()));
        QVERIFY(!isVisible(tiles.first()));
        m_lens->dialog()->activateWindow();
        for (SelectedLetterWidget* tile : {tiles.first(), tiles.last()}) {
            tile->setFocus();
            QTRY_VERIFY(isVisible(tile));
        }
    }

    void tabGoesFromThePictureThroughTheLettersToIdentify()
    {
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(2));
        m_lens->dialog()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_lens->dialog()));
        view()->setFocus();
        const auto tiles = m_lens->dialog()->findChildren<SelectedLetterWidget*>();
        for (QWidget* next : {tiles.at(0)->input(), tiles.at(1)->input(),
                              static_cast<QWidget*>(m_lens->find<QPushButton>("btnIdentify"))}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), next);
        }
    }

    void shiftAddsToTheLastLetter()
    {
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(2));
        m_lens->click(QPoint(51, 20), Qt::LeftButton, Qt::ShiftModifier);
        QTRY_VERIFY(!m_lens->isBusy());
        QCOMPARE(m_lens->letterCount(), 2);
        QCOMPARE(item(m_lens->service().queries("objat").last(), "points"), QStringLiteral("50,50;51,20"));
    }

    void failedSelectionsAreTold()
    {
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(1));
        const QList<QPair<Qt::KeyboardModifiers, QString>> clicks{
            {Qt::NoModifier, QStringLiteral("Failed to select the letter.")},
            {Qt::ShiftModifier, QStringLiteral("Failed to extend the letter selection.")}};
        for (const auto& [modifiers, text] : clicks) {
            FontLensDriver::Message message;
            m_lens->service().answer("objat", FakeRecognition::brokenPage());
            {
                ModalAnswers answers({FontLensDriver::read(&message)});
                m_lens->click(QPoint(9, 9), Qt::LeftButton, modifiers);
                QTRY_COMPARE(answers.given(), 1);
            }
            QCOMPARE(message.title, QStringLiteral("FontLens"));
            QCOMPARE(message.text, text);
            m_lens->service().answer("objat", ScriptedRecognitionServer::earlyClose());
            {
                ModalAnswers answers({FontLensDriver::read(&message)});
                m_lens->click(QPoint(9, 9), Qt::LeftButton, modifiers);
                QTRY_COMPARE(answers.given(), 1);
            }
            QCOMPARE(message.text, noConnection);
            QCOMPARE(m_lens->letterCount(), 1);
            QVERIFY(!m_lens->isBusy());
        }
    }

    void cutsAreDrawnHandedOverAndRemoved()
    {
        QVERIFY(m_lens->openPicture());
        m_lens->action("actionSplitLetters")->trigger();
        m_lens->click(QPoint(10, 10), Qt::RightButton); // ends nothing
        QVERIFY(scene()->splitters().isEmpty());
        drawCut({QPoint(10, 10), QPoint(20, 30), QPoint(30, 10)});
        QVERIFY(m_lens->action("actionRemoveSplitters")->isVisible());
        drawCut({QPoint(50, 60), QPoint(70, 80)});
        QCOMPARE(m_lens->service().count("objat"), 0);

        m_lens->action("actionSelectLetter")->trigger();
        QVERIFY(m_lens->selectLetters(1));
        QCOMPARE(item(m_lens->service().queries("objat").last(), "spltrs"),
                 QStringLiteral("10,10;20,30;30,10_50,60;70,80"));
        m_lens->action("actionRemoveSplitters")->trigger();
        QVERIFY(scene()->splitters().isEmpty());
        QVERIFY(!m_lens->action("actionRemoveSplitters")->isVisible());
        QVERIFY(m_lens->selectLetters(1));
        QCOMPARE(item(m_lens->service().queries("objat").last(), "spltrs"), QString());
    }

    void aCutThatIsBeingDrawnFollowsTheMouseAndCanBeGivenUp()
    {
        QVERIFY(m_lens->openPicture());
        m_lens->action("actionSplitLetters")->trigger();
        m_lens->click(QPoint(10, 10));
        m_lens->move(QPoint(40, 30));
        QCOMPARE(scene()->splitters().size(), 1);
        QTRY_COMPARE(scene()->splitters().first()->path().currentPosition().toPoint(), QPoint(40, 30));
        QTest::keyClick(m_lens->dialog(), Qt::Key_Escape);
        QVERIFY(scene()->splitters().isEmpty());
        QVERIFY(m_lens->dialog()->isVisible());
        // Another tool keeps a line and drops a point.
        m_lens->click(QPoint(10, 10));
        m_lens->action("actionSelectLetter")->trigger();
        QVERIFY(scene()->splitters().isEmpty());
        m_lens->action("actionSplitLetters")->trigger();
        m_lens->click(QPoint(10, 10));
        m_lens->click(QPoint(30, 10));
        m_lens->action("actionSelectLetter")->trigger();
        QCOMPARE(scene()->splitters().size(), 1);
        QVERIFY(m_lens->action("actionRemoveSplitters")->isVisible());
        // A new picture has no cuts.
        QVERIFY(m_lens->openPicture());
        QVERIFY(scene()->splitters().isEmpty());
        QVERIFY(!m_lens->action("actionRemoveSplitters")->isVisible());
    }

    void helpTellsTheSteps()
    {
        FontLensDriver::Message message;
        ModalAnswers answers({FontLensDriver::read(&message)});
        m_lens->action("actionHelp")->trigger();
        QCOMPARE(message.title, QStringLiteral("Help"));
        QCOMPARE(
            message.text,
            QStringLiteral("Kerval FontLens helps you identify fonts on images.\nUsage:\n1. Open an image\n2. Click "
                           "a letter to add it to the identification list\n3. Repeat for several individual "
                           "letters\n4. Fill in letter boxes\n5. Click on the Identify button\ntip: Shift+Click to "
                           "build a letter i j"));
    }

    void escapeClosesAnIdleWindow()
    {
        QSignalSpy closed(m_lens->dialog(), &FontLensDialog::closed);
        QTest::keyClick(m_lens->dialog(), Qt::Key_Escape);
        QCOMPARE(closed.count(), 1);
        QVERIFY(!m_lens->dialog()->isVisible());
    }

private:
    FontLensGraphicsScene* scene() const { return m_lens->dialog()->findChild<FontLensGraphicsScene*>(); }
    FontLensGraphicsView* view() const { return m_lens->find<FontLensGraphicsView>("graphicsView"); }
    QComboBox* zoom() const { return m_lens->find<QComboBox>("cmbZoom"); }

    void drop(const QList<QUrl>& urls)
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_lens->dialog(), &enter);
        QVERIFY(enter.isAccepted());
        QVERIFY(m_lens->find<QWidget>("dropHint")->isVisible());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_lens->dialog(), &drop);
        QVERIFY(drop.isAccepted());
    }

    void turnWheel(int delta)
    {
        QWheelEvent event(QPointF(50, 60), view()->viewport()->mapToGlobal(QPoint(50, 60)), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view()->viewport(), &event);
    }

    void drawCut(const QList<QPoint>& points)
    {
        for (int i = 0; i < points.size(); ++i)
            m_lens->click(points.at(i), i + 1 < points.size() ? Qt::LeftButton : Qt::RightButton);
    }

    std::unique_ptr<FontLensDriver> m_lens;
};

KERVAL_TEST(FontLensDialogTest)

#include "FontLensDialogTest.moc"
