#include "qtService/app/service/FontManagementService.h"

#include "qtService/app/core/PathCodec.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/support/helperprograms.h"
#include "tests/support/signalcount.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using namespace kerval::testing;

namespace {

// A service that is started, with as many fonts in its catalogue as asked for.
struct RunningService
{
    explicit RunningService(int fonts = 0)
    {
        provideHelperPrograms(QStringLiteral(KERVAL_BIN_DIR));
        clearSettings();
        start();
        if (fonts > 0) {
            files = copyFonts(folder.path(), fonts);
            SignalCount stopped(service->fontAdder().data(), &FontAdder::fontAddingStopped);
            service->addFonts({folder.path()});
            if (!QTest::qWaitFor([&] { return !stopped.isEmpty(); }, 60000))
                qFatal("the fonts were not added");
        }
    }

    void start()
    {
        service.reset();
        service.reset(new FontManagementService);
        SignalCount started(service.data(), &FontManagementService::started);
        service->start();
        if (!QTest::qWaitFor([&] { return !started.isEmpty(); }, 30000))
            qFatal("the service did not start");
    }

    QList<int> ids() const { return service->repository()->fontIdList(); }
    int groupCount(int group) const { return service->systemFontGroups()->group(group)->fontCount(); }

    QTemporaryDir folder;
    QStringList files;
    QScopedPointer<FontManagementService> service;
};

template <class Command>
int run(const Command& command)
{
    command->start();
    command->waitForFinished();
    return command->state();
}

constexpr int finished = AbstractAsynchronousCommand::Finished;
constexpr int failed = AbstractAsynchronousCommand::Failed;

} // namespace

class FontManagementServiceTest : public QObject
{
    Q_OBJECT

private slots:
    void analysesAndCataloguesAFolder();
    void comesBackWithTheCatalogue();
    void refusesOnlineSourcesForMoreThanOneFile();
    void editsGroups();
    void hidesAndRemoves();
    void marksOnlineSources();
    void findsSimilarFonts();
    void exportsAndExtracts();
    void noticesFilesThatCameOrWent();
    void consumesTheListOfAReplacedCatalogue();
    void limitsRecentGroups();
    void answersWithNothingWhenStopped();
    void finishesRunningProcessesBeforeItStops();
    void stopsWhileTheSystemsFontsChange();
    void stopsWhileGroupsChange();
};

void FontManagementServiceTest::analysesAndCataloguesAFolder()
{
    RunningService running(4);
    const QList<StaticFontPtr> fonts = running.service->repository()->fonts();
    QCOMPARE(fonts.size(), 4);
    QStringList found;
    for (const StaticFontPtr& font : fonts) {
        found.append(font->fileName());
        QVERIFY(font->familyName().startsWith(QStringLiteral("DejaVu")));
        QVERIFY(!font->postScriptName().isEmpty());
        QCOMPARE(font->fontHash().size(), 42);
        QVERIFY(font->fileExists());
        QVERIFY(running.service->featureRepository()->containsFeatures(font->id()));
    }
    found.sort();
    QCOMPARE(found, running.files);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 4);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::RecentlyAddedFonts), 4);

    // What is catalogued is not analysed again.
    SignalCount searched(running.service->fontAdder().data(), &FontAdder::fontFileSearchFinished);
    running.service->addFonts({running.folder.path()});
    QTRY_VERIFY_WITH_TIMEOUT(!searched.isEmpty(), 10000);
    QVERIFY(!running.service->fontAdder()->isAdding());
    QCOMPARE(running.service->repository()->fontCount(), 4);
}

void FontManagementServiceTest::comesBackWithTheCatalogue()
{
    RunningService running(2);
    const QList<int> ids = running.ids();
    QCOMPARE(run(running.service->setFontsHidden({ids.first()}, true)), finished);
    running.start();
    QCOMPARE(running.ids(), ids);
    QVERIFY(running.service->repository()->font(ids.first())->isHidden());
    QCOMPARE(running.groupCount(SystemFontGroupList::AllFonts), 1);
    QCOMPARE(running.groupCount(SystemFontGroupList::HiddenFonts), 1);
}

