#include "qtService/management/FontAdder.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/DatabaseConnectionFactory.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/StaticFont.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QtTest>

using namespace kerval::testing;

namespace {

QString queueFile()
{
    return krv::userSettingsFolder() + QStringLiteral("fontadder.ev");
}

QList<FontQueue::Face> savedFaces()
{
    return FontQueue::load(queueFile());
}

// Waits for a file to appear before it goes on with the real program.
QByteArray gated(const LibraryFixture& library)
{
    return "while [ ! -e '" + library.path(QStringLiteral("go")).toUtf8() + "' ]; do sleep 0.01; done\nexec '" +
           library.adderProgram().toUtf8() + "' \"$@\"\n";
}

} // namespace

class FontAdderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void addsAndEndsByItself();
    void queuesAFaceOnce();
    void doesNotQueueWhatIsInWork();
    void namesFailures();
    void survivesAMissingProgram();
    void survivesFilesThatVanish();
    void pausesAndResumes();
    void stopsWhileJobsRun();
    void addsWhatIsSearchedWhileItStops();
    void stopsAtOnceWhenPaused();
    void comesBackPausedAfterARestart();
    void keepsTheQueueWhenItIsShutDown();
    void keepsUserDataOfFontsThatComeBack();
    void tellsOfFontsThatCouldNotBeStored_data();
    void tellsOfFontsThatCouldNotBeStored();
    void keepsScanPaths();

private:
    QList<int> eventTypes() const
    {
        QList<int> types;
        for (const FMSLog::Entry& entry : m_log->entries())
            types.append(entry.type);
        return types;
    }

    QScopedPointer<LibraryFixture> m_library;
    QScopedPointer<FMSLog> m_log;
    QString m_fonts;
};

void FontAdderTest::init()
{
    clearSettings();
    m_library.reset(new LibraryFixture);
    m_fonts = m_library->path(QStringLiteral("fonts"));
    m_log.reset(new FMSLog);
    m_log->setFolder(krv::userSettingsFolder());
    FMSLog::setInstance(m_log.data());
}

void FontAdderTest::cleanup()
{
    m_log.reset();
    m_library.reset();
}

void FontAdderTest::addsAndEndsByItself()
{
    const QStringList files = copyFonts(m_fonts, 3);
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QStringList signalNames;
    const auto note = [&signalNames](const char* name) { signalNames.append(QLatin1String(name)); };
    connect(adder.data(), &FontAdder::fontFileSearchStarted, [&] { note("search started"); });
    connect(adder.data(), &FontAdder::fontFileSearchFinished, [&] { note("search finished"); });
    connect(adder.data(), &FontAdder::fontAddingStarted, [&] { note("started"); });
    connect(adder.data(), &FontAdder::insertingDataStarted, [&] { note("inserting"); });
    connect(adder.data(), &FontAdder::insertingDataFinished, [&] { note("inserted"); });
    connect(adder.data(), &FontAdder::fontAddingStopped, [&] { note("stopped"); });
    QVERIFY(!adder->searchDoneOnce());
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(adder->isSearching());
    QTRY_VERIFY_WITH_TIMEOUT(signalNames.contains(QStringLiteral("stopped")), 30000);
    QCOMPARE(signalNames, QStringList({QStringLiteral("search started"), QStringLiteral("search finished"),
                                       QStringLiteral("started"), QStringLiteral("inserting"),
                                       QStringLiteral("inserted"), QStringLiteral("stopped")}));

    QStringList stored;
    for (const StaticFontPtr& font : m_library->repository->fonts())
        stored.append(font->fileName());
    QCOMPARE(stored, files);
    QCOMPARE(m_library->features->featuresCount(), 3);
    QCOMPARE(m_library->userDatabase->allFontHashes().size(), 3);
    QVERIFY(!adder->isAdding() && !adder->isSearching() && !adder->isStopping() && adder->searchDoneOnce());
    QCOMPARE(adder->numberOfFonts() + adder->numberOfAddedFonts() + adder->runningJobCount(), 0);
    QVERIFY(savedFaces().isEmpty());
    QCOMPARE(eventTypes(), QList<int>({FMSLog::ScanStarted, FMSLog::FontProcessed, FMSLog::FontProcessed,
                                       FMSLog::FontProcessed, FMSLog::ScanFinished}));
}

