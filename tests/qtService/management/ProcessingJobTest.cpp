#include "qtService/management/FontProcessingJob.h"

#include "helpers/common/FaceReport.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::testing;

namespace {

constexpr int finished = AbstractAsynchronousCommand::Finished;
constexpr int failed = AbstractAsynchronousCommand::Failed;

QByteArray report()
{
    kerval::helpers::FaceReport face;
    face.information = {{"face_name", "Ü: a|b"}, {"style", "first"}, {"style", "second"}, {"license", ""}};
    kerval::helpers::FeatureVector vector{};
    vector[0] = 1.5F;
    vector[60] = -2;
    face.features = {{97, vector}};
    std::string output = kerval::helpers::writeFaceReport(face);
    return "noise before " + QByteArray::fromStdString(output);
}

int runToEnd(FontProcessingJob& job, int timeout = 20000)
{
    QSignalSpy states(&job, &FontProcessingJob::stateChanged);
    job.start();
    while (job.state() == FontProcessingJob::Running && states.wait(timeout)) {
    }
    return job.state();
}

} // namespace

class ProcessingJobTest : public QObject
{
    Q_OBJECT

private slots:
    void passesTheFaceAndReadsTheReport();
    void keepsAFileNameThatNoReportCarries();
    void fails_data();
    void fails();
    void failsWithoutAProgramThroughTheEventLoop();
    void recoversOnTheSecondTry();
    void killsWhatTakesTooLong();
    void canBeWaitedForWithoutAnEventLoop();
    void takesItsProcessAlong();

private:
    QString script(const QByteArray& commands)
    {
        return writeScript(m_folder.filePath(QStringLiteral("adder program.sh")), commands);
    }
    // A command that appends a line to the log, so that runs can be counted.
    QByteArray logging() const { return "echo \"$@\" >> '" + m_folder.path().toUtf8() + "/log'\n"; }
    QStringList log() const
    {
        return QString::fromUtf8(readFile(m_folder.filePath(QStringLiteral("log"))))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    QByteArray printing(const QByteArray& output) const
    {
        writeFile(m_folder.filePath(QStringLiteral("output")), output);
        return "cat '" + m_folder.path().toUtf8() + "/output'\n";
    }

    QTemporaryDir m_folder;

private slots:
    void init() { QFile::remove(m_folder.filePath(QStringLiteral("log"))); }
};

void ProcessingJobTest::passesTheFaceAndReadsTheReport()
{
    FontProcessingJob job(script(logging() + printing(report())), QStringLiteral("/f/a.ttf"), 3, 60, 1);
    QCOMPARE(runToEnd(job), finished);
    QCOMPARE(log(), QStringList(QStringLiteral("-i 0x2f662f612e747466 -d stdout --useReducedCharset -g 3")));
    QCOMPARE(job.error(), int(FontProcessingJob::NoError));
    QCOMPARE(job.fontInfo().value(QStringLiteral("face_name")), QStringLiteral("Ü: a|b"));
    QCOMPARE(job.fontInfo().value(QStringLiteral("style")), QStringLiteral("second"));
    QCOMPARE(job.features().keys(), QList<int>{97});
    QCOMPARE(job.features().value(97).size(), 61);
    QCOMPARE(job.features().value(97).first(), 1.5F);
    QCOMPARE(job.features().value(97).last(), -2.0F);
}

void ProcessingJobTest::keepsAFileNameThatNoReportCarries()
{
    const QString name = QStringLiteral("/f/a|:|b\x7f.ttf");
    kerval::helpers::FaceReport face;
    face.information = {{"file_name", name.toStdString()}, {"original_file_name", "/elsewhere.ttf"}};
    FontProcessingJob job(script(printing(QByteArray::fromStdString(kerval::helpers::writeFaceReport(face)))), name, 0,
                          60, 1);
    QCOMPARE(runToEnd(job), finished);
    QCOMPARE(job.fontInfo().value(QStringLiteral("file_name")), name);
    QCOMPARE(job.fontInfo().value(QStringLiteral("original_file_name")), QStringLiteral("/elsewhere.ttf"));
}

void ProcessingJobTest::fails_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("runs");
    QTest::newRow("exit code") << QByteArray("echo no font >&2; exit 3\n") << int(FontProcessingJob::NonZeroExit) << 2;
    QTest::newRow("crash") << QByteArray("kill -SEGV $$\n") << int(FontProcessingJob::Crashed) << 2;
    QTest::newRow("no output") << QByteArray("exit 0\n") << int(FontProcessingJob::MalformedOutput) << 1;
    QTest::newRow("length 0") << QByteArray("printf '|:::::::::::::::|0|'\n") << int(FontProcessingJob::MalformedOutput)
                              << 1;
    QTest::newRow("cut short") << QByteArray("printf '|:::::::::::::::|900|abcd'\n")
                               << int(FontProcessingJob::MalformedOutput) << 1;
    QTest::newRow("no base64") << QByteArray("printf '|:::::::::::::::|4|!!!!'\n")
                               << int(FontProcessingJob::MalformedOutput) << 1;
}

