#include "fontlens/recognition/FontRecognizerClient.h"
#include "fontlens/recognition/FontRecognizerSession.h"
#include "fontlens/recognizer/LocalRecognizer.h"
#include "qtService/app/RecognizerResourceHandler.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"
#include "tests/fontlens/recognizer/pictures.h"
#include "tests/rest/library.h"
#include "tests/support/testregistry.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using FontRecognizer::FontDataPtr;
using FontRecognizer::FontRecognizerClient;
using FontRecognizer::FontRecognizerClientPtr;
using FontRecognizer::FontRecognizerSession;
using kerval::recognizer::LocalRecognizer;

// The program's own client against the program's own service, over HTTP, with real fonts in the library.
class TestRecognition : public QObject
{
    Q_OBJECT

    static QString dejavu(const char* name)
    {
        return QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVu%1.ttf").arg(QLatin1String(name));
    }

    std::unique_ptr<Library> m_library;
    std::shared_ptr<LocalRecognizer> m_recognizer;
    FontRecognizerClientPtr m_client;
    qint64 m_now = 0;
    QStringList m_files{dejavu("Sans"), dejavu("Sans-Bold"), dejavu("Serif"), dejavu("Serif-Bold"), dejavu("SansMono")};
    QList<int> m_ids;

    bool open(FontRecognizerSession& session, const QImage& picture)
    {
        QSignalSpy opened(&session, &FontRecognizerSession::setSourceImageFinished);
        session.setSourceImage(picture, QStringLiteral("/home/x/a \"sign\".png"));
        return QTest::qWaitFor([&] { return !opened.isEmpty(); }, 30000) && opened.first().first().toBool();
    }
    bool select(FontRecognizerSession& session, const QPoint& place, QChar character)
    {
        QSignalSpy selected(&session, &FontRecognizerSession::selectLetterFinished);
        session.selectLetter(place, 0, 30);
        if (!QTest::qWaitFor([&] { return !selected.isEmpty(); }, 30000) || !selected.first().first().toBool())
            return false;
        session.letters().last()->setCharacter(character);
        return true;
    }
    QList<FontDataPtr> identify(FontRecognizerSession& session)
    {
        QList<FontDataPtr> fonts;
        bool done = false;
        const auto connection = connect(&session, &FontRecognizerSession::findSimilarFontsFinished, this,
                                        [&](bool, const QList<FontDataPtr>& found) {
                                            fonts = found;
                                            done = true;
                                        });
        session.findSimilarFonts();
        if (!QTest::qWaitFor([&] { return done; }, 60000))
            qFatal("no answer");
        disconnect(connection);
        return fonts;
    }
    QList<FontDataPtr> fontsFor(const QString& file, const QString& letters)
    {
        const auto set = testpictures::setLetters(file, letters, 60);
        FontRecognizerSession session(m_client);
        if (!open(session, set.picture))
            return {};
        for (int i = 0; i < letters.size(); ++i) {
            if (!select(session, set.places.at(i), letters.at(i)))
                return {};
        }
        return identify(session);
    }

private slots:
    void initTestCase()
    {
        m_library = std::make_unique<Library>();
        m_ids = m_library->addFonts(m_files.size(), [this](fms::StaticFont& font, int i) {
            font.setFileName(m_files.at(i));
            font.setFamilyName(QStringLiteral("A & B <%1>").arg(i));
            font.setStyleName(QStringLiteral("Style %1").arg(i));
            font.setFoundry(QStringLiteral("Foundry"));
        });
        auto options = LocalRecognizer::Options::standard();
        options.clock = [this] { return m_now; };
        m_recognizer = std::make_shared<LocalRecognizer>(
            QSharedPointer<FontManagementService>(&m_library->service(), [](FontManagementService*) {}), options);
        using Script = RecognizerResourceHandler::Script;
        for (const Script script : {Script::Modules, Script::Similarity, Script::ShopLink})
            m_library->server().addHandler(RecognizerResourceHandler::pattern(script),
                                           new RecognizerResourceHandler(m_recognizer, script));
        m_client = FontRecognizerClientPtr::create(
            FontRecognizer::RecognitionUrls(QStringLiteral("127.0.0.1:%1").arg(m_library->server().port())));
    }
    void cleanupTestCase()
    {
        m_client.reset();
        m_recognizer.reset();
        m_library.reset();
    }

