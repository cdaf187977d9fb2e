#include "fontlens/recognizer/LocalRecognizer.h"
#include "fontlens/recognizer/RequestValues.h"
#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"
#include "tests/fontlens/recognizer/pictures.h"
#include "tests/support/testregistry.h"

#include <QEventLoop>
#include <QRandomGenerator>
#include <QUrl>
#include <QtTest>

using namespace kerval::recognizer;
using Script = RecognizerRequest::Script;

// The recogniser itself, without HTTP and without a library.
class TestLocalRecognizer : public QObject
{
    Q_OBJECT

    qint64 m_now = 0;
    std::unique_ptr<LocalRecognizer> m_recognizer;

    static RecognizerRequest get(const QByteArray& query, Script script = Script::Modules)
    {
        RecognizerRequest request;
        request.script = script;
        request.query = query;
        return request;
    }
    static RecognizerRequest post(const QByteArray& type, const QByteArray& body)
    {
        RecognizerRequest request;
        request.isPost = true;
        request.query = "type=1";
        request.contentType = type;
        request.body = body;
        return request;
    }
    static RecognizerRequest upload(const QByteArray& file)
    {
        return post("multipart/form-data, boundary=AaB03x",
                    "--AaB03x\r\nContent-disposition: form-data; name=\"action\"\r\n\r\nimgupload\r\n"
                    "--AaB03x\r\nContent-disposition: form-data; name=\"uploadedfile\"; filename=\"x.png\"\r\n"
                    "Content-Type: image/png\r\n\r\n" +
                        file + "\r\n--AaB03x\r\n\r\n");
    }
    static RecognizerRequest download(const QUrl& url)
    {
        return post("text/html", "action=imgdownload&url=" + QUrl::toPercentEncoding(url.toString()) + "&format=xml");
    }
    RecognizerAnswer ask(const RecognizerRequest& request)
    {
        int replies = 0;
        RecognizerAnswer answer;
        QEventLoop loop; // qWaitFor() sleeps between the events
        const auto work = m_recognizer->begin(request, [&](const RecognizerAnswer& given) {
            ++replies;
            answer = given;
            loop.quit();
        });
        QTimer::singleShot(30000, &loop, &QEventLoop::quit);
        if (replies == 0)
            loop.exec();
        if (replies == 0)
            qFatal("no answer");
        if (replies != 1)
            qFatal("answered more than once");
        return answer;
    }
    QString uploaded(const QImage& image)
    {
        const RecognizerAnswer answer = ask(upload(testpictures::encoded(image)));
        return answer.status == 200 ? QString::fromLatin1(answer.body) : QString();
    }

private slots:
    void init()
    {
        m_now = 0;
        auto options = LocalRecognizer::Options::standard();
        options.clock = [this] { return m_now; };
        options.cacheFolder.clear();
        m_recognizer = std::make_unique<LocalRecognizer>(QSharedPointer<FontManagementService>(), options);
    }
    void cleanup() { m_recognizer.reset(); }

    void anUploadComesBackByItsId()
    {
        const QByteArray png = testpictures::encoded(testpictures::plainPicture(50, 40));
        const RecognizerAnswer id = ask(upload(png));
        QCOMPARE(id.status, 200);
        QVERIFY(values::isPictureId(QString::fromLatin1(id.body)));
        const RecognizerAnswer picture = ask(get("type=1&imgid=" + id.body + "&action=getimg"));
        QCOMPARE(picture.status, 200);
        QCOMPARE(picture.contentType, QByteArray("image/png"));
        QCOMPARE(picture.body, png);
        m_now = 60 * 60 * 1000;
        QCOMPARE(ask(get("type=1&imgid=" + id.body + "&action=getimg")).status, 404);
    }

    void wrongUploadsAreTold()
    {
        QCOMPARE(ask(upload("no picture")).status, 415);
        QCOMPARE(ask(upload({})).status, 400);
        QCOMPARE(ask(upload(QByteArray(20 * 1024 * 1024 + 1, 'x'))).status, 413);
        // The window can tell this from a broken connection only by the text.
        const RecognizerAnswer bomb = ask(upload(testpictures::pngClaiming(30000, 30000)));
        QCOMPARE(bomb.status, 200);
        QVERIFY(bomb.body.startsWith("error: "));
        QCOMPARE(ask(post("multipart/form-data", "x")).status, 400);
        QCOMPARE(ask(post("multipart/form-data, boundary=AaB03x", {})).status, 400);
        QCOMPARE(ask(post({}, {})).status, 400);
    }

