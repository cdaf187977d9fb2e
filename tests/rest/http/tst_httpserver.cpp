#include "rest/http/HttpHeader.h"
#include "rest/http/QHttpConnection.h"
#include "rest/http/QHttpRequest.h"
#include "rest/http/QHttpResponse.h"
#include "rest/http/QHttpServer.h"
#include "tests/rest/http/rawclient.h"
#include "tests/support/testregistry.h"

#include <QEventLoop>
#include <QSignalSpy>
#include <QTcpServer>
#include <QtTest>

#include <memory>

class TestHttpServer : public QObject
{
    Q_OBJECT

    std::unique_ptr<QHttpServer> m_server;
    // Run for each request that arrived whole; the default answers with the body and its length.
    std::function<void(QHttpRequest*, QHttpResponse*)> m_handle;
    QStringList m_handled;
    int m_cutShort = 0;

    int openConnections() const { return m_server->findChildren<QHttpConnection*>().size(); }

private slots:
    void init()
    {
        m_handled.clear();
        m_cutShort = 0;
        m_handle = [](QHttpRequest* request, QHttpResponse* response) {
            response->setHeader(QStringLiteral("Content-Length"), QString::number(request->body().size()));
            response->writeHead(200);
            response->end(request->body());
        };
        m_server = std::make_unique<QHttpServer>();
        QVERIFY(m_server->listen(QHostAddress::LocalHost, 0));
        connect(m_server.get(), &QHttpServer::newRequest, this, [this](QHttpRequest* request, QHttpResponse* response) {
            connect(request, &QHttpRequest::data, request, &QHttpRequest::appendBody);
            connect(request, &QHttpRequest::end, this, [=] {
                if (!request->isComplete()) {
                    ++m_cutShort;
                    return;
                }
                m_handled.append(request->path());
                m_handle(request, response);
            });
        });
    }

    void keepsTheConnectionOnlyWithALength()
    {
        RawClient client(m_server->serverPort());
        client.send("POST /one HTTP/1.1\r\nContent-Length: 3\r\n\r\nabc");
        QVERIFY(client.receive("\r\n\r\nabc"));
        QVERIFY(client.received().startsWith("HTTP/1.1 200 OK\r\n"));
        QVERIFY(client.received().contains("\r\nConnection: keep-alive\r\n"));
        const QRegularExpression date(
            QStringLiteral("\r\nDate: [A-Z][a-z]{2}, \\d\\d [A-Z][a-z]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d GMT\r\n"));
        QVERIFY(date.match(QString::fromLatin1(client.received())).hasMatch());
        QVERIFY(client.isOpen());

        m_handle = [](QHttpRequest*, QHttpResponse* response) {
            response->writeHead(QHttpResponse::STATUS_OK);
            response->end("to the end");
        };
        client.send("GET /two HTTP/1.1\r\n\r\n");
        QVERIFY(client.receive("to the end"));
        QVERIFY(client.waitForClose());
        QVERIFY(client.received().contains("Connection: close"));
        QTRY_COMPARE(openConnections(), 0);
    }