    void theRightFontComesFirst_data()
    {
        QTest::addColumn<int>("font");
        for (int i = 0; i < m_files.size(); ++i)
            QTest::newRow(qPrintable(m_files.at(i))) << i;
    }

    void theRightFontComesFirst()
    {
        QFETCH(int, font);
        const auto fonts = fontsFor(m_files.at(font), QStringLiteral("Rage"));
        QVERIFY(!fonts.isEmpty());
        QCOMPARE(fonts.first()->id, m_ids.at(font));
        QCOMPARE(fonts.first()->name, QStringLiteral("A & B <%1>").arg(font));
        QCOMPARE(fonts.first()->style, QStringLiteral("Style %1").arg(font));
        QCOMPARE(fonts.first()->foundry, QStringLiteral("Foundry"));
        QVERIFY(fonts.size() <= m_ids.size());
    }

    void aWholeSession()
    {
        const auto set = testpictures::setLetters(m_files.first(), QStringLiteral("Ri,"), 60);
        FontRecognizerSession session(m_client);
        QVERIFY(open(session, set.picture));
        QCOMPARE(session.sourceImage().convertToFormat(set.picture.format()), set.picture);
        QVERIFY(select(session, set.places.at(0), QLatin1Char('R')));
        QVERIFY(select(session, set.places.at(1), QLatin1Char('i')));
        const QSize dot = session.letters().last()->image().size();
        QSignalSpy extended(&session, &FontRecognizerSession::extendLastSelectedLetterFinished);
        QPoint stem = set.places.at(1);
        while (qGray(set.picture.pixel(stem)) < 128)
            stem.ry()++;
        while (qGray(set.picture.pixel(stem)) >= 128)
            stem.ry()++;
        session.extendLastSelectedLetter(stem + QPoint(0, 4), 0, 30);
        QTRY_VERIFY(!extended.isEmpty());
        QVERIFY(extended.first().first().toBool());
        QVERIFY(session.letters().last()->image().height() > dot.height());
        QVERIFY(select(session, set.places.at(2), QLatin1Char(',')));
        const auto fonts = identify(session);
        QVERIFY(!fonts.isEmpty());

        QSignalSpy rendered(&session, &FontRecognizerSession::renderCustomPreviewFinished);
        session.renderCustomPreview(m_ids.first(), 48, QStringLiteral("a+b & 100%;\n\xe4"));
        QTRY_VERIFY(!rendered.isEmpty());
        QVERIFY(rendered.first().at(0).toBool());
        const auto preview = rendered.first().at(2).value<QImage>();
        QCOMPARE(preview.height(), 48);
        QVERIFY(preview.width() > 100 && preview.hasAlphaChannel());

        QSignalSpy linked(&session, &FontRecognizerSession::getFontStoreUrlFinished);
        session.getFontStoreUrl(m_ids.first());
        QTRY_VERIFY(!linked.isEmpty());
        QVERIFY(linked.first().at(0).toBool());
        QVERIFY(linked.first().at(2).toUrl().isEmpty());
    }

    // The window's messages depend on which of the two failures it is.
    void aClickBesideAllLettersIsNoBrokenConnection()
    {
        QImage picture(300, 200, QImage::Format_RGB32);
        picture.fill(Qt::white);
        FontRecognizerSession session(m_client);
        QVERIFY(open(session, picture));
        QVERIFY(!select(session, QPoint(150, 100), QLatin1Char('a')));
        QCOMPARE(session.lastResult(), 2);
        m_now += 2 * 60 * 60 * 1000;
        QVERIFY(!select(session, QPoint(150, 100), QLatin1Char('a')));
        QCOMPARE(session.lastResult(), 1);
    }

    void sessionsDoNotMeet()
    {
        const QString letters = QStringLiteral("ag");
        const auto sans = testpictures::setLetters(m_files.at(0), letters, 60);
        const auto serif = testpictures::setLetters(m_files.at(2), letters, 60);
        FontRecognizerSession first(m_client);
        FontRecognizerSession second(m_client);
        QVERIFY(open(first, sans.picture));
        QVERIFY(open(second, serif.picture));
        for (int i = 0; i < letters.size(); ++i) {
            QVERIFY(select(first, sans.places.at(i), letters.at(i)));
            QVERIFY(select(second, serif.places.at(i), letters.at(i)));
        }
        QCOMPARE(identify(first).first()->id, m_ids.at(0));
        QCOMPARE(identify(second).first()->id, m_ids.at(2));
    }