void FontManagementServiceTest::refusesOnlineSourcesForMoreThanOneFile()
{
    RunningService running;
    const QStringList copies = copyFonts(running.folder.path(), 2);
    const QString source = QStringLiteral("shop");
    FontManagementService& service = *running.service;
    QCOMPARE(service.addFonts(copies, source), FontManagementService::TooManyFilesForOnlineSource);
    QCOMPARE(service.addFonts({running.folder.path()}, QString(), 7), FontManagementService::OnlineSourcePathIsFolder);
    QCOMPARE(service.fontAdder()->numberOfFonts(), 0);

    SignalCount stopped(service.fontAdder().data(), &FontAdder::fontAddingStopped);
    QCOMPARE(service.addFonts({copies.first()}, source, 7), FontManagementService::NoError);
    QTRY_VERIFY_WITH_TIMEOUT(!stopped.isEmpty(), 30000);
    const StaticFontPtr font = service.repository()->fonts().value(0);
    QVERIFY(font);
    QCOMPARE(font->onlineSource(), source);
    QCOMPARE(font->onlineId(), 7);
}

void FontManagementServiceTest::editsGroups()
{
    RunningService running(3);
    FontManagementService& service = *running.service;
    const QList<int> ids = running.ids();
    QCOMPARE(service.addGroup(QString()), 0);
    const int group = service.addGroup(QStringLiteral("100% \"Ä\" '"));
    QVERIFY(group > 0);

    QCOMPARE(run(service.addFontsToGroups({group}, ids.mid(0, 2))), finished);
    QTRY_COMPARE(service.userFontGroups()->group(group)->fontCount(), 2);
    const auto unknown = service.addFontsToGroups({group + 100}, ids);
    QCOMPARE(run(unknown), failed);
    QVERIFY(!unknown->succeeded());
    const auto nobody = service.addFontsToGroups({group + 100}, {-5});
    QCOMPARE(run(nobody), finished);
    QVERIFY(nobody->succeeded());

    const auto clone = service.cloneGroup(group, QStringLiteral("copy"));
    QCOMPARE(run(clone), finished);
    QTRY_COMPARE(service.userFontGroups()->group(clone->newGroupId())->fontCount(), 2);
    const auto noClone = service.cloneGroup(group, QString());
    QCOMPARE(run(noClone), finished);
    QCOMPARE(noClone->newGroupId(), 0);

    QCOMPARE(run(service.removeFontsFromGroups({group}, {ids.first()})), finished);
    QTRY_COMPARE(service.userFontGroups()->group(group)->fontIdList(), QList<int>{ids.at(1)});
    QVERIFY(!service.renameGroup(group, QString()));
    QVERIFY(service.renameGroup(group, QStringLiteral("new")));
    QTRY_COMPARE(service.userFontGroups()->group(group)->name(), QStringLiteral("new"));
    QVERIFY(service.clearGroup(group));
    QTRY_COMPARE(service.userFontGroups()->group(group)->fontCount(), 0);
    QVERIFY(service.removeGroup(group));
    QTRY_VERIFY(!service.userFontGroups()->containsGroup(group));
}

void FontManagementServiceTest::hidesAndRemoves()
{
    RunningService running(3);
    FontManagementService& service = *running.service;
    const QList<int> ids = running.ids();
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 3);
    QCOMPARE(run(service.setFontsHidden({ids.first(), -7}, true)), finished);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 2);
    QCOMPARE(run(service.removeFonts({ids.first()})), finished);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::HiddenFonts), 0);
    QVERIFY(!service.featureRepository()->containsFeatures(ids.first()));
    QVERIFY(service.featureRepository()->containsFeatures(ids.last()));

    QCOMPARE(run(service.clearDatabase()), finished);
    QCOMPARE(service.repository()->fontCount(), 0);
    QCOMPARE(service.featureRepository()->featuresCount(), 0);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 0);
}