void FontAdderTest::queuesAFaceOnce()
{
    const QStringList files = copyFonts(m_fonts, 2);
    m_library->addRecord(files.first());
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts, m_fonts, files.last()});
    adder->addFontsFromPaths({m_fonts});
    adder->addFontsFromPaths({});
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), 2);
}

void FontAdderTest::doesNotQueueWhatIsInWork()
{
    copyFonts(m_fonts, 1);
    const auto adder =
        m_library->createAdder(writeScript(m_library->path(QStringLiteral("adder.sh")), gated(*m_library)));
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts});
    QTRY_COMPARE(adder->runningJobCount(), 1);
    QSignalSpy searched(adder.data(), &FontAdder::fontFileSearchFinished);
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(searched.wait());
    QCOMPARE(adder->numberOfFonts(), 1);
    QCOMPARE(savedFaces().size(), 1); // what is being analysed would come back after a crash
    writeFile(m_library->path(QStringLiteral("go")), QByteArray());
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), 1);
}

void FontAdderTest::namesFailures()
{
    const QByteArray font = readFile(systemFontFiles(1).first());
    const QDir fonts(m_fonts);
    writeFile(fonts.filePath(QStringLiteral("hidden.ttf")), renamedFont(font, '.'));
    writeFile(fonts.filePath(QStringLiteral("nameless.ttf")), namelessFont(font));
    writeFile(fonts.filePath(QStringLiteral("bad.ttf")), font);
    writeFile(fonts.filePath(QStringLiteral("good.ttf")), font);
    const QByteArray bad = krv::encodePath(fonts.filePath(QStringLiteral("bad.ttf")));
    const QString program =
        writeScript(m_library->path(QStringLiteral("adder.sh")), "case \"$*\" in *" + bad + "*) exit 1;; esac\nexec '" +
                                                                     m_library->adderProgram().toUtf8() + "' \"$@\"\n");
    const auto adder = m_library->createAdder(program);
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    QSignalSpy failures(adder.data(), &FontAdder::failedFontFilesChanged);
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(stopped.wait(30000));
    const QHash<QString, int> expected = {
        {fonts.filePath(QStringLiteral("hidden.ttf")), FontAdder::HiddenFontName},
        {fonts.filePath(QStringLiteral("nameless.ttf")), FontAdder::EmptyPostScriptName},
        {fonts.filePath(QStringLiteral("bad.ttf")), FontAdder::ProcessingFailed}};
    QCOMPARE(adder->failedFontFiles(), expected);
    QCOMPARE(failures.size(), 3);
    QCOMPARE(eventTypes().count(FMSLog::FontError), 3);
    QCOMPARE(FontAdder::failureText(FontAdder::HiddenFontName),
             QStringLiteral("Font name start with '.', it should remain hidden"));
    QCOMPARE(m_library->repository->fontCount(), 1);
}

void FontAdderTest::survivesAMissingProgram()
{
    const QString file = m_fonts + QStringLiteral("/face.ttf");
    QList<FontQueue::Face> faces;
    for (int i = 0; i < 1000; ++i) // none may be started from inside another's failure
        faces.append({file, i});
    FontQueue::save(queueFile(), faces);
    const auto adder = m_library->createAdder(m_library->path(QStringLiteral("missing.exe")));
    QCOMPARE(adder->numberOfFonts(), 1000);
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->startAdding();
    QVERIFY(stopped.wait(240000));
    QCOMPARE(adder->failedFontFiles().value(file), int(FontAdder::ProcessingFailed));
    QCOMPARE(m_library->repository->fontCount(), 0);
}

void FontAdderTest::survivesFilesThatVanish()
{
    const QStringList files = copyFonts(m_fonts, 3);
    FontQueue::save(queueFile(), {{files.at(0), 0}, {files.at(1), 0}, {files.at(2), 9}});
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QVERIFY(QFile::remove(files.at(0)));
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->startAdding();
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), 1);
    QCOMPARE(adder->failedFontFiles().size(), 2); // the file that is gone and the face that never was
}

