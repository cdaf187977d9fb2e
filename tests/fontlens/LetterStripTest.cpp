#include "fontlens/SelectedLetterWidget.h"
#include "fontlens/SelectedLettersList.h"
#include "fontlens/recognition/FontRecognizerSession.h"
#include "tests/fontlens/FakeRecognition.h"
#include "tests/support/testregistry.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QShortcut>
#include <QToolButton>
#include <QtTest>

using FontRecognizer::FontRecognizerClient;
using FontRecognizer::FontRecognizerSession;

// The strip under the picture, typed into as a user does.
class LetterStripTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_service = std::make_unique<FakeRecognition>();
        m_client = QSharedPointer<FontRecognizerClient>::create(FontRecognizer::RecognitionUrls(m_service->host()));
        m_strip = std::make_unique<SelectedLettersList>();
        m_strip->resize(600, 160);
        m_strip->show();
        QVERIFY(QTest::qWaitForWindowActive(m_strip.get()));
        m_session = openSession();
        m_strip->setSession(m_session);
    }

    void cleanup()
    {
        m_strip.reset();
        m_session.clear();
        m_client.clear();
        m_service.reset();
    }

    void aTileShowsWhatTheLetterIs()
    {
        addLetters(1);
        const SelectedLetterWidget* tile = tiles().first();
        QCOMPARE(tile->width(), 100);
        const auto* image = tile->findChild<QLabel*>(QStringLiteral("lblImage"));
        QCOMPARE(image->size(), QSize(94, 94));
        QVERIFY(image->pixmap(Qt::ReturnByValue).width() <= 94 * image->devicePixelRatioF());
        QCOMPARE(input(0)->placeholderText(), QStringLiteral("?"));
        QCOMPARE(input(0)->accessibleName(), QStringLiteral("Character of letter 1"));
        QCOMPARE(tile->findChild<QToolButton*>()->focusPolicy(), Qt::NoFocus);
    }

    void typingMovesOnAndAsksUntilAllIsThere()
    {
        addLetters(3);
        QCOMPARE(QApplication::focusWidget(), input(0)); // the first that waits
        QVERIFY(isMarkedMissing(0));
        QTest::keyClick(input(0), Qt::Key_A);
        QCOMPARE(m_session->letter(0)->character(), QChar(QLatin1Char('a')));
        QCOMPARE(QApplication::focusWidget(), input(1));
        QVERIFY(!isMarkedMissing(0));
        QVERIFY(isMarkedMissing(1));
        QTest::keyClicks(input(1), QStringLiteral("b"));
        QTest::keyClicks(input(2), QStringLiteral("c"));
        QCOMPARE(m_session->previewText(), QStringLiteral("abc"));

        tiles().first()->setFocus();
        QCOMPARE(QApplication::focusWidget(), input(0));
        QCOMPARE(input(0)->selectedText(), QStringLiteral("a"));
        QTest::keyClick(input(0), Qt::Key_Backspace);
        QVERIFY(m_session->letter(0)->character().isNull());
        QCOMPARE(m_session->previewText(), QStringLiteral("bc"));
        QVERIFY(isMarkedMissing(0));
        QCOMPARE(QApplication::focusWidget(), input(0));
        addLetters(1); // goes back to the one that is empty, not to the new one
        QCOMPARE(QApplication::focusWidget(), input(0));
    }

    void tabGoesThroughTheTilesInOrder()
    {
        addLetters(3);
        input(0)->setFocus();
        for (int i = 1; i < 3; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), input(i));
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), input(1));
    }

    void closingATileDiscardsItsLetter()
    {
        addLetters(3);
        for (int i = 0; i < 3; ++i)
            input(i)->setText(QString(QChar('x' + i)));
        const auto first = m_session->letter(0);
        const auto third = m_session->letter(2);
        QTest::mouseClick(tiles().at(1)->findChild<QToolButton*>(), Qt::LeftButton);
        QTRY_COMPARE(tiles().size(), 2);
        QCOMPARE(m_session->letters(), QList<FontRecognizer::FontRecognizerLetterSelectionPtr>({first, third}));
        QCOMPARE(m_session->previewText(), QStringLiteral("xz"));
        QCOMPARE(input(1)->accessibleName(), QStringLiteral("Character of letter 2"));
        QTest::keyClick(input(1), Qt::Key_Delete, Qt::ControlModifier);
        QTRY_COMPARE(tiles().size(), 1);
        QCOMPARE(m_session->previewText(), QStringLiteral("x"));
        m_session->discardLetter(0); // by someone else
        QTRY_COMPARE(tiles().size(), 0);
    }

    void anExtendedLetterChangesTheLastTile()
    {
        addLetters(2);
        const auto imageOf = [this](int tile) {
            return tiles()
                .at(tile)
                ->findChild<QLabel*>(QStringLiteral("lblImage"))
                ->pixmap(Qt::ReturnByValue)
                .toImage();
        };
        const QImage first = imageOf(0);
        const QImage second = imageOf(1);
        QSignalSpy extended(m_session.data(), &FontRecognizerSession::extendLastSelectedLetterFinished);
        m_session->extendLastSelectedLetter(QPoint(3, 4), 0, 30);
        QVERIFY(extended.wait());
        QCOMPARE(imageOf(0), first);
        QVERIFY(imageOf(1) != second);
    }

    void failuresAndOtherSessionsLeaveTheStripAlone()
    {
        addLetters(2);
        m_service->answer("objat", FakeRecognition::brokenPage());
        QSignalSpy selected(m_session.data(), &FontRecognizerSession::selectLetterFinished);
        m_session->selectLetter(QPoint(1, 1), 0, 30);
        QVERIFY(selected.wait());
        QCOMPARE(tiles().size(), 2);
        m_service->restore("objat");

        const auto old = m_session;
        m_session = openSession();
        m_strip->setSession(m_session);
        QTRY_COMPARE(tiles().size(), 0);
        QSignalSpy late(old.data(), &FontRecognizerSession::selectLetterFinished);
        old->selectLetter(QPoint(1, 1), 0, 30);
        QVERIFY(late.wait());
        QCOMPARE(tiles().size(), 0);
    }

    void pastingACharacterTypesItAndAnythingElseIsTheWindows()
    {
        addLetters(1);
        int windowPastes = 0;
        QShortcut shortcut(QKeySequence::Paste, m_strip.get());
        connect(&shortcut, &QShortcut::activated, this, [&windowPastes] { ++windowPastes; });
        QGuiApplication::clipboard()->setText(QStringLiteral("https://example.org/a.png"));
        QTest::keyClick(m_strip->windowHandle(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(windowPastes, 1);
        QCOMPARE(input(0)->text(), QString());
        QGuiApplication::clipboard()->setText(QStringLiteral("g"));
        QTest::keyClick(m_strip->windowHandle(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(windowPastes, 1);
        QCOMPARE(input(0)->text(), QStringLiteral("g"));
    }

private:
    QSharedPointer<FontRecognizerSession> openSession()
    {
        const QSharedPointer<FontRecognizerSession> session(new FontRecognizerSession(m_client), &QObject::deleteLater);
        QSignalSpy opened(session.data(), &FontRecognizerSession::setSourceImageFinished);
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::white);
        session->setSourceImage(image, QStringLiteral("a.png"));
        if (!opened.wait() || !opened.first().first().toBool())
            qFatal("the picture does not open");
        return session;
    }

    void addLetters(int count)
    {
        QSignalSpy added(m_strip.get(), &SelectedLettersList::letterAdded);
        for (int i = 0; i < count; ++i) {
            m_session->selectLetter(QPoint(i, i), 0, 30);
            QVERIFY(added.wait());
        }
        QCOMPARE(added.count(), count);
    }

    QList<SelectedLetterWidget*> tiles() const
    {
        // In the order that is seen; a closed tile goes a little later.
        QList<SelectedLetterWidget*> shown;
        for (int i = 0; i < m_strip->layout()->count(); ++i) {
            if (auto* tile = qobject_cast<SelectedLetterWidget*>(m_strip->layout()->itemAt(i)->widget()))
                shown.append(tile);
        }
        return shown;
    }

    QLineEdit* input(int tile) const { return tiles().at(tile)->findChild<QLineEdit*>(); }

    bool isMarkedMissing(int tile) const
    {
        const auto* caption = tiles().at(tile)->findChild<QLabel*>(QStringLiteral("lblLetter"));
        const bool red = caption->styleSheet() == QLatin1String("color: red");
        // Not by colour alone.
        return red && caption->font().underline() && !input(tile)->accessibleDescription().isEmpty();
    }

    std::unique_ptr<FakeRecognition> m_service;
    QSharedPointer<FontRecognizerClient> m_client;
    QSharedPointer<FontRecognizerSession> m_session;
    std::unique_ptr<SelectedLettersList> m_strip;
};

KERVAL_TEST(LetterStripTest)

#include "LetterStripTest.moc"
