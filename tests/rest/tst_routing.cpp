#include "qtService/app/core/SettingsFolders.h"
#include "rest/DeferredResourceHandler.h"
#include "rest/Server.h"
#include "rest/StreamedBody.h"
#include "tests/rest/httpclient.h"
#include "tests/support/testregistry.h"

#include <QAtomicInt>
#include <QEventLoop>
#include <QSettings>
#include <QTcpSocket>
#include <QtTest>

#include <memory>
#include <stdexcept>

using api::rest::ResourceHandler;
using api::rest::Server;

// Handlers that tell which one was called, added behind the routes of the library.
class TestRouting : public QObject
{
    Q_OBJECT

    struct Echo : ResourceHandler
    {
        Echo()
            : ResourceHandler({QHttpRequest::HTTP_POST, QHttpRequest::HTTP_GET, QHttpRequest::HTTP_PATCH})
        {
        }
        int get(QHttpRequest* request, Headers* headers, QByteArray* body) override
        {
            headers->insert(QStringLiteral("X-B"), QStringLiteral("b"));
            headers->insert(QStringLiteral("X-A"), QStringLiteral("a"));
            *body =
                request->path().toUtf8() + ' ' + queryParameters(request->url()).value(QStringLiteral("q")).toUtf8();
            return 200;
        }
        int post(QHttpRequest* request, Headers*, QByteArray* body) override
        {
            *body = request->body();
            return 201;
        }
        int patch(QHttpRequest*, Headers*, QByteArray*) override { throw std::runtime_error("broken handler"); }
    };

    struct Deferred : api::rest::DeferredResourceHandler
    {
        Deferred()
            : DeferredResourceHandler({QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST})
        {
        }
        qint64 bodyLimit() const override { return 10 * 1024 * 1024; }
        bool isPrivate() const override { return true; }
        std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) override
        {
            if (request.path().endsWith(QLatin1String("/now")))
                reply({200, {}, "now"});
            else
                replies.insert(request.path(), reply);
            ++working;
            return std::shared_ptr<void>(nullptr, [this](void*) { --working; });
        }
        QMap<QString, Reply> replies;
        int working = 0;
    };

    // A hundred megabytes, unless somebody asks for less.
    struct Streamed : ResourceHandler, api::rest::StreamedBody
    {
        static constexpr int pieceSize = 512 * 1024;
        int get(QHttpRequest* request, Headers*, QByteArray*) override
        {
            return request->path().endsWith(QLatin1String("/none")) ? 404 : 200;
        }
        NextPiece body(const QHttpRequest& request) override
        {
            const int pieces = request.path().endsWith(QLatin1String("/short")) ? 3 : 200;
            return [made = made, pieces] {
                const int n = made->fetchAndAddOrdered(1);
                return n < pieces ? QByteArray(pieceSize, char('a' + n)) : QByteArray();
            };
        }
        std::shared_ptr<QAtomicInt> made = std::make_shared<QAtomicInt>(0);
    };

    std::unique_ptr<Server> m_server;
    std::unique_ptr<HttpClient> m_client;

