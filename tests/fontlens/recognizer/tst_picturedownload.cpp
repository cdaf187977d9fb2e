#include "fontlens/recognizer/AddressRules.h"
#include "fontlens/recognizer/PictureDownload.h"
#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QEventLoop>
#include <QMap>
#include <QNetworkInterface>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QtTest>

using kerval::recognizer::DownloadEnvironment;
using kerval::recognizer::HostResolver;
using kerval::recognizer::isPublicAddress;
using kerval::recognizer::PictureDownload;

// The internet is a server on this machine: names lead where the test says, 127.0.0.1 counts as public and every other
// address as this machine's network.
class TestPictureDownload : public QObject
{
    Q_OBJECT

    using Answer = ScriptedRecognitionServer::Answer;
    using Request = ScriptedRecognitionServer::Request;

    struct Names : HostResolver
    {
        std::shared_ptr<void> lookUp(const QString& host, const Found& found) override
        {
            asked.append(host);
            auto receiver = std::make_shared<QObject>();
            QList<QHostAddress>& next = addresses[host];
            // A name server that answers differently every time.
            const QList<QHostAddress> now = rebinds && next.size() > 1 ? QList<QHostAddress>{next.takeFirst()} : next;
            if (!isSilent)
                QTimer::singleShot(0, receiver.get(), [found, now] { found(now); });
            return receiver;
        }
        QMap<QString, QList<QHostAddress>> addresses;
        QStringList asked;
        bool rebinds = false;
        bool isSilent = false;
    };

    struct TlsServer : QTcpServer
    {
        TlsServer(const QSslCertificate& certificate, const QSslKey& key)
            : m_certificate(certificate)
            , m_key(key)
        {
            listen(QHostAddress::LocalHost);
        }
        void incomingConnection(qintptr descriptor) override
        {
            auto* socket = new QSslSocket(this);
            socket->setSocketDescriptor(descriptor);
            socket->setLocalCertificate(m_certificate);
            socket->setPrivateKey(m_key);
            QObject::connect(socket, &QSslSocket::readyRead, socket, [socket] {
                if (socket->readAll().endsWith("\r\n\r\n"))
                    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nsealed");
            });
            socket->startServerEncryption();
        }
        const QSslCertificate m_certificate;
        const QSslKey m_key;
    };

    std::unique_ptr<ScriptedRecognitionServer> m_server;
    std::shared_ptr<Names> m_names;
    DownloadEnvironment m_environment;
    QByteArray m_bytes;