void FontManagementServiceTest::marksOnlineSources()
{
    RunningService running(2);
    FontManagementService& service = *running.service;
    const QList<int> ids = running.ids();
    const StaticFontPtr font = service.repository()->font(ids.first());
    QCOMPARE(run(service.setFontsOnlineSource({ids.first()}, QStringLiteral("shop"), 9)), finished);
    QCOMPARE(font->onlineId(), 9);
    QVERIFY(QFile::exists(font->fileName() + QStringLiteral(".onlineinfo")));

    // The second font has no file to delete: nothing in the catalogue changes.
    QCOMPARE(run(service.clearFontsOnlineSource({ids.last()})), failed);
    QCOMPARE(font->onlineId(), 9);
    QCOMPARE(run(service.clearFontsOnlineSource({ids.first()})), finished);
    QCOMPARE(font->onlineId(), 0);
    QVERIFY(font->onlineSource().isEmpty());
}

void FontManagementServiceTest::findsSimilarFonts()
{
    RunningService running(6);
    FontManagementService& service = *running.service;
    const int asked = running.ids().first();
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 6);

    const auto group = service.similarFontsGroup(asked, 4, {}, SimilarFontsGroup::Similar);
    const QList<int> similar = group->fontIdList();
    QCOMPARE(similar.size(), 4);
    QCOMPARE(similar.first(), asked);
    QCOMPARE(group->fontCount(), 4);

    // A hidden font uses up no place, and a removed one is never answered.
    QCOMPARE(run(service.setFontsHidden({similar.at(1)}, true)), finished);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 5);
    QCOMPARE(run(service.removeFonts({similar.at(2)})), finished);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 4);
    const QList<int> after = service.similarFontsGroup(asked, 4, {}, SimilarFontsGroup::Similar)->fontIdList();
    QCOMPARE(after.size(), 4);
    QVERIFY(!after.contains(similar.at(1)) && !after.contains(similar.at(2)));

    const QList<int> among =
        service.similarFontsGroup(asked, 4, after.mid(0, 2), SimilarFontsGroup::Similar)->fontIdList();
    QCOMPARE(among.size(), 2);
    QVERIFY(service.similarFontsGroup(-9, 4, {}, SimilarFontsGroup::Similar)->fontIdList().isEmpty());
}

void FontManagementServiceTest::exportsAndExtracts()
{
    RunningService running(2);
    FontManagementService& service = *running.service;
    const QString archive = running.folder.filePath(QStringLiteral("all.zip"));
    QCOMPARE(run(service.exportAllFonts(archive)), finished);

    const QString target = running.folder.filePath(QStringLiteral("unpacked"));
    QCOMPARE(run(service.extractFontArchive(archive, target, true)), finished);
    for (const QString& file : running.files) {
        const QString copy = target + QLatin1Char('/') + QFileInfo(file).fileName();
        QCOMPARE(readFile(copy), readFile(file));
        QVERIFY(QFile::exists(copy + QStringLiteral(".onlineinfo")));
    }
    QCOMPARE(run(service.extractFontArchive(running.files.first(), target, false)), failed);
}

void FontManagementServiceTest::noticesFilesThatCameOrWent()
{
    RunningService running(2);
    FontManagementService& service = *running.service;
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 2);
    const QByteArray content = readFile(running.files.first());
    QVERIFY(QFile::remove(running.files.first()));
    QCOMPARE(run(service.updateFileExistance()), finished);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 1);

    writeFile(running.files.first(), content);
    running.start();
    QCOMPARE(running.groupCount(SystemFontGroupList::AllFonts), 2);
}

void FontManagementServiceTest::consumesTheListOfAReplacedCatalogue()
{
    RunningService running;
    const QStringList copies = copyFonts(running.folder.path(), 3);
    const QString list = krv::userSettingsFolder() + QStringLiteral("olddbfontfiles.ev");
    writeFile(list,
              (copies.at(0) + QStringLiteral("\n") + copies.at(1) + QStringLiteral("\n\n") + copies.at(2)).toUtf8());
    SignalCount searched(running.service->fontAdder().data(), &FontAdder::fontFileSearchFinished);
    running.service->rescanFonts();
    QVERIFY(!QFile::exists(list));
    QTRY_VERIFY_WITH_TIMEOUT(!searched.isEmpty(), 120000);

    // Up to the empty line, beside the machine's own fonts.
    const QString queue = krv::userSettingsFolder() + QStringLiteral("fontadder.ev");
    QTRY_VERIFY(readFile(queue).contains(krv::encodePath(copies.at(0))));
    const QByteArray waiting = readFile(queue);
    QVERIFY(waiting.contains(krv::encodePath(copies.at(1))));
    QVERIFY(!waiting.contains(krv::encodePath(copies.at(2))));
    QVERIFY(waiting.contains(krv::encodePath(systemFontFiles(1).first())));
    running.service->fontAdder()->stopAdding();
}