    void theCatalogueIsFollowed()
    {
        QCOMPARE(fontsFor(m_files.at(2), QStringLiteral("Rg")).first()->id, m_ids.at(2));
        const StaticFontPtr serif = m_library->font(m_ids.at(2));
        QVERIFY(m_library->service().repository()->removeFont(serif));
        for (const FontDataPtr& font : fontsFor(m_files.at(2), QStringLiteral("Rg")))
            QVERIFY(font->id != m_ids.at(2));

        // Two copies of one file are one font; a file that is gone is none.
        const QList<int> added = m_library->addFonts(3, [this](fms::StaticFont& font, int i) {
            font.setFileName(i == 1 ? QStringLiteral("/nowhere.ttf") : m_files.at(2));
            font.setFileHash(QStringLiteral("serif"));
            font.setFileExists(i != 1);
        });
        const auto fonts = fontsFor(m_files.at(2), QStringLiteral("Rg"));
        QCOMPARE(fonts.first()->id, added.first());
        QList<int> ids;
        for (const FontDataPtr& font : fonts)
            ids.append(font->id);
        QVERIFY(!ids.contains(added.at(1)) && !ids.contains(added.at(2)));
        m_ids[2] = added.first();
    }

    void otherRequestsAreAnsweredMeanwhile()
    {
        ScriptedRecognitionServer silent;
        const QUrl url(QStringLiteral("http://%1/").arg(silent.host()));
        m_recognizer->permitAddress(url);
        QSignalSpy abandoned(&silent, &ScriptedRecognitionServer::abandoned);
        QSignalSpy requested(&silent, &ScriptedRecognitionServer::requested);
        auto waiting = std::make_unique<FontRecognizerSession>(m_client);
        waiting->setSourceImage(url);
        QTRY_VERIFY(!requested.isEmpty());
        QCOMPARE(fontsFor(m_files.at(0), QStringLiteral("Rg")).first()->id, m_ids.at(0));
        QCOMPARE(m_library->client().get(QStringLiteral("/groups")).status, 200);
        waiting.reset(); // closes the connection, which ends the download
        QTRY_VERIFY(!abandoned.isEmpty());
    }

    void thePathsArePrivateAndBounded()
    {
        HttpClient& http = m_library->client();
        const QString modules =
            QStringLiteral("/query/norvik/krvmodules.cgi?type=1&action=render&size=20&text=a&id=%1").arg(m_ids.first());
        const HttpReply reply = http.get(modules);
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Content-Type"), QByteArray("image/png"));
        QCOMPARE(reply.header("Content-Length"), QByteArray::number(reply.body.size()));
        QCOMPARE(reply.header("Access-Control-Allow-Origin"), QByteArray());
        QCOMPARE(http.send("GET", modules, {}, {{"Origin", "https://page.example"}}).status, 403);
        QCOMPARE(http.send("GET", modules, {}, {{"Sec-Fetch-Site", "cross-site"}}).status, 403);
        QCOMPARE(http.send("PUT", modules, "x").status, 405);
        QCOMPARE(http.send("POST", QStringLiteral("/query/norvik/ocrsim.php"), "x").status, 405);
        QCOMPARE(http.get(QStringLiteral("/query/norvik/krvmodules.cgi/x")).status, 404);
        QCOMPARE(http.get(QStringLiteral("/query/norvik/krvmodulesXcgi")).status, 404);
        // Nine mebibytes reach the form reader, which finds no action there.
        const QString path = QStringLiteral("/query/norvik/krvmodules.cgi");
        QCOMPARE(http.send("POST", path, QByteArray(9 * 1024 * 1024, 'a')).status, 400);
        QCOMPARE(http.send("POST", path, QByteArray(21 * 1024 * 1024, 'a')).status, 413);
        QCOMPARE(http.get(QStringLiteral("/query/norvik/krvmodules.cgi?action=render&size=20&text=a&id=99999")).status,
                 404);
    }
};

KERVAL_TEST(TestRecognition)
#include "tst_recognition.moc"
