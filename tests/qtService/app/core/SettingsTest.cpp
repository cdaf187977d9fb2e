#include "qtService/app/core/FMSSettings.h"
#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/app/core/OnlineInfo.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/core/Version.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void theUserFolderIsMadeOnFirstUse()
    {
        const QString folder = krv::userSettingsFolder();
        QVERIFY(folder.endsWith(QLatin1String("/.kerval/")));
        QVERIFY(QDir(folder).exists());

        const QByteArray before = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", "/proc/none");
        QCOMPARE(krv::userSettingsFolder(), QString());
        qputenv("XDG_DATA_HOME", "not/absolute");
        QCOMPARE(krv::userSettingsFolder(), QDir::homePath() + QStringLiteral("/.local/share/.kerval/"));
        qputenv("XDG_DATA_HOME", before);
    }

    void serviceSettingsDefaultAndPersist()
    {
        {
            FMSSettings settings;
            QVERIFY(settings.autoActivationEnabled() && settings.pickBestMatch() && settings.activateEntireFamily());
            QVERIFY(settings.deactivateWhenDocumentClosed() && settings.deactivateWhenHostAppQuits());
            QVERIFY(!settings.allowRemote());
            QVERIFY(settings.trustedOrigins().isEmpty());
            settings.setPickBestMatch(false);
        }
        QSettings file(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        QCOMPARE(file.value(QStringLiteral("AutoActivation/PickBestMatch")).toBool(), false);
        QVERIFY(!FMSSettings().pickBestMatch());
    }

    void onlyAYesAllowsRemoteClients_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("true") << "true" << true;
        QTest::newRow("Yes") << "Yes" << true;
        QTest::newRow("no") << "no" << false;
        QTest::newRow("off") << "off" << false;
        QTest::newRow("list") << "true, true" << false;
    }

    void onlyAYesAllowsRemoteClients()
    {
        QFETCH(QString, value);
        QFETCH(bool, allowed);
        QFile file(krv::userSettingsFolder() + QStringLiteral("settings.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Rest]\nAllowRemote=" + value.toUtf8() + "\n");
        file.close();
        QCOMPARE(FMSSettings().allowRemote(), allowed);
        QVERIFY(file.remove());
    }

    void windowSettingsAnnounceAndKeepValues()
    {
        KrvUiSettings* settings = KrvUiSettings::instance();
        QCOMPARE(settings, KrvUiSettings::instance());
        QSignalSpy spy(settings, &KrvUiSettings::valueChanged);
        QVERIFY(!settings->contains(KrvUiSettings::SidColumnWidths));
        const QList<int> widths{10, -1, 300};
        settings->setValue(KrvUiSettings::SidColumnWidths, QVariant::fromValue(widths));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(settings->value(KrvUiSettings::SidColumnWidths).value<QList<int>>(), widths);
        QCOMPARE(settings->value(KrvUiSettings::SidPreviewSize, 24).toInt(), 24);
    }

    void pathsTravelAsHexadecimal_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("code");
        QTest::newRow("plain") << "c:/f/a.ttf" << QByteArray("0x633a2f662f612e747466");
        QTest::newRow("odd") << QString::fromUtf8("/a \"b\"\n|||ü") << QByteArray("0x2f6120226222") + "0a7c7c7cc3bc";
        QTest::newRow("empty") << "" << QByteArray("0x");
    }

    void pathsTravelAsHexadecimal()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, code);
        QCOMPARE(krv::encodePath(path), code);
        QCOMPARE(krv::decodePath(code), path);
        QCOMPARE(krv::decodePath("/plain/path"), QStringLiteral("/plain/path"));
    }

    void theOnlineSideFileSaysWhereAFontCameFrom()
    {
        QTemporaryDir folder;
        const QString font = folder.filePath(QStringLiteral("a.ttf"));
        const QDateTime date(QDate(2026, 1, 2), QTime(3, 4, 5));
        QVERIFY(krv::writeOnlineInfo(font, 7, QStringLiteral("shop"), date, true));
        {
            QSettings file(font + QStringLiteral(".onlineinfo"), QSettings::IniFormat);
            QCOMPARE(file.value(QStringLiteral("OnlineId")).toInt(), 7);
            QCOMPARE(file.value(QStringLiteral("OnlineSource")).toString(), QStringLiteral("shop"));
            QCOMPARE(file.value(QStringLiteral("DownloadedDate")).toDateTime(), date);
            QCOMPARE(file.value(QStringLiteral("Purchased")).toBool(), true);
        }
        QVERIFY(krv::removeOnlineInfo(font));
        QVERIFY(!QFile::exists(font + QStringLiteral(".onlineinfo")));
        QVERIFY(!krv::writeOnlineInfo(QStringLiteral("/proc/none/a.ttf"), 7, QString(), date, true));
    }

    void versionNumbersOrder()
    {
        QCOMPARE(krv::versionNumber(QStringLiteral(" 2.7.1 beta")), 20701);
        QCOMPARE(krv::versionNumber(QStringLiteral("3")), 30000);
        QCOMPARE(krv::versionNumber(), 20701);
    }
};

KERVAL_TEST(SettingsTest)
#include "SettingsTest.moc"