    void closesAfterOldOrUnwillingClients_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("HTTP/1.0") << QByteArray("GET / HTTP/1.0\r\n\r\n");
        QTest::newRow("Connection: close") << QByteArray("GET / HTTP/1.1\r\nConnection: close\r\n\r\n");
    }

    void closesAfterOldOrUnwillingClients()
    {
        QFETCH(QByteArray, head);
        RawClient client(m_server->serverPort());
        client.send(head);
        QVERIFY(client.waitForClose());
        QVERIFY(client.received().contains("Connection: close\r\n"));
    }

    void statusPhrases()
    {
        QCOMPARE(QHttpServer::reasonPhrase(302), QStringLiteral("Moved Temporarily"));
        QCOMPARE(QHttpServer::reasonPhrase(408), QStringLiteral("Request Time-out"));
        QCOMPARE(QHttpServer::reasonPhrase(418), QStringLiteral("I\"m a teapot"));
        m_handle = [](QHttpRequest*, QHttpResponse* response) {
            response->writeHead(299);
            response->end();
        };
        RawClient client(m_server->serverPort());
        client.send("GET / HTTP/1.1\r\n\r\n");
        QVERIFY(client.receive("HTTP/1.1 299 \r\n"));
    }

    void misuseOfAResponseOnlyWarns()
    {
        m_handle = [](QHttpRequest*, QHttpResponse* response) {
            QTest::ignoreMessage(QtWarningMsg,
                                 "QHttpResponse::write() You must call writeHead() before writing body data.");
            response->write("lost");
            response->setHeader(QStringLiteral("X"), QStringLiteral("a\r\nInjected: b"));
            response->writeHead(200);
            QTest::ignoreMessage(QtWarningMsg, "QHttpResponse::writeHead() Already called once for this response.");
            response->writeHead(404);
            response->end("kept");
            QTest::ignoreMessage(QtWarningMsg,
                                 "QHttpResponse::setHeader() Cannot set headers after response has finished.");
            response->setHeader(QStringLiteral("X"), QStringLiteral("y"));
            QTest::ignoreMessage(QtWarningMsg,
                                 "QHttpResponse::writeHead() Cannot write headers after response has finished.");
            response->writeHead(404);
            QTest::ignoreMessage(QtWarningMsg, "QHttpResponse::write() Cannot write body after response has finished.");
            response->write("x");
            QTest::ignoreMessage(QtWarningMsg, "QHttpResponse::end() Cannot write end after response has finished.");
            response->end();
        };
        RawClient client(m_server->serverPort());
        client.send("GET / HTTP/1.1\r\n\r\n");
        QVERIFY(client.waitForClose());
        QVERIFY(client.received().endsWith("\r\n\r\nkept"));
        QVERIFY(!client.received().contains("lost"));
        QVERIFY(!client.received().contains("\r\nInjected"));
    }

    void answersRequestsSentAheadInOrder()
    {
        // The first handler waits in an event loop, through which the second request becomes readable.
        QEventLoop* waiting = nullptr;
        m_handle = [&](QHttpRequest* request, QHttpResponse* response) {
            if (request->path() == QLatin1String("/slow")) {
                QEventLoop loop;
                waiting = &loop;
                loop.exec();
            }
            response->setHeader(QStringLiteral("Content-Length"), QString::number(request->path().size()));
            response->writeHead(200);
            response->end(request->path().toLatin1());
        };
        RawClient client(m_server->serverPort());
        client.send("GET /slow HTTP/1.1\r\n\r\nGET /fast HTTP/1.1\r\n\r\n");
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            if (!waiting)
                return;
            QCOMPARE(m_handled, QStringList{QStringLiteral("/slow")});
            poll.stop();
            waiting->quit();
        });
        poll.start(20);
        QVERIFY(client.receive("/fast"));
        QVERIFY(client.received().indexOf("/slow") < client.received().indexOf("/fast"));
    }

    void handlerOutlivesItsClient()
    {
        std::unique_ptr<RawClient> client;
        bool stillThere = false;
        m_handle = [&](QHttpRequest* request, QHttpResponse* response) {
            client.reset();
            QEventLoop loop;
            QTimer::singleShot(100, &loop, &QEventLoop::quit);
            loop.exec();
            stillThere = request->path() == QLatin1String("/gone");
            response->writeHead(200);
            response->end("nobody reads this");
        };
        client = std::make_unique<RawClient>(m_server->serverPort());
        client->send("GET /gone HTTP/1.1\r\n\r\n");
        QTRY_VERIFY(stillThere);
        QTRY_COMPARE(openConnections(), 0);
    }

    void cutRequestsAreNeverHandled_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("in the headers") << QByteArray("DELETE /fonts HTTP/1.1\r\nHost: lo");
        QTest::newRow("in the body") << QByteArray("POST /fonts HTTP/1.1\r\nContent-Length: 10\r\n\r\nhalf");
        QTest::newRow("in a chunk") << QByteArray(
            "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n");
    }

    void cutRequestsAreNeverHandled()
    {
        QFETCH(QByteArray, text);
        {
            RawClient client(m_server->serverPort());
            client.send(text);
            QTRY_COMPARE(openConnections(), 1);
            client.socket().disconnectFromHost();
        }
        QTRY_COMPARE(openConnections(), 0);
        QCOMPARE(m_handled, QStringList());
        QCOMPARE(m_cutShort, text.contains("\r\n\r\n") ? 1 : 0);
    }

    void refusesWhatIsTooLargeOrNoHttp_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("status");
        QTest::newRow("announced body") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 8388609\r\n\r\n")
                                        << QByteArray("413 Request Entity Too Large");
        QTest::newRow("growing body") << QByteArray("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n900000\r\n") +
                                             QByteArray(9 * 1024 * 1024, 'x')
                                      << QByteArray("413 Request Entity Too Large");
        QTest::newRow("long header") << QByteArray("GET / HTTP/1.1\r\nX: ") + QByteArray(70000, 'x')
                                     << QByteArray("431 ");
        QTest::newRow("no HTTP") << QByteArray("HELO mail.example\r\n\r\n") << QByteArray("400 Bad Request");
    }

    void refusesWhatIsTooLargeOrNoHttp()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, status);
        RawClient client(m_server->serverPort());
        client.send(text);
        QVERIFY(client.receive("HTTP/1.1 " + status + "\r\n"));
        QVERIFY(client.received().contains("Content-Length: 0\r\n"));
        QCOMPARE(m_handled, QStringList());
        QCOMPARE(client.received().count("HTTP/1.1"), 1);
    }

    void aBodyAtTheLimitArrives()
    {
        const QByteArray body(8 * 1024 * 1024, 'b');
        m_handle = [](QHttpRequest* request, QHttpResponse* response) {
            response->writeHead(200);
            response->end(QByteArray::number(request->body().size()));
        };
        RawClient client(m_server->serverPort());
        client.send("POST / HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: " + QByteArray::number(body.size()) +
                    "\r\n\r\n");
        QVERIFY(client.receive("HTTP/1.1 100 Continue\r\n\r\n"));
        client.send(body);
        QVERIFY(client.receive("\r\n\r\n8388608"));
    }

    void anEarlyAnswerReachesAClientThatIsStillSending()
    {
        m_server->disconnect(this);
        connect(m_server.get(), &QHttpServer::newRequest, this, [](QHttpRequest*, QHttpResponse* response) {
            response->setHeader(QStringLiteral("Connection"), QStringLiteral("close"));
            response->setHeader(QStringLiteral("Content-Length"), QStringLiteral("0"));
            response->writeHead(QHttpResponse::STATUS_FORBIDDEN);
            response->end();
        });
        RawClient client(m_server->serverPort());
        client.send("POST / HTTP/1.1\r\nContent-Length: 1000000\r\n\r\n" + QByteArray(500000, 'x'));
        QVERIFY(client.receive("403 Forbidden"));
        client.send(QByteArray(500000, 'x'));
        QVERIFY(client.waitForClose());
        QTRY_COMPARE(openConnections(), 0);
    }

    void idleConnectionsGo_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("silent") << QByteArray();
        QTest::newRow("half a header") << QByteArray("GET / HTTP/1.1\r\nHo");
        QTest::newRow("half a body") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 9\r\n\r\nx");
        QTest::newRow("after an answer") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 1\r\n\r\nx");
        QTest::newRow("after nonsense") << QByteArray("nonsense\r\n\r\n");
        QTest::newRow("after a refusal") << QByteArray("POST / HTTP/1.1\r\nContent-Length: 8388609\r\n\r\n");
    }

    void idleConnectionsGo()
    {
        QFETCH(QByteArray, text);
        HttpLimits limits;
        // A refused client has taken its answer and goes sooner than one that may still send a request.
        (text.contains("8388609") ? limits.lingerMilliseconds : limits.idleMilliseconds) = 100;
        m_server->setLimits(limits);
        RawClient client(m_server->serverPort());
        client.send(text);
        QVERIFY(client.waitForClose());
        QTRY_COMPARE(openConnections(), 0);
    }

    void onlySoManyConnections()
    {
        HttpLimits limits;
        limits.connections = 2;
        m_server->setLimits(limits);
        RawClient idle(m_server->serverPort());
        RawClient busy(m_server->serverPort());
        busy.send("POST / HTTP/1.1\r\nContent-Length: 2\r\n\r\nx");
        QTRY_COMPARE(openConnections(), 2);
        RawClient third(m_server->serverPort());
        QVERIFY(idle.waitForClose());
        third.send("POST / HTTP/1.1\r\nContent-Length: 2\r\n\r\nx");
        RawClient fourth(m_server->serverPort());
        fourth.send("GET / HTTP/1.1\r\n\r\n");
        // Either the third had sent something by then, or it was the idle one.
        QVERIFY(QTest::qWaitFor([&] { return fourth.received().contains("503") || !third.isOpen(); }));
        busy.send("y");
        QVERIFY(busy.receive("\r\n\r\nxy"));
    }

    void stalledClientsMakeRoom()
    {
        HttpLimits limits;
        limits.connections = 2;
        limits.lingerMilliseconds = 50;
        m_server->setLimits(limits);
        RawClient halfHeader(m_server->serverPort());
        halfHeader.send("GET / HT");
        RawClient halfBody(m_server->serverPort());
        halfBody.send("POST / HTTP/1.1\r\nContent-Length: 2\r\n\r\nx");
        QTRY_COMPARE(openConnections(), 2);
        const auto isAnswered = [this] {
            RawClient other(m_server->serverPort());
            other.send("POST / HTTP/1.1\r\nContent-Length: 1\r\n\r\nx");
            return other.receive("\r\n\r\nx");
        };
        QTRY_VERIFY(isAnswered());
    }

    void aTakenPortIsAnError()
    {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        QHttpServer server;
        QVERIFY(!server.listen(QHostAddress::LocalHost, other.serverPort()));
        QCOMPARE(int(server.serverPort()), 0);
        m_server->close();
        QCOMPARE(int(m_server->serverPort()), 0);
    }

    void legacyHeaderAlwaysSaysOk()
    {
        HttpHeader header;
        header.setStatusCode(404);
        header.setHeader(QStringLiteral("Name"), QStringLiteral("Wert ü"));
        QCOMPARE(header.toByteArray(), QByteArray("HTTP/1.1 404 OK\r\nName: Wert \xc3\xbc\r\n\r\n"));
    }
};

KERVAL_TEST(TestHttpServer)
#include "tst_httpserver.moc"