    void wrongRequestsAreTold_data()
    {
        QTest::addColumn<QByteArray>("query"); // %id: a picture of 100 x 80
        QTest::addColumn<int>("status");
        const auto row = [](const char* query, int status) { QTest::newRow(query) << QByteArray(query) << status; };
        const QByteArray many = QByteArray("1,2;").repeated(100000) + "1,2";
        for (const char* query : {"",
                                  "type=1",
                                  "type=1&action=",
                                  "type=2&action=getimg&imgid=%id",
                                  "type=1&action=nothing",
                                  "type=1&action=imgupload",
                                  "type=1&action=imgdownload&url=http://1.1.1.1/",
                                  "type=1&action=getimg",
                                  "type=1&action=getimg&imgid=../../etc",
                                  "type=1&action=getimg&imgid=%00",
                                  "type=1&action=objat",
                                  "action=objat&imgid=%id",
                                  "action=objat&imgid=%id&threshold=30&angle=0",
                                  "action=objat&imgid=%id&points=10,10&threshold=30&angle=",
                                  "action=objat&imgid=%id&points=10,10&threshold=&angle=0",
                                  "action=objat&imgid=%id&points=&threshold=30&angle=0",
                                  "action=objat&imgid=%id&points=200,10&threshold=30&angle=0",
                                  "action=objat&imgid=%id&points=10,-2&threshold=30&angle=0",
                                  "action=objat&imgid=%id&points=10,10&threshold=-1&angle=0",
                                  "action=objat&imgid=%id&points=10,10&threshold=256&angle=0",
                                  "action=objat&imgid=%id&points=10,10&threshold=30&angle=nan",
                                  "action=objat&imgid=%id&points=10,10&threshold=30&angle=inf",
                                  "action=objat&imgid=%id&points=10,10&threshold=30&angle=1e9",
                                  "action=objat&imgid=%id&points=10,10&threshold=30&angle=0&spltrs=x",
                                  "action=render",
                                  "action=render&id=1&text=a&size=0",
                                  "action=render&id=1&text=a&size=513",
                                  "action=render&id=1&text=&size=9",
                                  "action=render&id=x&text=a&size=9",
                                  "action=render&id=99999999999&text=a&size=9"})
            row(query, 400);
        row("action=getimg&imgid=abc", 404);
        row("action=objat&imgid=abc&points=10,10&threshold=30&angle=0", 404);
        row("action=render&id=1&text=a&size=9", 503); // no library
        QTest::newRow("many points") << QByteArray("action=objat&imgid=%id&threshold=30&angle=0&points=" + many) << 400;
        QTest::newRow("many splitter points")
            << QByteArray("action=objat&imgid=%id&threshold=30&angle=0&points=1,1&spltrs=" + many) << 400;
        QTest::newRow("long text") << QByteArray("action=render&id=1&size=9&text=" + QByteArray(1001, 'a')) << 400;
    }

    void wrongRequestsAreTold()
    {
        QFETCH(QByteArray, query);
        QFETCH(int, status);
        query.replace("%id", uploaded(testpictures::plainPicture(100, 80)).toLatin1());
        const RecognizerAnswer answer = ask(get(query));
        QCOMPARE(answer.status, status);
        QVERIFY(!answer.body.isEmpty());
        QVERIFY(answer.contentType.startsWith("text/plain"));
    }

    void wrongSearchesAreTold()
    {
        const QByteArray id = uploaded(testpictures::plainPicture(100, 80)).toLatin1();
        const auto status = [&](const QByteArray& query) { return ask(get(query, Script::Similarity)).status; };
        QCOMPARE(status("type=1&version=3&format=xml2&imgids=a," + id), 503); // no library
        QCOMPARE(status("type=1&version=3&format=xml2"), 400);
        QCOMPARE(status("format=xml&imgids=a," + id), 400);
        QCOMPARE(status("imgids=%20," + id), 400);
        QCOMPARE(status("imgids=%00," + id), 400);
        QCOMPARE(status("imgids=%ED%A0%80," + id), 400);
        QCOMPARE(status("imgids=ab," + id), 400);
        QCOMPARE(status("imgids=a," + id + ";b,0123"), 404);
    }

    void shopLinksAreEmpty()
    {
        const RecognizerAnswer answer = ask(get("id=7&version=3", Script::ShopLink));
        QCOMPARE(answer.status, 200);
        QVERIFY(answer.body.contains("<links>") && !answer.body.contains("buyurl"));
        QCOMPARE(ask(get("version=3", Script::ShopLink)).status, 400);
    }

