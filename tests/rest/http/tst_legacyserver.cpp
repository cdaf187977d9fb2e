#include "rest/http/FMSTcpServerWorker.h"
#include "rest/http/NewRequestEvent.h"
#include "rest/http/RequestParser.h"
#include "tests/rest/http/rawclient.h"
#include "tests/support/testregistry.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QtTest>

#include <memory>

class TestLegacyServer : public QObject
{
    Q_OBJECT

    struct Receiver : QObject
    {
        bool event(QEvent* event) override
        {
            if (event->type() != NewRequestEvent::EventType)
                return QObject::event(event);
            requests.append(static_cast<NewRequestEvent*>(event)->request());
            ids.append(static_cast<NewRequestEvent*>(event)->connectionId());
            return true;
        }
        QList<fms::FMSRequest> requests;
        QList<int> ids;
    };

    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<Receiver> m_receiver;
    std::unique_ptr<FMSTcpServerWorker> m_worker;

    static constexpr const char* acknowledgement = "HTTP/1.1 200 OK\r\n\r\nOK\n";

private slots:
    void init()
    {
        m_worker.reset();
        m_server = std::make_unique<QTcpServer>();
        m_receiver = std::make_unique<Receiver>();
        QVERIFY(m_server->listen(QHostAddress::LocalHost));
        m_worker = std::make_unique<FMSTcpServerWorker>(m_server.get(), m_receiver.get());
    }

    void acknowledges_data()
    {
        QTest::addColumn<QByteArrayList>("reads");
        QTest::newRow("GET") << QByteArrayList{"GET /?type=x&order=y HTTP/1.1\r\n\r\n"};
        QTest::newRow("GET in pieces") << QByteArrayList{"GET /?type=x HT", "TP/1.1\r\nA: b\r\n", "\r\n"};
        QTest::newRow("GET without a version") << QByteArrayList{"GET /\r\n\r\n"};
        QTest::newRow("POST in pieces") << QByteArrayList{"POST / HTTP/1.1\r\ncontent-LENGTH:  8\r\n\r\ntyp", "e=abc"};
        QTest::newRow("XML in pieces") << QByteArrayList{"<?xml version='1.0'?><REQ", "UEST><TYPE>x</TYPE></REQUEST"};
    }

    void acknowledges()
    {
        QFETCH(QByteArrayList, reads);
        RawClient client(m_server->serverPort());
        for (const QByteArray& read : reads) {
            QVERIFY(client.received().isEmpty());
            client.send(read);
            // Lets the server see this piece by itself.
            RawClient other(m_server->serverPort());
            other.send("GET / HTTP/1.1\r\n\r\n");
            QVERIFY(other.receive(acknowledgement));
        }
        QVERIFY(client.receive(acknowledgement));
        QVERIFY(client.isOpen());
    }