    QUrl url(const QString& host, const QString& path = QStringLiteral("/p.png"),
             const QString& scheme = QStringLiteral("http")) const
    {
        return QUrl(QStringLiteral("%1://%2:%3%4").arg(scheme, host).arg(m_server->serverPort()).arg(path));
    }
    PictureDownload::Outcome fetch(const QUrl& address, bool isTyped = false)
    {
        PictureDownload download(address, isTyped, m_environment);
        QSignalSpy finished(&download, &PictureDownload::finished);
        QEventLoop loop; // qWaitFor() sleeps between the events
        connect(&download, &PictureDownload::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        download.start();
        loop.exec();
        if (finished.isEmpty())
            qFatal("the download does not end");
        m_bytes = download.bytes();
        return finished.first().first().value<PictureDownload::Outcome>();
    }
    static Answer redirect(const QByteArray& location, const QByteArray& status = "302 Found")
    {
        return {"HTTP/1.1 " + status + "\r\nLocation: " + location +
                    "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n",
                false};
    }

private slots:
    void initTestCase() { qRegisterMetaType<PictureDownload::Outcome>(); }
    void init()
    {
        m_server = std::make_unique<ScriptedRecognitionServer>();
        m_server->close();
        QVERIFY(m_server->listen(QHostAddress::AnyIPv4)); // 127.0.0.2 as well
        m_server->setScript([](const Request&) { return ScriptedRecognitionServer::page("picture"); });
        m_names = std::make_shared<Names>();
        m_names->addresses = {{QStringLiteral("out.example"), {QHostAddress(QStringLiteral("127.0.0.1"))}},
                              {QStringLiteral("in.example"), {QHostAddress(QStringLiteral("127.0.0.2"))}}};
        m_environment = DownloadEnvironment::standard();
        m_environment.resolver = m_names;
        m_environment.isPublic = [](const QHostAddress& address) {
            return address == QHostAddress(QStringLiteral("127.0.0.1"));
        };
    }

    void publicAddresses_data()
    {
        QTest::addColumn<bool>("isPublic");
        for (const char* address : {"8.8.8.8", "1.1.1.1", "172.15.255.255", "172.32.0.1", "100.63.255.255",
                                    "100.128.0.1", "192.167.1.1", "223.255.255.254", "2001:4860:4860::8888",
                                    "2606:4700::1", "::ffff:8.8.8.8", "64:ff9b::8.8.8.8", "2002:808:808::1"})
            QTest::newRow(address) << true;
        for (const char* address : {"0.0.0.0",
                                    "0.1.2.3",
                                    "10.0.0.1",
                                    "10.255.255.255",
                                    "100.64.0.1",
                                    "100.127.255.255",
                                    "127.0.0.1",
                                    "127.255.0.1",
                                    "169.254.169.254",
                                    "172.16.0.1",
                                    "172.31.255.255",
                                    "192.0.0.8",
                                    "192.0.2.1",
                                    "192.168.0.1",
                                    "192.168.255.255",
                                    "198.18.0.1",
                                    "198.19.255.255",
                                    "198.51.100.7",
                                    "203.0.113.9",
                                    "224.0.0.251",
                                    "239.1.1.1",
                                    "240.0.0.1",
                                    "255.255.255.255",
                                    "::",
                                    "::1",
                                    "::127.0.0.1",
                                    "::ffff:127.0.0.1",
                                    "::ffff:192.168.1.1",
                                    "::ffff:0:127.0.0.1",
                                    "64:ff9b::10.0.0.1",
                                    "64:ff9b:1::1",
                                    "100::1",
                                    "2001::1",
                                    "2001:db8::1",
                                    "2002:7f00:1::1",
                                    "2002:c0a8:101::1",
                                    "3fff::1",
                                    "fc00::1",
                                    "fd12:3456::1",
                                    "fe80::1",
                                    "fe80::1%lo",
                                    "fec0::1",
                                    "ff02::1",
                                    "5f00::1",
                                    "4000::1"})
            QTest::newRow(address) << false;
    }

    void publicAddresses()
    {
        QFETCH(bool, isPublic);
        const QHostAddress address(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(!address.isNull());
        QCOMPARE(isPublicAddress(address), isPublic);
    }

    void noAddressOfThisMachineIsPublic()
    {
        QVERIFY(!isPublicAddress(QHostAddress()));
        const auto own = QNetworkInterface::allAddresses();
        for (const QHostAddress& address : own)
            QVERIFY2(!isPublicAddress(address), qPrintable(address.toString()));
    }

    void theRequestGoesToTheAddressThatWasLookedAt()
    {
        QUrl address = url(QStringLiteral("out.example"), QStringLiteral("/a%20b?x=%26#part"));
        address.setUserInfo(QStringLiteral("user:secret"));
        QCOMPARE(fetch(address), PictureDownload::Done);
        QCOMPARE(m_bytes, QByteArray("picture"));
        const Request request = m_server->requests().first();
        QCOMPARE(request.target(), QByteArray("/a%20b?x=%26"));
        QCOMPARE(request.header("Host"), "out.example:" + QByteArray::number(m_server->serverPort()));
        QCOMPARE(request.header("Accept-Encoding"), QByteArray("identity"));
        QVERIFY(request.header("Authorization").isNull());
        QCOMPARE(m_names->asked, QStringList{QStringLiteral("out.example")});
    }

    void outcomes_data()
    {
        QTest::addColumn<QString>("address"); // %1: the port
        QTest::addColumn<int>("outcome");
        const auto row = [](const char* address, int outcome) {
            QTest::newRow(address) << QString::fromLatin1(address) << outcome;
        };
        for (const char* address :
             {"ftp://out.example:%1/", "file:///etc/passwd", "data:image/png;base64,AA", "http://",
              "http://out.example:0/", "//out.example:%1/", "qrc:/x", "gopher://out.example:%1/"})
            row(address, PictureDownload::BadAddress);
        for (const char* address :
             {"http://in.example:%1/", "http://127.0.0.2:%1/", "http://127.2:%1/", "http://2130706434:%1/",
              "http://0x7f000002:%1/", "http://[::1]:%1/", "http://[::ffff:127.0.0.2]:%1/", "http://0:%1/",
              "http://169.254.169.254/latest/meta-data/", "https://192.168.1.1/", "http://[fe80::1]/"})
            row(address, PictureDownload::Refused);
        row("http://none.example:%1/", PictureDownload::Unreachable);
        row("http://localhost:%1/", PictureDownload::Unreachable); // the names know none
        row("http://127.0.0.1:1/", PictureDownload::Unreachable);
    }

    void outcomes()
    {
        QFETCH(QString, address);
        QFETCH(int, outcome);
        address.replace(QLatin1String("%1"), QString::number(m_server->serverPort()));
        QCOMPARE(int(fetch(QUrl(address))), outcome);
        QVERIFY(m_server->requests().isEmpty());
        QVERIFY(m_bytes.isEmpty());
    }

    void whatTheUserTypedMayLeadInside()
    {
        QCOMPARE(fetch(url(QStringLiteral("in.example")), true), PictureDownload::Done);
        QCOMPARE(fetch(url(QStringLiteral("127.0.0.2")), true), PictureDownload::Done);
        // A redirect on the same host and port is followed there, one to another host is not.
        m_server->setScript([this](const Request& request) {
            if (request.target() == "/p.png")
                return redirect("/other.png");
            if (request.target() == "/away.png")
                return redirect(url(QStringLiteral("127.0.0.3")).toEncoded());
            return ScriptedRecognitionServer::page("other");
        });
        QCOMPARE(fetch(url(QStringLiteral("in.example")), true), PictureDownload::Done);
        QCOMPARE(m_bytes, QByteArray("other"));
        QCOMPARE(fetch(url(QStringLiteral("in.example"), QStringLiteral("/away.png")), true), PictureDownload::Refused);
    }

    void redirectsAreCheckedHopByHop_data()
    {
        QTest::addColumn<QByteArray>("location"); // %1: the port
        QTest::addColumn<int>("outcome");
        QTest::newRow("relative") << QByteArray("end.png") << int(PictureDownload::Done);
        QTest::newRow("other host") << QByteArray("http://OUT.example.:%1/end.png")
                                    << int(PictureDownload::Unreachable);
        QTest::newRow("public") << QByteArray("http://127.0.0.1:%1/end.png") << int(PictureDownload::Done);
        QTest::newRow("private name") << QByteArray("http://in.example:%1/end.png") << int(PictureDownload::Refused);
        QTest::newRow("private address") << QByteArray("//127.0.0.2:%1/end.png") << int(PictureDownload::Refused);
        QTest::newRow("file") << QByteArray("file:///etc/passwd") << int(PictureDownload::NotThere);
        QTest::newRow("nothing") << QByteArray() << int(PictureDownload::NotThere);
        QTest::newRow("circle") << QByteArray("/p.png") << int(PictureDownload::NotThere);
    }

    void redirectsAreCheckedHopByHop()
    {
        QFETCH(QByteArray, location);
        QFETCH(int, outcome);
        location.replace("%1", QByteArray::number(m_server->serverPort()));
        for (const char* status : {"301 x", "302 x", "303 x", "307 x", "308 x"}) {
            m_server->setScript([&](const Request& request) {
                return request.target() == "/end.png" ? ScriptedRecognitionServer::page("end")
                                                      : redirect(location, status);
            });
            QCOMPARE(int(fetch(url(QStringLiteral("out.example")))), outcome);
        }
        QVERIFY(m_server->requests().size() <= 5 * 6);
    }

    void aNameThatChangesItsAddressIsNotBelieved()
    {
        m_names->rebinds = true;
        m_names->addresses[QStringLiteral("evil.example")] = {QHostAddress(QStringLiteral("127.0.0.1")),
                                                              QHostAddress(QStringLiteral("127.0.0.2"))};
        m_server->setScript([](const Request& request) {
            return request.target() == "/p.png" ? redirect("/end.png") : ScriptedRecognitionServer::page("end");
        });
        QCOMPARE(fetch(url(QStringLiteral("evil.example"))), PictureDownload::Done);
        QCOMPARE(m_names->asked, QStringList{QStringLiteral("evil.example")});
        // Asked anew it leads inside now.
        QCOMPARE(fetch(url(QStringLiteral("evil.example"))), PictureDownload::Refused);
    }

    void ofSeveralAddressesOnlyPublicOnesAreTriedOneAfterAnother()
    {
        const QHostAddress inside(QStringLiteral("127.0.0.2"));
        const QHostAddress outside(QStringLiteral("127.0.0.1"));
        const QHostAddress dead(QStringLiteral("127.0.0.9"));
        m_server->close();
        QVERIFY(m_server->listen(outside));
        m_environment.isPublic = [=](const QHostAddress& address) { return address == outside || address == dead; };
        m_names->addresses[QStringLiteral("many.example")] = {inside, dead, outside};
        QCOMPARE(fetch(url(QStringLiteral("many.example"))), PictureDownload::Done);
        m_names->addresses[QStringLiteral("many.example")] = {inside, dead};
        QCOMPARE(fetch(url(QStringLiteral("many.example"))), PictureDownload::Unreachable);
    }

    // The connection goes to a number, the certificate is held against the name.
    void certificatesAreCheckedAgainstTheName()
    {
        const auto files = kerval::testing::readFile(QStringLiteral(KERVAL_SOURCE_DIR "/tests/data/out.example.pem"));
        const QSslCertificate certificate(files);
        QVERIFY(!certificate.isNull());
        TlsServer server(certificate, QSslKey(files, QSsl::Ec));
        const auto address = [&server](const char* host) {
            return QUrl(QStringLiteral("https://%1:%2/").arg(QLatin1String(host)).arg(server.serverPort()));
        };
        QCOMPARE(fetch(address("out.example")), PictureDownload::Unreachable); // signed by nobody we know

        const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
        QSslConfiguration trusting = before;
        trusting.setCaCertificates({certificate});
        QSslConfiguration::setDefaultConfiguration(trusting);
        m_names->addresses[QStringLiteral("other.example")] = m_names->addresses.value(QStringLiteral("out.example"));
        QCOMPARE(fetch(address("out.example")), PictureDownload::Done);
        QCOMPARE(m_bytes, QByteArray("sealed"));
        QCOMPARE(fetch(address("other.example")), PictureDownload::Unreachable);
        QCOMPARE(fetch(address("127.0.0.1")), PictureDownload::Unreachable);
        QSslConfiguration::setDefaultConfiguration(before);
    }

    void answersAreBounded_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("outcome");
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        QTest::newRow("announced too large")
            << QByteArray(ok + "Content-Length: 1001\r\n\r\n") << int(PictureDownload::TooLarge);
        QTest::newRow("too large unannounced")
            << QByteArray(ok + "\r\n" + QByteArray(5000, 'x')) << int(PictureDownload::TooLarge);
        QTest::newRow("too large in chunks")
            << QByteArray(ok + "Transfer-Encoding: chunked\r\n\r\n7d0\r\n" + QByteArray(2000, 'x') + "\r\n0\r\n\r\n")
            << int(PictureDownload::TooLarge);
        QTest::newRow("just fits") << QByteArray(ok + "Content-Length: 1000\r\n\r\n" + QByteArray(1000, 'x'))
                                   << int(PictureDownload::Done);
        QTest::newRow("cut short") << QByteArray(ok + "Content-Length: 100\r\n\r\nabc")
                                   << int(PictureDownload::Unreachable);
        QTest::newRow("nothing") << QByteArray() << int(PictureDownload::Unreachable);
        QTest::newRow("no HTTP") << QByteArray("SSH-2.0-x\r\n") << int(PictureDownload::Unreachable);
        QTest::newRow("not found") << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n")
                                   << int(PictureDownload::NotThere);
        QTest::newRow("wants a password")
            << QByteArray("HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n")
            << int(PictureDownload::NotThere);
        QTest::newRow("server error") << QByteArray("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n")
                                      << int(PictureDownload::NotThere);
    }

    void answersAreBounded()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, outcome);
        m_environment.bytes = 1000;
        m_server->setScript([&](const Request&) { return Answer{answer, false}; });
        QCOMPARE(int(fetch(url(QStringLiteral("out.example")))), outcome);
        QCOMPARE(m_bytes.size(), outcome == PictureDownload::Done ? 1000 : 0);
    }

    void compressedAnswersStayAsTheyAre()
    {
        m_server->setScript([](const Request&) {
            return Answer{"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\nabcd", false};
        });
        QCOMPARE(fetch(url(QStringLiteral("out.example"))), PictureDownload::Done);
        QCOMPARE(m_bytes, QByteArray("abcd"));
    }

    void timeIsBounded()
    {
        m_environment.totalMs = 100;
        m_server->setScript([](const Request&) { return ScriptedRecognitionServer::silence(); });
        QCOMPARE(fetch(url(QStringLiteral("out.example"))), PictureDownload::TimedOut);
        m_server->setScript([](const Request&) {
            return Answer{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc", true};
        });
        QCOMPARE(fetch(url(QStringLiteral("out.example"))), PictureDownload::TimedOut);
        QVERIFY(m_bytes.isEmpty());
        m_names->isSilent = true;
        QCOMPARE(fetch(url(QStringLiteral("out.example"))), PictureDownload::TimedOut);
    }

    void droppingEndsTheConnection()
    {
        m_server->setScript([](const Request&) { return ScriptedRecognitionServer::silence(); });
        QSignalSpy abandoned(m_server.get(), &ScriptedRecognitionServer::abandoned);
        QSignalSpy requested(m_server.get(), &ScriptedRecognitionServer::requested);
        auto download = std::make_unique<PictureDownload>(url(QStringLiteral("out.example")), false, m_environment);
        download->start();
        QTRY_VERIFY(!requested.isEmpty());
        download.reset();
        QTRY_VERIFY(!abandoned.isEmpty());
    }
};

KERVAL_TEST(TestPictureDownload)
#include "tst_picturedownload.moc"