private slots:
    void init()
    {
        m_server = std::make_unique<Server>(QSharedPointer<FontManagementService>());
        m_server->addHandler("/echo(/\\D+)?/?", new Echo);
        QVERIFY(m_server->listen(0));
        m_client = std::make_unique<HttpClient>(m_server->port());
    }

    void routesByTheWholeDecodedPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("seen");
        QTest::newRow("plain") << QStringLiteral("/echo") << QStringLiteral("/echo ");
        QTest::newRow("slash") << QStringLiteral("/echo/") << QStringLiteral("/echo/ ");
        QTest::newRow("query") << QStringLiteral("/echo?q=a+b%2Bc%26d&q=e+f") << QStringLiteral("/echo e f");
        QTest::newRow("escapes") << QStringLiteral("/%65cho/%C3%A4%0Ab") << QString::fromUtf8("/echo/\xc3\xa4\nb ");
        QTest::newRow("digits do not match") << QStringLiteral("/echo/12") << QString();
        QTest::newRow("prefix does not match") << QStringLiteral("/echoes") << QString();
        QTest::newRow("root") << QStringLiteral("/") << QString();
        QTest::newRow("long") << QStringLiteral("/echo/") + QString(50000, QLatin1Char('a'))
                              << QStringLiteral("/echo/") + QString(50000, QLatin1Char('a')) + QLatin1Char(' ');
    }

    void routesByTheWholeDecodedPath()
    {
        QFETCH(QString, path);
        QFETCH(QString, seen);
        const HttpReply reply = m_client->get(path);
        QCOMPARE(reply.status, seen.isEmpty() ? 404 : 200);
        QCOMPARE(QString::fromUtf8(reply.body), seen);
        QCOMPARE(reply.header("Access-Control-Allow-Origin"), seen.isEmpty() ? QByteArray() : QByteArray("*"));
    }

    void answersCarryTheCrossOriginHeaders()
    {
        const HttpReply reply = m_client->get(QStringLiteral("/echo"));
        QCOMPARE(reply.header("Access-Control-Expose-Headers"), QByteArray("X-A, X-B"));
        QCOMPARE(reply.header("Connection"), QByteArray("close"));
    }

    void methods()
    {
        QCOMPARE(m_client->send("POST", QStringLiteral("/echo"), "body").body, QByteArray("body"));
        const HttpReply refused = m_client->send("PUT", QStringLiteral("/echo"), "{}");
        QCOMPARE(refused.status, 405);
        QCOMPARE(refused.header("Access-Control-Allow-Origin"), QByteArray("*"));
        const HttpReply options = m_client->send("OPTIONS", QStringLiteral("/echo"));
        QCOMPARE(options.status, 200);
        QCOMPARE(options.header("Allow"), QByteArray("GET,POST,PATCH,OPTIONS"));
        QCOMPARE(options.header("Access-Control-Allow-Methods"), options.header("Allow"));
        QCOMPARE(options.header("Access-Control-Allow-Headers"), QByteArray("Content-Type"));
        QCOMPARE(m_client->send("HEAD", QStringLiteral("/echo")).status, 200);
        QCOMPARE(m_client->send("PURGE", QStringLiteral("/echo")).status, 200);
        QCOMPARE(m_client->send("PATCH", QStringLiteral("/echo"), "{}").status, 500);
    }

    void foreignPagesAndRemoteNamesAreRefused()
    {
        QCOMPARE(m_client->send("POST", QStringLiteral("/echo"), "x", {{"Origin", "https://page.example"}}).status,
                 403);
        QCOMPARE(m_client->send("GET", QStringLiteral("/echo"), {}, {{"Origin", "https://page.example"}}).status, 200);
        QCOMPARE(m_client->send("GET", QStringLiteral("/echo"), {}, {{"Host", "page.example"}}).status, 403);
        QCOMPARE(m_client->send("OPTIONS", QStringLiteral("/nothing"), {}, {{"Host", "page.example"}}).status, 403);

        QSettings settings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("Rest/TrustedOrigins"), QStringList{QStringLiteral("https://page.example")});
        settings.sync();
        m_server->close();
        QVERIFY(m_server->listen(0));
        HttpClient client(m_server->port());
        QCOMPARE(client.send("POST", QStringLiteral("/echo"), "x", {{"Origin", "https://page.example"}}).status, 201);
        settings.clear();
    }

    void aServerMayGoWhileAHandlerWaits()
    {
        struct Waiting : ResourceHandler
        {
            explicit Waiting(bool& done)
                : m_done(done)
            {
            }
            int get(QHttpRequest*, Headers*, QByteArray* body) override
            {
                QEventLoop loop;
                QTimer::singleShot(50, &loop, &QEventLoop::quit);
                loop.exec();
                *body = "late";
                m_done = true;
                return 200;
            }
            bool& m_done;
        };
        bool done = false;
        m_server->addHandler("/waiting", new Waiting(done));
        QTimer::singleShot(20, this, [this] { m_server.reset(); });
        const HttpReply reply = m_client->get(QStringLiteral("/waiting"));
        QCOMPARE(reply.status, 0);
        QTRY_VERIFY(done);
    }

    void deferredAnswersGoOutWhenTheyAreReady()
    {
        auto* handler = new Deferred;
        m_server->addHandler("/deferred/.*", handler);
        QNetworkAccessManager network;
        const QString base = QStringLiteral("http://127.0.0.1:%1/deferred/").arg(m_server->port());
        const std::unique_ptr<QNetworkReply> first(network.get(QNetworkRequest(QUrl(base + QStringLiteral("first")))));
        const std::unique_ptr<QNetworkReply> second(
            network.get(QNetworkRequest(QUrl(base + QStringLiteral("second")))));
        QTRY_COMPARE(handler->replies.size(), 2);
        QCOMPARE(m_client->get(QStringLiteral("/deferred/now")).body, QByteArray("now"));

        handler->replies.value(QStringLiteral("/deferred/second"))({200, {}, "2"});
        handler->replies.value(QStringLiteral("/deferred/second"))({500, {}, "again"});
        QTRY_VERIFY(second->isFinished());
        QCOMPARE(second->readAll(), QByteArray("2"));
        QVERIFY(!first->isFinished());
        QTRY_COMPARE(handler->working, 1);

        first->abort();
        QTRY_COMPARE(handler->working, 0); // the client has left
        handler->replies.value(QStringLiteral("/deferred/first"))({200, {}, "late"});

        const std::unique_ptr<QNetworkReply> last(network.get(QNetworkRequest(QUrl(base + QStringLiteral("last")))));
        QTRY_COMPARE(handler->working, 1);
        const auto replies = handler->replies;
        m_server.reset();
        replies.value(QStringLiteral("/deferred/last"))({200, {}, "late"});
        QTRY_VERIFY(last->isFinished());
        QVERIFY(last->error() != QNetworkReply::NoError);
    }

    void streamedBodiesArriveWhole()
    {
        auto* handler = new Streamed;
        m_server->addHandler("/streamed/.*", handler);
        QCOMPARE(m_client->get(QStringLiteral("/streamed/none")).status, 404);
        QCOMPARE(handler->made->loadAcquire(), 0);
        const HttpReply reply = m_client->get(QStringLiteral("/streamed/short"));
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Access-Control-Allow-Origin"), QByteArray("*"));
        QByteArray expected;
        for (const char c : {'a', 'b', 'c'})
            expected += QByteArray(Streamed::pieceSize, c);
        QVERIFY(reply.body == expected);
        QTRY_COMPARE(handler->made.use_count(), 1L);
    }

    // What a client does not take is not made either, and others are served meanwhile.
    void aSlowClientHoldsItsBodyBack()
    {
        auto* handler = new Streamed;
        m_server->addHandler("/streamed/.*", handler);
        QTcpSocket client;
        client.setReadBufferSize(1024);
        client.connectToHost(QHostAddress::LocalHost, m_server->port());
        QTRY_COMPARE(client.state(), QAbstractSocket::ConnectedState);
        client.write("GET /streamed/long HTTP/1.1\r\nHost: localhost\r\n\r\n");
        QTRY_VERIFY(client.bytesAvailable() > 0);
        for (int i = 0; i < 300; ++i)
            QCOMPARE(m_client->get(QStringLiteral("/echo")).status, 200);
        QVERIFY2(handler->made->loadAcquire() < 100, qPrintable(QString::number(handler->made->loadAcquire())));
        QVERIFY(handler->made.use_count() > 1);

        client.abort();
        QTRY_COMPARE(handler->made.use_count(), 1L);
        QVERIFY(handler->made->loadAcquire() < 100);
    }

    void privateRoutesAreForThisMachineAlone()
    {
        m_server->addHandler("/deferred/.*", new Deferred);
        m_server->setAccessPolicy(api::rest::AccessPolicy(true, {QStringLiteral("https://friend.example")}));
        const QString path = QStringLiteral("/deferred/now");
        const HttpReply reply = m_client->get(path);
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Access-Control-Allow-Origin"), QByteArray());
        for (const char* origin : {"https://page.example", "null", "file://"})
            QCOMPARE(m_client->send("GET", path, {}, {{"Origin", origin}}).status, 403);
        for (const char* origin : {"https://friend.example", "http://localhost:8080"})
            QCOMPARE(m_client->send("GET", path, {}, {{"Origin", origin}}).status, 200);
        QCOMPARE(m_client->send("GET", path, {}, {{"Sec-Fetch-Site", "cross-site"}}).status, 403);
        QCOMPARE(m_client->send("GET", path, {}, {{"Sec-Fetch-Site", "none"}}).status, 200);
        QCOMPARE(m_client->send("OPTIONS", path, {}, {{"Origin", "null"}}).status, 403);
        QCOMPARE(m_client->send("GET", path, {}, {{"Host", "page.example"}}).status, 403);
    }

    void aRouteMayTakeLargerBodies()
    {
        m_server->addHandler("/deferred/.*", new Deferred);
        const QByteArray large(9 * 1024 * 1024, 'a');
        QCOMPARE(m_client->send("POST", QStringLiteral("/deferred/now"), large).status, 200);
        QCOMPARE(m_client->send("POST", QStringLiteral("/echo"), large).status, 413);
        QCOMPARE(m_client->send("POST", QStringLiteral("/deferred/now"), QByteArray(11 * 1024 * 1024, 'a')).status,
                 413);
    }

    void parseBool_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value"); // -1: none
        QTest::newRow("1") << QStringLiteral("1") << 1;
        QTest::newRow("2") << QStringLiteral("2") << 1;
        QTest::newRow("0") << QStringLiteral("0") << 0;
        QTest::newRow("TRUE") << QStringLiteral("TRUE") << 1;
        QTest::newRow("Yes") << QStringLiteral("Yes") << 1;
        QTest::newRow("No") << QStringLiteral("No") << 0;
        QTest::newRow("maybe") << QStringLiteral("maybe") << -1;
        QTest::newRow("empty") << QString() << -1;
        QTest::newRow("true and more") << QStringLiteral("true\n") << -1;
    }

    void parseBool()
    {
        QFETCH(QString, text);
        QFETCH(int, value);
        const auto parsed = ResourceHandler::parseBool(text);
        QCOMPARE(parsed ? int(*parsed) : -1, value);
    }
};

KERVAL_TEST(TestRouting)
#include "tst_routing.moc"
