#include "rest/AccessPolicy.h"
#include "rest/http/QHttpRequest.h"
#include "tests/support/testregistry.h"

#include <QHostInfo>
#include <QNetworkInterface>
#include <QtTest>

using api::rest::AccessPolicy;

class TestAccessPolicy : public QObject
{
    Q_OBJECT

private slots:
    void peers()
    {
        const AccessPolicy local;
        const AccessPolicy open(true, {});
        for (const char* own : {"127.0.0.1", "127.8.9.1", "::1", "::ffff:127.0.0.1"})
            QVERIFY2(local.allowsPeer(QHostAddress(QLatin1String(own))), own);
        const auto addresses = QNetworkInterface::allAddresses();
        for (const QHostAddress& address : addresses)
            QVERIFY2(local.allowsPeer(address), qPrintable(address.toString()));
        for (const char* foreign : {"192.0.2.1", "2001:db8::1", "::ffff:192.0.2.1"}) {
            QVERIFY2(!local.allowsPeer(QHostAddress(QLatin1String(foreign))), foreign);
            QVERIFY2(open.allowsPeer(QHostAddress(QLatin1String(foreign))), foreign);
        }
    }

    void hosts_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("none") << QString() << true;
        QTest::newRow("address") << QStringLiteral("127.0.0.1:33000") << true;
        QTest::newRow("other address") << QStringLiteral("192.168.1.5") << true;
        QTest::newRow("IPv6 address") << QStringLiteral("[::1]:33000") << true;
        QTest::newRow("localhost") << QStringLiteral("LocalHost:33000") << true;
        QTest::newRow("localhost with its dot") << QStringLiteral("localhost.:33000") << true;
        QTest::newRow("this machine") << QHostInfo::localHostName() + QStringLiteral(":33000") << true;
        QTest::newRow("a rebound name") << QStringLiteral("attacker.example:33000") << false;
        QTest::newRow("a name like an address") << QStringLiteral("127.0.0.1.attacker.example") << false;
        QTest::newRow("a name like ours") << QStringLiteral("localhost.attacker.example") << false;
        QTest::newRow("broken brackets") << QStringLiteral("[attacker") << false;
    }

    void hosts()
    {
        QFETCH(QString, host);
        QFETCH(bool, allowed);
        QCOMPARE(AccessPolicy::allowsHost(host), allowed);
    }

    void origins_data()
    {
        QTest::addColumn<QString>("origin");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("none") << QString() << true;
        QTest::newRow("a local file") << QStringLiteral("file://") << true;
        QTest::newRow("null") << QStringLiteral("null") << true;
        QTest::newRow("a page of this machine") << QStringLiteral("http://localhost:8080") << true;
        QTest::newRow("by address") << QStringLiteral("https://[::1]:8080") << true;
        QTest::newRow("a foreign page") << QStringLiteral("https://attacker.example") << false;
        QTest::newRow("a neighbour") << QStringLiteral("http://192.0.2.1") << false;
        QTest::newRow("capitals") << QStringLiteral("HTTP://attacker.example") << false;
        QTest::newRow("trusted") << QStringLiteral("https://Studio.example") << true;
        QTest::newRow("trusted, port given") << QStringLiteral("https://studio.example:443") << true;
        QTest::newRow("trusted host, other scheme") << QStringLiteral("http://studio.example") << false;
        QTest::newRow("trusted host, other port") << QStringLiteral("https://studio.example:8443") << false;
    }

    void origins()
    {
        QFETCH(QString, origin);
        QFETCH(bool, allowed);
        const AccessPolicy policy(false, {QStringLiteral("https://studio.example/"), QStringLiteral("nonsense")});
        for (const int method :
             {QHttpRequest::HTTP_POST, QHttpRequest::HTTP_PUT, QHttpRequest::HTTP_PATCH, QHttpRequest::HTTP_DELETE})
            QCOMPARE(policy.allowsOrigin(method, origin), allowed);
        QVERIFY(policy.allowsOrigin(QHttpRequest::HTTP_GET, origin));
        QVERIFY(policy.allowsOrigin(QHttpRequest::HTTP_OPTIONS, origin));
    }
};

KERVAL_TEST(TestAccessPolicy)
#include "tst_accesspolicy.moc"