void ProcessingJobTest::fails()
{
    QFETCH(QByteArray, commands);
    QFETCH(int, error);
    QFETCH(int, runs);
    FontProcessingJob job(script(logging() + commands), QStringLiteral("/f/a.ttf"), 0, 60, 1);
    QCOMPARE(runToEnd(job), failed);
    QCOMPARE(job.error(), error);
    QCOMPARE(log().size(), runs);
    QVERIFY(job.fontInfo().isEmpty() && job.features().isEmpty());
}

void ProcessingJobTest::failsWithoutAProgramThroughTheEventLoop()
{
    FontProcessingJob job(m_folder.filePath(QStringLiteral("missing.exe")), QStringLiteral("/f/a.ttf"), 0, 60, 1);
    job.start();
    QCOMPARE(job.state(), FontProcessingJob::Running);
    QTRY_COMPARE(int(job.state()), failed);
    QCOMPARE(job.error(), int(FontProcessingJob::Crashed));
}

void ProcessingJobTest::recoversOnTheSecondTry()
{
    const QByteArray mark = "'" + m_folder.path().toUtf8() + "/mark'";
    QFile::remove(m_folder.filePath(QStringLiteral("mark")));
    FontProcessingJob job(script("[ -e " + mark + " ] || { touch " + mark + "; exit 1; }\n" + printing(report())),
                          QStringLiteral("/f/a.ttf"), 0, 60, 1);
    QCOMPARE(runToEnd(job), finished);
    QCOMPARE(job.error(), int(FontProcessingJob::NoError));
}

void ProcessingJobTest::killsWhatTakesTooLong()
{
    FontProcessingJob job(script(logging() + "exec sleep 1000\n"), QStringLiteral("/f/a.ttf"), 0, 1, 1);
    QCOMPARE(runToEnd(job), failed);
    QCOMPARE(job.error(), int(FontProcessingJob::TimedOut));
    QCOMPARE(log().size(), 2);
}

void ProcessingJobTest::canBeWaitedForWithoutAnEventLoop()
{
    FontProcessingJob good(script(printing(report())), QStringLiteral("/f/a.ttf"), 0, 60, 1);
    good.start();
    good.waitForFinished();
    QCOMPARE(int(good.state()), finished);

    FontProcessingJob missing(m_folder.filePath(QStringLiteral("missing.exe")), QStringLiteral("/f/a.ttf"), 0, 60, 1);
    missing.start();
    missing.waitForFinished();
    QCOMPARE(int(missing.state()), failed);

    FontProcessingJob slow(script("exec sleep 1000\n"), QStringLiteral("/f/a.ttf"), 0, 1, 0);
    slow.start();
    slow.waitForFinished();
    QCOMPARE(int(slow.state()), failed);
    QCOMPARE(slow.error(), int(FontProcessingJob::TimedOut));
}

void ProcessingJobTest::takesItsProcessAlong()
{
    const QString pidFile = m_folder.filePath(QStringLiteral("pid"));
    {
        FontProcessingJob job(script("echo $$ > '" + pidFile.toUtf8() + "'; exec sleep 1000\n"),
                              QStringLiteral("/f/a.ttf"), 0, 60, 1);
        job.start();
        QTRY_VERIFY(QFile::exists(pidFile) && readFile(pidFile).endsWith('\n'));
    }
    QVERIFY(!QFile::exists(QStringLiteral("/proc/") + QString::fromUtf8(readFile(pidFile).trimmed())));
}

KERVAL_TEST(ProcessingJobTest)
#include "ProcessingJobTest.moc"
