#include "qtService/app/PortProbe.h"
#include "tests/support/testregistry.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

namespace {

// Answers every connection with fixed bytes, or with nothing at all.
class ScriptedListener : public QTcpServer
{
public:
    ScriptedListener(const QByteArray& answer, bool closes)
    {
        connect(this, &QTcpServer::newConnection, this, [this, answer, closes] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, answer, closes] {
                socket->write(answer);
                if (closes)
                    socket->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost);
    }
};

QByteArray httpAnswer(const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}

} // namespace

class PortProbeTest : public QObject
{
    Q_OBJECT

private slots:
    void aServiceIsRecognised()
    {
        ScriptedListener listener(httpAnswer("{\"version\":20701,\"user_id\":\"2f686f6d65\"}"), true);
        QVERIFY(krv::isPortInUse(QHostAddress::LocalHost, listener.serverPort()));
        const krv::RunningService service = krv::queryRunningService(listener.serverPort());
        QVERIFY(service.answered);
        QCOMPARE(service.userId, QStringLiteral("2f686f6d65"));
        QCOMPARE(service.version, 20701);
    }

    void foreignProgramsAreNot_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("closes");
        QTest::newRow("web page") << httpAnswer("<html></html>") << true;
        QTest::newRow("other JSON") << httpAnswer("{\"version\":1}") << true;
        QTest::newRow("not HTTP") << QByteArray("220 mail ready\r\n") << true;
        QTest::newRow("never answers") << QByteArray() << false;
        QTest::newRow("never ends") << httpAnswer("{").replace("Length: 1", "Length: 99") << false;
    }

    void foreignProgramsAreNot()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, closes);
        ScriptedListener listener(answer, closes);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!krv::queryRunningService(listener.serverPort()).answered);
        QVERIFY(timer.elapsed() < 9000);
    }

    void aFreePortIsFree()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const int port = server.serverPort();
        server.close();
        QVERIFY(!krv::isPortInUse(QHostAddress::LocalHost, port));
        QVERIFY(!krv::queryRunningService(port).answered);
    }
};

KERVAL_TEST(PortProbeTest)
#include "PortProbeTest.moc"
