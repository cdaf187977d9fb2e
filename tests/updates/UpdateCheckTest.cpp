#include "qtService/app/core/SettingsFolders.h"
#include "tests/support/testregistry.h"
#include "updates/UpdateCheckCommand.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

namespace {

using Checker = ApplicationUpdateChecker;
using Command = AbstractAsynchronousCommand;

// Gives every request the same answer, byte for byte; an empty one leaves the client waiting.
class ScriptedServer : public QTcpServer
{
public:
    explicit ScriptedServer(const QByteArray& answer)
    {
        connect(this, &QTcpServer::newConnection, this, [this, answer] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket, answer] {
                request += socket->readAll();
                if (answer.isEmpty() || !request.contains("\r\n\r\n"))
                    return;
                socket->write(answer);
                socket->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost);
        QSettings settings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("Updates/Host"), QStringLiteral("127.0.0.1:%1").arg(serverPort()));
    }

    QByteArray request;
};

QByteArray page(const QByteArray& body, const QByteArray& status = "200 OK", const QByteArray& header = QByteArray())
{
    return "HTTP/1.1 " + status + "\r\n" + header +
           "Connection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray release(const QByteArray& version)
{
    return page("{\"version\":\"" + version +
                "\",\"url\":\"http://other.example/\",\"winx64_url\":\"http://get.example/k\"}");
}

} // namespace

class UpdateCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void theDocumentDecides_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("state");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("url");
        const int finished = Command::Finished;
        const int failed = Command::Failed;
        const QString url = QStringLiteral("http://get.example/k");
        QTest::newRow("newer") << release("2.7.2") << finished << int(Checker::UpdateAvailable) << "2.7.2" << url;
        QTest::newRow("equal") << release("2.7.1") << finished << int(Checker::NoUpdate) << "2.7.1" << url;
        QTest::newRow("compared as text") << release("2.10.0") << finished << int(Checker::NoUpdate) << "2.10.0" << url;
        QTest::newRow("no address for this build") << page("{\"version\":\"3.0\",\"url\":\"http://x.example\"}")
                                                   << finished << int(Checker::UpdateAvailable) << "3.0" << QString();
        QTest::newRow("an expression") << page("{version: ['9', '1'].join('.'), winx64_url: 'http://get.example/k'}")
                                       << finished << int(Checker::UpdateAvailable) << "9.1" << url;
        QTest::newRow("no object") << page("<html>hello</html>") << finished << int(Checker::NoUpdate) << QString()
                                   << QString();
        QTest::newRow("throws") << page("(function(){ throw 'x'; })()") << finished << int(Checker::NoUpdate)
                                << QString() << QString();
        QTest::newRow("never ends") << page("(function(){ for(;;); })()") << finished << int(Checker::NoUpdate)
                                    << QString() << QString();
        QTest::newRow("deeply nested") << page(QByteArray(30000, '(') + "1" + QByteArray(30000, ')')) << finished
                                       << int(Checker::NoUpdate) << QString() << QString();
        QTest::newRow("too large") << page(QByteArray(1 << 20, ' ')) << failed << int(Checker::CheckFailed) << QString()
                                   << QString();
        QTest::newRow("error status") << page("{\"version\":\"9\"}", "500 Internal Server Error") << failed
                                      << int(Checker::CheckFailed) << QString() << QString();
        QTest::newRow("sent to another scheme")
            << page(QByteArray(), "302 Found", "Location: ftp://other.example/update.json\r\n") << failed
            << int(Checker::CheckFailed) << QString() << QString();
        QTest::newRow("hangs up") << QByteArray("HTTP/1.1 ") << failed << int(Checker::CheckFailed) << QString()
                                  << QString();
    }

    void theDocumentDecides()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, state);
        QFETCH(int, status);
        QFETCH(QString, version);
        QFETCH(QString, url);
        ScriptedServer server(answer);
        UpdateCheckCommand command;
        QElapsedTimer timer;
        timer.start();
        command.start();
        QTRY_VERIFY_WITH_TIMEOUT(command.state() != Command::Running, 10000);
        QCOMPARE(int(command.state()), state);
        QCOMPARE(command.updateDescription().status, status);
        QCOMPARE(command.updateDescription().version, version);
        QCOMPARE(command.updateDescription().url.toString(), url);
        QVERIFY(server.request.startsWith("GET /update2/update.json HTTP/1.1"));
        QVERIFY(timer.elapsed() < 8000);
    }

    void withoutAHostNothingIsAsked()
    {
        QSettings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat)
            .remove(QStringLiteral("Updates/Host"));
        UpdateCheckCommand command;
        command.start();
        QCOMPARE(command.state(), Command::Failed);
    }

    void aCheckInFlightIsCancelled()
    {
        ScriptedServer server{QByteArray()};
        UpdateCheckCommand command;
        command.start();
        QTRY_VERIFY(!server.request.isEmpty());
        QSignalSpy spy(&command, &Command::stateChanged);
        command.cancel();
        QCOMPARE(command.state(), Command::Cancelled);
        QCOMPARE(spy.last().at(0).value<Command::State>(), Command::Cancelled);
    }

    void aCancelledCommandDoesNotStart()
    {
        ScriptedServer server(release("9.9"));
        UpdateCheckCommand command;
        command.cancel();
        command.start();
        QCOMPARE(command.state(), Command::Cancelled);
        QVERIFY(server.request.isEmpty());
    }
};

KERVAL_TEST(UpdateCheckTest)
#include "UpdateCheckTest.moc"