void FontAdderTest::pausesAndResumes()
{
    copyFonts(m_fonts, 12);
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QSignalSpy paused(adder.data(), &FontAdder::fontAddingPaused);
    QSignalSpy resumed(adder.data(), &FontAdder::fontAddingResumed);
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    connect(adder.data(), &FontAdder::numberOfAddedFontsChanged, adder.data(), [&] {
        if (adder->numberOfAddedFonts() == 3)
            adder->pauseAdding();
    });
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(paused.wait(30000));
    QVERIFY(adder->isPaused() && adder->isAdding() && !adder->isPausing());
    QCOMPARE(adder->runningJobCount(), 0);
    // What was analysed is stored, and the rest would survive a crash.
    const int stored = m_library->repository->fontCount();
    QVERIFY(stored >= 3 && stored < 12);
    QCOMPARE(adder->numberOfAddedFonts(), stored);
    QCOMPARE(savedFaces().size(), 12 - stored);

    adder->pauseAdding(); // nothing to pause
    adder->startAdding();
    QVERIFY(stopped.wait(30000));
    QCOMPARE(resumed.size(), 1);
    QCOMPARE(paused.size(), 1);
    QCOMPARE(m_library->repository->fontCount(), 12);
    QVERIFY(eventTypes().contains(FMSLog::ScanPaused) && eventTypes().contains(FMSLog::ScanResumed));
}

void FontAdderTest::stopsWhileJobsRun()
{
    copyFonts(m_fonts, 12);
    const auto adder =
        m_library->createAdder(writeScript(m_library->path(QStringLiteral("adder.sh")), gated(*m_library)));
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts});
    QTRY_COMPARE(adder->runningJobCount(), adder->maxRunningJobs());
    const int running = adder->runningJobCount();
    adder->stopAdding();
    QVERIFY(adder->isStopping() && adder->isAdding());
    QCOMPARE(adder->numberOfFonts(), 0);
    QVERIFY(stopped.isEmpty());
    writeFile(m_library->path(QStringLiteral("go")), QByteArray());
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), running);
    QVERIFY(!adder->isAdding() && !adder->isStopping());
    QVERIFY(savedFaces().isEmpty());
    QVERIFY(eventTypes().contains(FMSLog::ScanAborted) && !eventTypes().contains(FMSLog::ScanFinished));
    adder->stopAdding(); // nothing to stop
    QCOMPARE(stopped.size(), 1);
}

void FontAdderTest::addsWhatIsSearchedWhileItStops()
{
    const QStringList files = copyFonts(m_fonts, 12);
    const auto adder =
        m_library->createAdder(writeScript(m_library->path(QStringLiteral("adder.sh")), gated(*m_library)));
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts});
    QTRY_COMPARE(adder->runningJobCount(), adder->maxRunningJobs());
    const int running = adder->runningJobCount();
    adder->stopAdding();
    adder->addFontsFromPaths({m_fonts});
    QTRY_COMPARE(adder->numberOfFonts(), files.size() - running);
    QTRY_VERIFY(!adder->isSearching());
    QVERIFY(stopped.isEmpty());
    writeFile(m_library->path(QStringLiteral("go")), QByteArray());
    QVERIFY(stopped.wait(30000));
    QCOMPARE(adder->numberOfFonts(), files.size() - running);
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), files.size());
    QCOMPARE(adder->numberOfFonts(), 0);
}

void FontAdderTest::stopsAtOnceWhenPaused()
{
    FontQueue::save(queueFile(), {{QStringLiteral("/a.ttf"), 0}});
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QVERIFY(adder->isPaused() && adder->isAdding());
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->stopAdding();
    QVERIFY(!adder->isAdding() && !adder->isPaused() && !adder->isStopping());
    QCOMPARE(stopped.size(), 1);
    QVERIFY(savedFaces().isEmpty());
}

void FontAdderTest::comesBackPausedAfterARestart()
{
    const QStringList files = copyFonts(m_fonts, 3);
    m_library->addRecord(files.at(1));
    FontQueue::save(queueFile(), {{files.at(0), 0}, {files.at(1), 0}, {files.at(2), 0}});
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QVERIFY(adder->isPaused());
    QCOMPARE(adder->numberOfFonts(), 2); // one was catalogued meanwhile
    QCOMPARE(savedFaces().size(), 2);
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->startAdding();
    QVERIFY(stopped.wait(30000));
    QCOMPARE(m_library->repository->fontCount(), 3);
}