    void downloadsStayOutsideUnlessTheUserTypedTheAddress()
    {
        ScriptedRecognitionServer pictures;
        const QImage image = testpictures::plainPicture(30, 20);
        pictures.setScript([&](const ScriptedRecognitionServer::Request& request) {
            return request.target() == "/page" ? ScriptedRecognitionServer::page("<html>", "image/png")
                                               : ScriptedRecognitionServer::png(image);
        });
        const QUrl url(QStringLiteral("http://%1/a%20b.png?x=1&y=%262").arg(pictures.host()));
        QCOMPARE(ask(download(url)).status, 403);
        QVERIFY(pictures.requests().isEmpty());

        m_recognizer->permitAddress(url);
        const RecognizerAnswer id = ask(download(url));
        QCOMPARE(id.status, 200);
        QVERIFY(values::isPictureId(QString::fromLatin1(id.body)));
        QCOMPARE(QImage::fromData(ask(get("type=1&action=getimg&imgid=" + id.body)).body).size(), image.size());
        QCOMPARE(pictures.targets(), QList<QByteArray>{"/a%20b.png?x=1&y=%262"});
        QCOMPARE(ask(download(url)).status, 403); // once

        const QUrl page(QStringLiteral("http://%1/page").arg(pictures.host()));
        m_recognizer->permitAddress(page);
        const RecognizerAnswer none = ask(download(page));
        QCOMPARE(none.status, 200);
        QVERIFY(none.body.startsWith("error: "));
        for (const char* address : {"", "ftp://x/", "file:///etc/passwd", "http:", "javascript:alert(1)"})
            QCOMPARE(ask(download(QUrl(QString::fromLatin1(address)))).status, 400);
    }

    void droppedWorkIsNotAnswered()
    {
        ScriptedRecognitionServer silent;
        QSignalSpy requested(&silent, &ScriptedRecognitionServer::requested);
        QSignalSpy abandoned(&silent, &ScriptedRecognitionServer::abandoned);
        const QUrl url(QStringLiteral("http://%1/").arg(silent.host()));
        int replies = 0;
        const auto count = [&replies](const RecognizerAnswer&) { ++replies; };
        m_recognizer->permitAddress(url);
        auto loading = m_recognizer->begin(download(url), count);
        QTRY_VERIFY(!requested.isEmpty());
        loading.reset();
        QTRY_VERIFY(!abandoned.isEmpty());
        m_recognizer->begin(upload(testpictures::encoded(testpictures::plainPicture(50, 40))), count).reset();
        QVERIFY(!uploaded(testpictures::plainPicture(50, 40)).isEmpty()); // answered behind it
        QCOMPARE(replies, 0);
    }

    void tooManyRequestsAreRefused()
    {
        int busy = 0;
        int done = 0;
        std::vector<std::shared_ptr<void>> works;
        const RecognizerRequest request = upload(testpictures::encoded(testpictures::plainPicture(300, 300)));
        for (int i = 0; i < 1000; ++i) {
            works.push_back(m_recognizer->begin(
                request, [&](const RecognizerAnswer& answer) { ++(answer.status == 503 ? busy : done); }));
        }
        QTRY_COMPARE_WITH_TIMEOUT(busy + done, 1000, 60000);
        QVERIFY(busy > 0 && done >= 100);
        QVERIFY(!uploaded(testpictures::plainPicture(5, 5)).isEmpty());
        // What is under way when it goes is waited for and not answered.
        const auto last = m_recognizer->begin(request, [&](const RecognizerAnswer&) { ++done; });
        const int before = done;
        m_recognizer.reset();
        QTest::qWait(1);
        QCOMPARE(done, before);
    }

    // Runs under the sanitizers as well.
    void mutatedRequestsAreAnsweredOnce()
    {
        const QByteArray id = uploaded(testpictures::plainPicture(60, 40)).toLatin1();
        const QByteArray file = testpictures::encoded(testpictures::plainPicture(12, 10));
        QRandomGenerator random(99);
        const auto mutated = [&random](QByteArray text) {
            for (int i = random.bounded(4); i > 0 && !text.isEmpty(); --i) {
                const int at = random.bounded(text.size());
                if (random.bounded(2) == 0)
                    text[at] = char(random.bounded(256));
                else
                    text.remove(at, random.bounded(1, 12));
            }
            return text;
        };
        const QVector<RecognizerRequest> requests{
            get("type=1&action=objat&imgid=" + id + "&points=20,20;30,21&threshold=30&angle=7&spltrs=1,2;3,4_5,6;70,8"),
            get("type=1&action=getimg&imgid=" + id),
            get("type=1&action=render&id=3&text=ab%20c&size=32"),
            get("imgids=a," + id + ";b," + id, Script::Similarity),
            get("id=3&version=3", Script::ShopLink),
            upload(file),
            download(QUrl(QStringLiteral("http://127.0.0.1/x")))};
        int replies = 0;
        std::vector<std::shared_ptr<void>> works;
        for (int i = 0; i < 3000; ++i) {
            RecognizerRequest request = requests.at(random.bounded(requests.size()));
            request.query = mutated(request.query);
            request.contentType = mutated(request.contentType);
            request.body = mutated(request.body);
            works.push_back(m_recognizer->begin(request, [&replies](const RecognizerAnswer& answer) {
                ++replies;
                if (answer.status < 200 || answer.status > 599)
                    qFatal("no status");
            }));
            if (i % 100 == 99)
                QTRY_COMPARE_WITH_TIMEOUT(replies, i + 1, 30000);
        }
    }
};

KERVAL_TEST(TestLocalRecognizer)
#include "tst_localrecognizer.moc"
