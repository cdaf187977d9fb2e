#include "fontlens/recognition/FontRecognizerClient.h"
#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"
#include "tests/support/testregistry.h"

#include <QBuffer>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QUrl>
#include <QtTest>

#include <memory>

using namespace FontRecognizer;

namespace {

using Server = ScriptedRecognitionServer;
using Reply = FontRecognizerReplyBase;

constexpr int kNoReply = 10 * 1000; // milliseconds, of a test that is about to fail

QImage picture(QSize size = QSize(12, 7), QColor colour = Qt::blue)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QByteArray bytesOf(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// The header of a huge picture, without its pixels.
QByteArray hugeBmp()
{
    QByteArray bytes = bytesOf(picture(), "BMP");
    bytes.replace(18, 8, QByteArray::fromHex("ffff0000ffff0000"));
    return bytes;
}

// Such a drawing of a few kilobytes may unpack to gigabytes; this one is small.
QByteArray compressedDrawing()
{
    return QByteArray::fromBase64(
        "H4sIAAAAAAACA7MpLktXqMjNySu2VcooKSmw0tcvLy/"
        "XKzfWyy9K1zcyMDDQB6pQUijPTCnJsFWyVFLISM1MzygBMe1silKTS2BSpggpUyV9OxuQPjsAYNGk1V8AAAA=");
}

bool finishes(const Reply& reply)
{
    return QTest::qWaitFor([&reply] { return reply.state() == Reply::Finished; }, kNoReply);
}

} // namespace

class RecognitionClientTest : public QObject
{
    Q_OBJECT

private slots:
    void uploadIsSentByteForByte()
    {
        Server server;
        server.setScript([](const Server::Request& request) {
            return request.body.isEmpty() ? Server::png(picture(QSize(3, 4))) : Server::page("0a1b_2c;anything");
        });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const ImageReplyPtr reply = client.uploadImage(picture(), QStringLiteral("/home/anna/my.photo.jpeg"));
        QCOMPARE(int(reply->state()), int(Reply::Idle));
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), 0);
        QCOMPARE(reply->imageId(), QStringLiteral("0a1b_2c"));
        QCOMPARE(reply->image().size(), QSize(3, 4));

        const Server::Request& upload = server.requests().first();
        QVERIFY(upload.head.startsWith("POST /query/norvik/krvmodules.cgi HTTP/1.1\r\n"));
        QCOMPARE(upload.header("Accept"), QByteArray("*/*"));
        QCOMPARE(upload.header("Host"), QByteArray("127.0.0.1"));
        QCOMPARE(upload.header("User-Agent"), QByteArray("Kerval/1.0"));
        QCOMPARE(upload.header("Content-Type"), QByteArray("multipart/form-data, boundary=AaB03x"));
        QCOMPARE(upload.header("Content-Length"), QByteArray::number(upload.body.size()));
        for (const char* once :
             {"\r\naccept:", "\r\nhost:", "\r\nuser-agent:", "\r\ncontent-type:", "\r\ncontent-length:"})
            QCOMPARE(upload.head.toLower().count(once), 1);