void FontAdderTest::keepsTheQueueWhenItIsShutDown()
{
    copyFonts(m_fonts, 15);
    auto adder = m_library->createAdder(m_library->adderProgram());
    adder->addFontsFromPaths({m_fonts});
    QTRY_VERIFY(adder->numberOfAddedFonts() >= 2);
    adder.reset();
    const int stored = m_library->repository->fontCount();
    QVERIFY(stored >= 2);
    QCOMPARE(savedFaces().size(), 15 - stored);
    const auto names = m_library->repository->fileFaces();
    for (const FontQueue::Face& face : savedFaces())
        QVERIFY(!names.contains(face.first));
}

void FontAdderTest::keepsUserDataOfFontsThatComeBack()
{
    copyFonts(m_fonts, 1);
    const auto adder = m_library->createAdder(m_library->adderProgram());
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(stopped.wait(30000));
    const StaticFontPtr font = m_library->repository->fonts().first();
    font->setUserNote(QStringLiteral("mine"));
    font->setUserRanking(4);
    QVERIFY(m_library->repository->updateFonts({font}, {QStringLiteral("userNote"), QStringLiteral("userRanking")}));
    m_library->repository->removeAll();

    adder->addFontsFromPaths({m_fonts});
    QVERIFY(stopped.wait(30000));
    const StaticFontPtr again = m_library->repository->fonts().first();
    QCOMPARE(again->userNote(), QStringLiteral("mine"));
    QCOMPARE(again->userRanking(), 4);
}

void FontAdderTest::tellsOfFontsThatCouldNotBeStored_data()
{
    QTest::addColumn<QStringList>("faults");
    const QString features =
        QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON feature BEGIN SELECT RAISE(ABORT, 'full'); END");
    QTest::newRow("no record") << QStringList{QStringLiteral("DROP TABLE font")};
    QTest::newRow("no features") << QStringList{features};
    // A full disk takes no removal either.
    QTest::newRow("no features and no removal")
        << QStringList{features, QStringLiteral("CREATE TRIGGER keep BEFORE DELETE ON font "
                                                "BEGIN SELECT RAISE(ABORT, 'full'); END")};
}

void FontAdderTest::tellsOfFontsThatCouldNotBeStored()
{
    QFETCH(QStringList, faults);
    const QStringList files = copyFonts(m_fonts, 1);
    const auto adder = m_library->createAdder(m_library->adderProgram());
    {
        QSqlDatabase database = m_library->database->connectionFactory()->database();
        for (const QString& fault : qAsConst(faults))
            QVERIFY(QSqlQuery(database).exec(fault));
    }
    QSignalSpy stopped(adder.data(), &FontAdder::fontAddingStopped);
    adder->addFontsFromPaths({m_fonts});
    QVERIFY(stopped.wait(30000));
    QCOMPARE(adder->failedFontFiles().value(files.first()), int(FontAdder::ProcessingFailed));
    QVERIFY(!m_library->repository->hasFonts());
}

void FontAdderTest::keepsScanPaths()
{
    QVERIFY(FontAdder::scanPaths().isEmpty());
    const QStringList paths = {QStringLiteral("/a|||b"), QStringLiteral("/\u4e00\n")};
    FontAdder::setScanPaths(paths);
    QCOMPARE(FontAdder::scanPaths(), paths);
    QVERIFY(readFile(krv::userSettingsFolder() + QStringLiteral("paths")).startsWith("0x2f617c7c7c62|||"));
    writeFile(krv::userSettingsFolder() + QStringLiteral("paths"), "/plain||||||0x2f62");
    QCOMPARE(FontAdder::scanPaths(), QStringList({QStringLiteral("/plain"), QStringLiteral("/b")}));
    FontAdder::setScanPaths({});
    QVERIFY(FontAdder::scanPaths().isEmpty());
}

KERVAL_TEST(FontAdderTest)
#include "FontAdderTest.moc"