    void listenRequestsReachTheReceiver_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("GET") << QByteArray(
            "GET /??type=listen&order=GO&name=a%26b&flag&type=other HTTP/1.0\r\nHost: x\r\n\r\n");
        QTest::newRow("POST") << QByteArray(
            "POST / HTTP/1.0\r\nContent-Length: 43\r\n\r\nname=a%26b&flag=&order=GO&type=LISTEN&type=q");
        QTest::newRow("XML") << QByteArray("<REQUEST>\n <name>a&amp;b</name><ORDER>go</ORDER><TYPE>first</TYPE>\n"
                                           "<TYPE>Listen</TYPE></REQUEST>\n");
    }

    void listenRequestsReachTheReceiver()
    {
        QFETCH(QByteArray, text);
        if (text.startsWith("POST")) // the length is that of the body as it stands here
            text.replace("43", QByteArray::number(text.size() - text.indexOf("\r\n\r\n") - 4));
        RawClient client(m_server->serverPort());
        client.send(text);
        QTRY_COMPARE(m_receiver->requests.size(), 1);
        const fms::FMSRequest request = m_receiver->requests.first();
        QCOMPARE(request.type.toLower(), QStringLiteral("listen"));
        QCOMPARE(request.order, QStringLiteral("GO"));
        QCOMPARE(request.fieldNames.size(), request.fieldValues.size());
        QCOMPARE(request.fieldValues.value(request.fieldNames.indexOf(QStringLiteral("name"))), QStringLiteral("a&b"));
        const QString id = QString::number(m_receiver->ids.first());
        QVERIFY(m_worker->pendingRequests().contains(id));
        QVERIFY(client.received().isEmpty());
        client.socket().disconnectFromHost();
        QTRY_VERIFY(!m_worker->pendingRequests().contains(id));
    }

    void unfinishedOrOverlongRequestsWaitAndGo_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("GET without its blank line") << QByteArray("GET /?type=listen HTTP/1.1\r\n");
        QTest::newRow("body longer than announced")
            << QByteArray("POST / HTTP/1.1\r\nContent-Length: 10\r\n\r\ntype=listen");
        QTest::newRow("no length") << QByteArray("POST / HTTP/1.1\r\n\r\ntype=listen");
        QTest::newRow("nothing known") << QByteArray("EHLO x\r\n\r\n");
    }

    void unfinishedOrOverlongRequestsWaitAndGo()
    {
        QFETCH(QByteArray, text);
        FMSTcpServerWorker::Limits limits;
        limits.idleMilliseconds = 150;
        m_worker->setLimits(limits);
        RawClient client(m_server->serverPort());
        client.send(text);
        QVERIFY(client.waitForClose());
        QVERIFY(client.received().isEmpty());
        QVERIFY(m_receiver->requests.isEmpty());
    }

    void listenersAreNotIdle()
    {
        FMSTcpServerWorker::Limits limits;
        limits.idleMilliseconds = 50;
        m_worker->setLimits(limits);
        RawClient listener(m_server->serverPort());
        listener.send("GET /?type=LISTEN HTTP/1.1\r\n\r\n");
        QTRY_COMPARE(m_receiver->requests.size(), 1);
        RawClient silent(m_server->serverPort());
        QVERIFY(silent.waitForClose());
        QVERIFY(listener.isOpen());
    }

    void buffersAndClientsAreLimited()
    {
        RawClient flood(m_server->serverPort());
        flood.send("POST / HTTP/1.1\r\nContent-Length: 9000000\r\n\r\n" + QByteArray(2 * 1024 * 1024, 'x'));
        QVERIFY(flood.waitForClose());

        FMSTcpServerWorker::Limits limits;
        limits.clients = 1;
        m_worker->setLimits(limits);
        RawClient first(m_server->serverPort());
        RawClient second(m_server->serverPort());
        QVERIFY(second.waitForClose());
        QVERIFY(first.isOpen());
    }

    void hostileXmlIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("unclosed element") << QStringLiteral("<REQUEST><TYPE>LISTEN</REQUEST>");
        QTest::newRow("external entity") << QStringLiteral(
            "<!DOCTYPE REQUEST [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>"
            "<REQUEST><TYPE>LISTEN</TYPE><a>&x;</a></REQUEST>");
        QString bomb = QStringLiteral("<!DOCTYPE REQUEST [<!ENTITY a0 \"lollollollol\">");
        for (int i = 1; i < 30; ++i)
            bomb += QStringLiteral("<!ENTITY a%1 \"&a%2;&a%2;&a%2;&a%2;\">").arg(i).arg(i - 1);
        QTest::newRow("expansion bomb") << bomb + QStringLiteral("]><REQUEST><a>&a29;</a></REQUEST>");
        QTest::newRow("deep nesting") << QStringLiteral("<REQUEST>") + QStringLiteral("<a>").repeated(200000);
    }

    void hostileXmlIsRefused()
    {
        QFETCH(QString, text);
        QElapsedTimer timer;
        timer.start();
        fms::FMSRequest request;
        QVERIFY(!fms::RequestParser::parse(text, request));
        QVERIFY(!request.fieldValues.join(QString()).contains(QLatin1String("root:")));
        QVERIFY(timer.elapsed() < 5000);

        // Over the wire the document starts at its REQUEST element: what it referred to is unknown by then.
        RawClient client(m_server->serverPort());
        client.send(text.toUtf8() + "</REQUEST>");
        QTRY_VERIFY(client.received() == acknowledgement || !client.isOpen() || !m_receiver->requests.isEmpty());
        if (!m_receiver->requests.isEmpty())
            QVERIFY(!m_receiver->requests.first().fieldValues.join(QString()).contains(QLatin1String("root:")));
    }
};

KERVAL_TEST(TestLegacyServer)
#include "tst_legacyserver.moc"