        const QByteArray fileHead = "--AaB03x\r\nContent-disposition: form-data; name=\"uploadedfile\"; "
                                    "filename=\"my.photo.png\"\r\nContent-Type: image/png\r\n\r\n";
        const int file = upload.body.indexOf(fileHead);
        QByteArray fields = upload.body.left(file);
        for (const QByteArray& field :
             {QByteArray("action\"\r\n\r\nimgupload"), QByteArray("MAX_FILE_SIZE\"\r\n\r\n100000"),
              QByteArray("format\"\r\n\r\nxml")}) {
            const QByteArray part = "--AaB03x\r\nContent-disposition: form-data; name=\"" + field + "\r\n";
            QVERIFY2(fields.contains(part), field.constData());
            fields.replace(part, "");
        }
        QCOMPARE(fields, QByteArray());
        const QByteArray end = "\r\n--AaB03x\r\n\r\n";
        QVERIFY(upload.body.endsWith(end));
        const QByteArray png = upload.body.mid(file + fileHead.size()).chopped(end.size());
        QCOMPARE(QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGB32), picture());

        QCOMPARE(server.targets().last(),
                 QByteArray("/query/norvik/krvmodules.cgi?type=1&imgid=0a1b_2c&action=getimg"));
    }

    void downloadNamesTheAddress()
    {
        Server server;
        server.setScript([](const Server::Request&) { return Server::page("no id"); });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const ImageReplyPtr reply = client.downloadImage(QUrl(QStringLiteral("http://a.example/b?c=d&e=f+g")));
        QVERIFY(finishes(*reply));
        const Server::Request& request = server.requests().first();
        QVERIFY(request.head.startsWith("POST /query/norvik/krvmodules.cgi?type=1 HTTP/1.1\r\n"));
        QCOMPARE(request.header("Content-Type"), QByteArray("text/html"));
        QCOMPARE(request.header("Content-Length"), QByteArray::number(request.body.size()));
        QCOMPARE(request.body,
                 QByteArray("action=imgdownload&url=http%3A%2F%2Fa.example%2Fb%3Fc%3Dd%26e%3Df%2Bg&format=xml"));
        QCOMPARE(reply->result(), int(Reply::ParseFailure));
    }

    void queriesAreSentByteForByte()
    {
        Server server;
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const QPolygon first(QVector<QPoint>{QPoint(1, 2), QPoint(3, 4)});
        const QPolygon second(QVector<QPoint>{QPoint(5, 6), QPoint(7, 8)});
        const auto letter =
            client.selectLetter(QStringLiteral("ab_1"), {QPoint(10, 20), QPoint(-3, 4)}, -7, 30, {first, second});
        const auto plain = client.selectLetter(QStringLiteral("ab"), {QPoint(1, 1)}, 0, 4, {});
        const auto preview = client.renderPreview(17, 32, QStringLiteral("a & b=50%25 #ä"));
        const auto fonts = client.findSimilarFonts(
            {{QLatin1Char('a'), QStringLiteral("x1")}, {QLatin1Char('b'), QStringLiteral("y2")}});
        const auto shop = client.getFontStoreUrl(17);
        QCOMPARE(preview->imageId(), QStringLiteral("17"));
        QCOMPARE(int(preview->state()), int(Reply::Running));
        QTRY_COMPARE(server.requests().size(), 5);
        const QByteArray module = "/query/norvik/krvmodules.cgi";
        const QList<QByteArray> expected{
            module + "?type=1&action=objat&imgid=ab_1&points=10,20;-3,4&threshold=30&angle=-7&spltrs=1,2;3,4_5,6;7,8",
            module + "?type=1&action=objat&imgid=ab&points=1,1&threshold=4&angle=0&spltrs=",
            module + "?type=1&action=render&id=17&text=a%20%26%20b%3D50%2525%20%23%C3%A4&size=32",
            "/query/norvik/ocrsim.php?type=1&version=3&format=xml2&imgids=a,x1;b,y2",
            "/php/norvik/GetBuyFontLinks.php?id=17&version=3"};
        for (const QByteArray& target : expected)
            QVERIFY2(server.targets().contains(target), server.targets().join('\n').constData());
    }

    void imageIdsAreStrict_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("id");
        QTest::newRow("with a tail") << QByteArray("0a1b_2c;anything") << "0a1b_2c";
        QTest::newRow("plain") << QByteArray("Ff") << "Ff";
        QTest::newRow("hyphen") << QByteArray("abc-1") << QString();
        QTest::newRow("line break") << QByteArray("abc\n") << QString();
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("nothing before the tail") << QByteArray(";ab") << QString();
        QTest::newRow("markup") << QByteArray("<html>ab</html>") << QString();
    }

    void imageIdsAreStrict()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, id);
        Server server;
        server.setScript([answer](const Server::Request& request) {
            return request.target().contains("getimg") ? Server::png(picture()) : Server::page(answer);
        });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {});
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->imageId(), id);
        QCOMPARE(reply->result(), int(id.isEmpty() ? Reply::ParseFailure : Reply::Success));
        QCOMPARE(reply->image().isNull(), id.isEmpty());
    }

    void fontListsAreRead_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("fonts");
        const QString none;
        QTest::newRow("sorted, wrappers off, others ignored")
            << QByteArray(
                   "<?xml version=\"1.0\" encoding=\"utf-8\"?><R><F>7</F><FN><![CDATA[Émile]]></FN><S><![CDATA[Bold]]>"
                   "</S><FO><![CDATA[Fo]]></FO><D>0.7</D><FL><![CDATA[x]]></FL><F>2</F><D>0.2</D><FN>Two</FN><VN>v</VN>"
                   "<F>5</F><D>0.5</D></R>")
            << 0 << "2|Two|||0.2 5||||0.5 7|Émile|Bold|Fo|0.7";
        QTest::newRow("no record") << QByteArray("<R><FN>nobody's</FN></R>") << 0 << none;
        QTest::newRow("ampersand from a wrapper")
            << QByteArray("<R><F>1</F><FN><![CDATA[Ab & Co]]></FN></R>") << 2 << none;
        QTest::newRow("entity") << QByteArray("<R><F>1</F><FN>Ab &amp; Co</FN></R>") << 0 << "1|Ab & Co|||0";
        QTest::newRow("wrapper of another element stays")
            << QByteArray("<R><F>1</F><X><![CDATA[a & b]]></X></R>") << 0 << "1||||0";
        QTest::newRow("cut off") << QByteArray("<R><F>1</F><FN>One</FN><F>2</F>") << 2 << none;
        QTest::newRow("nothing") << QByteArray() << 2 << none;
        QTest::newRow("no XML") << QByteArray("Internal error") << 2 << none;
        QTest::newRow("not a number") << QByteArray("<R><F>1</F><D>nan</D><F>2</F><D>3</D></R>") << 0
                                      << "2||||3 1||||nan";
    }

    void fontListsAreRead()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, result);
        QFETCH(QString, fonts);
        Server server;
        server.setScript([answer](const Server::Request&) { return Server::page(answer, "text/xml"); });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const FontListReplyPtr reply = client.findSimilarFonts({});
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), result);
        QStringList read;
        for (const FontDataPtr& font : reply->fonts())
            read.append(QStringLiteral("%1|%2|%3|%4|%5")
                            .arg(font->id)
                            .arg(font->name, font->style, font->foundry)
                            .arg(font->deviance));
        QCOMPARE(read.join(QLatin1Char(' ')), fonts);
    }

    void shopLinksAreRead_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("url");
        QTest::newRow("wrapped") << QByteArray("<R><buyurl><![CDATA[http://a.example/x y]]></buyurl></R>") << 0
                                 << "http://a.example/x%20y";
        QTest::newRow("the first counts, the rest is not read")
            << QByteArray("<R><buyurl>http://a.example/</buyurl><buyurl>http://b.example/</buyurl>") << 0
            << "http://a.example/";
        QTest::newRow("none") << QByteArray("<R></R>") << 0 << QString();
        QTest::newRow("broken") << QByteArray("<R><a></R>") << 2 << QString();
    }

    void shopLinksAreRead()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, result);
        QFETCH(QString, url);
        Server server;
        server.setScript([answer](const Server::Request&) { return Server::page(answer, "text/xml"); });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const FontStoreUrlReplyPtr reply = client.getFontStoreUrl(4);
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->fontId(), 4);
        QCOMPARE(reply->result(), result);
        QCOMPARE(reply->url().toString(QUrl::FullyEncoded), url);
    }

    void brokenAnswersAreTold_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("result");
        QTest::newRow("early close") << Server::earlyClose().bytes << int(Reply::NetworkFailure);
        QTest::newRow("closed at once") << QByteArray() << int(Reply::NetworkFailure);
        QTest::newRow("error status") << Server::page("sorry", "text/plain", "500 Internal Server Error").bytes
                                      << int(Reply::NetworkFailure);
        QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n") << int(Reply::NetworkFailure);
        QTest::newRow("wrong type") << Server::page("<html></html>", "image/png").bytes << int(Reply::ParseFailure);
        QTest::newRow("10 MB of nothing") << Server::page(QByteArray(10 << 20, '\0')).bytes << int(Reply::ParseFailure);
        QTest::newRow("10 MB that are no HTTP") << QByteArray(10 << 20, '\0') << int(Reply::NetworkFailure);
        QTest::newRow("a picture that claims gigabytes")
            << Server::page(hugeBmp(), "image/bmp").bytes << int(Reply::ParseFailure);
        QTest::newRow("a compressed drawing")
            << Server::page(compressedDrawing(), "image/svg+xml").bytes << int(Reply::ParseFailure);
        QTest::newRow("a picture in a wrapper")
            << Server::page(bytesOf(picture(), "ICO"), "image/x-icon").bytes << int(Reply::ParseFailure);
    }

    void brokenAnswersAreTold()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, result);
        Server server;
        server.setScript([answer](const Server::Request&) { return Server::Answer{answer, false}; });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const ImageReplyPtr reply = client.renderPreview(1, 20, QStringLiteral("a"));
        QSignalSpy finished(reply.data(), &Reply::finished);
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), result);
        QCOMPARE(reply->networkError() != 0, result == Reply::NetworkFailure);
        QVERIFY(reply->image().isNull());
        QCoreApplication::processEvents();
        QCOMPARE(finished.count(), 1);
    }

    void picturesOfAllOrdinaryFormatsAreRead()
    {
        for (const char* format : {"PNG", "JPG", "BMP", "PPM", "XPM"}) {
            Server server;
            server.setScript(
                [format](const Server::Request&) { return Server::page(bytesOf(picture(), format), "text/html"); });
            FontRecognizerClient client{RecognitionUrls(server.host())};
            const ImageReplyPtr reply = client.renderPreview(1, 20, QStringLiteral("a"));
            QVERIFY(finishes(*reply));
            QVERIFY2(reply->result() == Reply::Success, format);
            QCOMPARE(reply->image().size(), picture().size());
        }
    }

    // Nothing is kept of what never ends, and the service is let go.
    void endlessAnswersAreCutOff()
    {
        Server server;
        server.setScript([](const Server::Request&) { return Server::endless(); });
        QSignalSpy abandoned(&server, &Server::abandoned);
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const QList<QSharedPointer<Reply>> replies{client.renderPreview(1, 20, QStringLiteral("a")),
                                                   client.findSimilarFonts({}), client.getFontStoreUrl(1),
                                                   client.selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {})};
        for (const auto& reply : replies) {
            const bool f = finishes(*reply);
            qWarning() << "DBG" << f << reply->state()
                       << (reply->networkReply() ? reply->networkReply()->bytesAvailable() : -1) << server.targets();
            QVERIFY2(finishes(*reply), reply->metaObject()->className());
            QCOMPARE(reply->result(), int(Reply::ParseFailure));
            QCOMPARE(reply->networkError(), 0);
        }
        QTRY_COMPARE(abandoned.count(), replies.size());
    }

    void tricklingAnswersAreCutOff()
    {
        Server server;
        server.setScript([](const Server::Request&) {
            Server::Answer answer = Server::endless();
            answer.repeated = "x";
            return answer;
        });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.renderPreview(1, 20, QStringLiteral("a"));
        reply->setPatience(kNoReply, 1);
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), int(Reply::NetworkFailure));
        QCOMPARE(reply->networkError(), int(QNetworkReply::TimeoutError));
    }

    void failedFirstStepEndsTheJob()
    {
        Server server;
        server.setScript(
            [](const Server::Request&) { return Server::page("x", "text/plain", "503 Service Unavailable"); });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.downloadImage(QUrl(QStringLiteral("http://a.example/")));
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), int(Reply::NetworkFailure));
        QCOMPARE(reply->networkError(), int(QNetworkReply::ServiceUnavailableError));
        QCOMPARE(server.requests().size(), 1);
    }

    void noServiceIsANetworkFailure()
    {
        FontRecognizerClient nobody{RecognitionUrls(QString())};
        const auto reply = nobody.renderPreview(1, 20, QStringLiteral("a"));
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), int(Reply::NetworkFailure));
    }

    // The service of this machine is reached however the user's network goes out into the world.
    void noProxyStandsBeforeThisMachine()
    {
        Server server;
        server.setScript([](const Server::Request&) { return Server::png(picture()); });
        QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 9});
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.renderPreview(1, 20, QStringLiteral("a"));
        const bool done = finishes(*reply);
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QVERIFY(done);
        QCOMPARE(reply->result(), int(Reply::Success));
    }

    void abortedReplyNeverFinishes()
    {
        Server server;
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.renderPreview(1, 20, QStringLiteral("a"));
        int changes = 0;
        connect(reply.data(), &Reply::stateChanged, this, [&changes] { ++changes; });
        QSignalSpy finished(reply.data(), &Reply::finished);
        QTRY_COMPARE(server.requests().size(), 1);
        reply->abort();
        QTRY_COMPARE(int(reply->state()), int(Reply::Aborted));
        QCOMPARE(reply->result(), 0);
        QCOMPARE(changes, 1);
        QCOMPARE(finished.count(), 0);
    }

    // Nobody may wait for ever, and the caller must hear of it.
    void silenceEndsAsANetworkFailure()
    {
        Server server;
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto reply = client.renderPreview(1, 20, QStringLiteral("a"));
        QTRY_COMPARE(server.requests().size(), 1);
        reply->setPatience(1);
        QVERIFY(finishes(*reply));
        QCOMPARE(reply->result(), int(Reply::NetworkFailure));
        QCOMPARE(reply->networkError(), int(QNetworkReply::TimeoutError));
    }

    void droppedRepliesLetTheServiceGo()
    {
        Server server;
        QSignalSpy abandoned(&server, &Server::abandoned);
        FontRecognizerClient client{RecognitionUrls(server.host())};
        auto running = client.renderPreview(1, 20, QStringLiteral("a"));
        auto idle = client.selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {});
        QTRY_COMPARE(server.requests().size(), 2);
        running.clear();
        idle.clear();
        QTRY_COMPARE(abandoned.count(), 2);
    }

    void replyMayBeDroppedInsideItsOwnSignal()
    {
        Server server;
        server.setScript([](const Server::Request& request) {
            return request.target().contains("getimg") ? Server::png(picture()) : Server::page("ab");
        });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        auto reply = client.selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {});
        bool done = false;
        connect(reply.data(), &Reply::finished, this, [&] {
            reply.clear();
            done = true;
        });
        QTRY_VERIFY(done);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void clientMayGoBeforeItsReplies()
    {
        Server server;
        auto client = std::make_unique<FontRecognizerClient>(RecognitionUrls(server.host()));
        const auto running = client->renderPreview(1, 20, QStringLiteral("a"));
        const auto idle = client->selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {});
        QSignalSpy finished(running.data(), &Reply::finished);
        QTRY_COMPARE(server.requests().size(), 2);
        client.reset();
        QCOMPARE(int(running->state()), int(Reply::Aborted));
        QCOMPARE(int(idle->state()), int(Reply::Idle));
        running->abort();
        QCOMPARE(finished.count(), 0);
    }

    void clientMayGoInsideASignalOfItsReply()
    {
        Server server;
        server.setScript([](const Server::Request&) { return Server::png(picture()); });
        auto client = std::make_unique<FontRecognizerClient>(RecognitionUrls(server.host()));
        const auto reply = client->renderPreview(1, 20, QStringLiteral("a"));
        connect(reply.data(), &Reply::finished, this, [&client] { client.reset(); });
        QTRY_VERIFY(!client);
        QCOMPARE(int(reply->state()), int(Reply::Finished));
        QCOMPARE(reply->image().size(), picture().size());
    }

    // Each of two jobs gets its own picture when the service finishes the later one first.
    void jobsDoNotMix()
    {
        Server server;
        server.setScript([](const Server::Request& request) {
            const QByteArray target = request.target();
            if (!target.contains("getimg"))
                return Server::silence();
            return Server::png(picture(target.contains("imgid=aa") ? QSize(1, 1) : QSize(2, 2)));
        });
        FontRecognizerClient client{RecognitionUrls(server.host())};
        const auto first = client.selectLetter(QStringLiteral("1"), {QPoint()}, 0, 30, {});
        const auto second = client.selectLetter(QStringLiteral("2"), {QPoint()}, 0, 30, {});
        QTRY_COMPARE(server.requests().size(), 2);
        const int ofFirst = server.targets().first().contains("imgid=1&") ? 0 : 1;
        server.answer(1 - ofFirst, Server::page("bb"));
        QVERIFY(finishes(*second));
        QCOMPARE(int(first->state()), int(Reply::Idle));
        server.answer(ofFirst, Server::page("aa"));
        QVERIFY(finishes(*first));
        QCOMPARE(first->image().size(), QSize(1, 1));
        QCOMPARE(second->image().size(), QSize(2, 2));
    }
};

KERVAL_TEST(RecognitionClientTest)

#include "RecognitionClientTest.moc"