void FontManagementServiceTest::limitsRecentGroups()
{
    RunningService running(3);
    QTRY_COMPARE(running.groupCount(SystemFontGroupList::AllFonts), 3);
    FontManagementService& service = *running.service;
    QCOMPARE(service.createRecentLimitedFontGroup(SystemFontGroupList::RecentlyAddedFonts, 2)->fontCount(), 2);
    QVERIFY(!service.createRecentLimitedFontGroup(SystemFontGroupList::ActiveFonts, 10));
}

void FontManagementServiceTest::answersWithNothingWhenStopped()
{
    RunningService running(1);
    FontManagementService& service = *running.service;
    SignalCount stopped(&service, &FontManagementService::stopped);
    service.stop();
    QTRY_VERIFY_WITH_TIMEOUT(!stopped.isEmpty(), 10000);
    QVERIFY(!service.isStarted());
    QVERIFY(!service.repository() && !service.removeFonts({1}) && !service.existingFontsGroup());
    QCOMPARE(service.addGroup(QStringLiteral("g")), 0);

    SignalCount started(&service, &FontManagementService::started);
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(!started.isEmpty(), 10000);
    QCOMPARE(service.repository()->fontCount(), 1);
}

void FontManagementServiceTest::finishesRunningProcessesBeforeItStops()
{
    RunningService running;
    const QStringList copies = copyFonts(running.folder.path(), 20);
    FontManagementService& service = *running.service;
    SignalCount counted(service.fontAdder().data(), &FontAdder::numberOfAddedFontsChanged);
    service.addFonts({running.folder.path()});
    QTRY_VERIFY_WITH_TIMEOUT(counted.size() > 1, 20000);
    running.start();

    // What was analysed is stored, the rest waits, and nothing is lost or doubled.
    const QSharedPointer<FontAdder> adder = running.service->fontAdder();
    const int stored = running.service->repository()->fontCount();
    QVERIFY(stored >= 2);
    QCOMPARE(stored + adder->numberOfFonts(), 20);
    if (adder->isPaused()) {
        SignalCount stopped(adder.data(), &FontAdder::fontAddingStopped);
        adder->startAdding();
        QTRY_VERIFY_WITH_TIMEOUT(!stopped.isEmpty(), 30000);
    }
    QCOMPARE(running.service->repository()->fontCount(), 20);
}

// The groups that a window shows go after the library, and with them the repository, on another thread than its own.
void FontManagementServiceTest::stopsWhileTheSystemsFontsChange()
{
    auto* const manager = kerval::systemfm::SystemFontManager::instance();
    RunningService running;
    for (int round = 0; round < 10; ++round) {
        QSharedPointer<FontGroup> shown = running.service->existingFontsGroup();
        running.service->stop();
        for (int i = 0; i < 100; ++i)
            emit manager->activeFontsChanged();
        QTRY_VERIFY(!running.service->isStarted());
        shown.clear();
        running.service->start();
        QTRY_VERIFY(running.service->isStarted());
    }
}

void FontManagementServiceTest::stopsWhileGroupsChange()
{
    RunningService running;
    const int group = running.service->addGroup(QStringLiteral("Mine"));
    for (int round = 0; round < 10; ++round) {
        const QSharedPointer<FontGroup> shown = running.service->userFontGroups()->group(group);
        KrvUserDatabase* const database = running.service->userDatabase();
        // From a command's thread, so that the group hears of it while the library closes.
        std::thread([database, group] {
            for (int i = 0; i < 3000; ++i)
                emit database->fontGroupsChanged({}, group);
        }).join();
        running.service->stop();
        QTRY_VERIFY(!running.service->isStarted());
        QCoreApplication::processEvents();
        running.service->start();
        QTRY_VERIFY(running.service->isStarted());
    }
}

KERVAL_TEST(FontManagementServiceTest)
#include "FontManagementServiceTest.moc"
