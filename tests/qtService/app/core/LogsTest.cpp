#include "qtService/app/core/DebugLog.h"
#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/FMSLogModel.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using kerval::testing::readFile;
using kerval::testing::writeFile;

class LogsTest : public QObject
{
    Q_OBJECT

private slots:
    void entriesSurviveARestart()
    {
        QTemporaryDir folder;
        const QString path = folder.path() + QLatin1Char('/');
        {
            FMSLog log;
            log.setFolder(path);
            log.log(FMSLog::ScanStarted, QString());
            log.log(FMSLog::FontProcessed, QString::fromUtf8("/fonts/Größe\nzwei.ttf"));
        }
        FMSLog log;
        log.setFolder(path);
        QCOMPARE(log.entryCount(), 2);
        QCOMPARE(log.entry(1).type, int(FMSLog::FontProcessed));
        QCOMPARE(log.entry(1).text, QString::fromUtf8("/fonts/Größe zwei.ttf"));
        QVERIFY(log.entry(1).time > 1600000000);
    }

    void onlyAbortsAndErrorsMoveTheLastScan_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("moves");
        for (int type = FMSLog::ScanStarted; type <= FMSLog::FontRemoved; ++type)
            QTest::addRow("type %d", type) << type << (type == FMSLog::ScanAborted || type == FMSLog::FontError);
    }

    void onlyAbortsAndErrorsMoveTheLastScan()
    {
        QFETCH(int, type);
        QFETCH(bool, moves);
        QTemporaryDir folder;
        FMSLog log;
        log.setFolder(folder.path() + QLatin1Char('/'));
        log.log(type, QStringLiteral("x"));
        QCOMPARE(log.lastScanTime() > 0, moves);
        QCOMPARE(readFile(folder.filePath(QStringLiteral("lastscan"))).size(), moves ? 8 : 0);
    }

    void brokenLinesAreSkipped()
    {
        QTemporaryDir folder;
        writeFile(folder.filePath(QStringLiteral("fontslog")), "12||||1\nnonsense\n77||||6||||a||||b\n\n");
        writeFile(folder.filePath(QStringLiteral("lastscan")), "short");
        FMSLog log;
        log.setFolder(folder.path() + QLatin1Char('/'));
        QCOMPARE(log.entryCount(), 1);
        QCOMPARE(log.entry(0).text, QStringLiteral("a"));
        QCOMPARE(log.lastScanTime(), 0);
    }

    void anUnwritableFolderLosesTheEntryOnly()
    {
        FMSLog log;
        log.setFolder(QStringLiteral("/proc/none/"));
        QSignalSpy spy(&log, &FMSLog::logChanged);
        log.log(FMSLog::Message, QStringLiteral("x"));
        QCOMPARE(spy.count(), 0);
        QCOMPARE(log.entryCount(), 0);
    }

    void theModelFollowsTheLog()
    {
        QTemporaryDir folder;
        FMSLog log;
        log.setFolder(folder.path() + QLatin1Char('/'));
        FMSLog::setInstance(&log);
        FMSLogModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        FMSLog::logEvent(FMSLog::FontRemoved, QStringLiteral("gone"));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.index(0, FMSLogModel::TypeColumn).data().toString(), QStringLiteral("Font removed"));
        QCOMPARE(model.index(0, FMSLogModel::DescriptionColumn).data().toString(), QStringLiteral("gone"));
        QVERIFY(!model.index(0, FMSLogModel::TimeColumn).data().toString().isEmpty());
    }

    void debugLinesLoseTheirPrefix_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("line");
        QTest::newRow("prefixed") << "M_3_ some text"
                                  << "[26-01-02 03:04:05.006] some text\n";
        QTest::newRow("plain") << "QObject::connect failed"
                               << "[26-01-02 03:04:05.006] QObject::connect failed\n";
        QTest::newRow("for the user") << "U_ Port: 33000"
                                      << "[26-01-02 03:04:05.006] U_ Port: 33000\n";
        QTest::newRow("short") << "M_"
                               << "[26-01-02 03:04:05.006] M_\n";
    }

    void debugLinesLoseTheirPrefix()
    {
        QFETCH(QString, message);
        QFETCH(QString, line);
        const QDateTime now(QDate(2026, 1, 2), QTime(3, 4, 5, 6));
        QCOMPARE(krv::debuglog::formattedLine(message, now, true), line);
        QCOMPARE(krv::debuglog::formattedLine(message, now, false), line.section(QStringLiteral("] "), 1));
    }
};

KERVAL_TEST(LogsTest)
#include "LogsTest.moc"
