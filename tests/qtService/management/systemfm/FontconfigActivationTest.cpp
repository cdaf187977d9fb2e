#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/management/systemfm/privatefonts.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSettings>
#include <QtTest>

using namespace kerval::systemfm;
using namespace kerval::testing;

namespace {

constexpr ActivityType types[] = {PermanentlyActive, TemporarilyActive, Inactive};

} // namespace

class FontconfigActivationTest : public QObject
{
    Q_OBJECT

private slots:
    void everyChangeShowsInEveryProgram_data();
    void everyChangeShowsInEveryProgram();
    void aTwinOfASwitchedOffFileStaysActive();
    void temporaryFontsLastOneSession();
    void sessionsAreToldApart();
    void fontsOfALinkedFolderGoByTheirOwnName();
    void refusalsChangeNothing();
    void rulesOfOthersAreRefusalsThatNameThem();
    void unwritablePlacesAreRefusals();
    void aThousandFontsTakeOneBatch();
    void changesByOthersAreAnnouncedOnce();
    void filesOfTheUserStayAsTheyAre();
    void editedAndBrokenRulesAreKept();
    void protectedFontsAreNamed();
};

void FontconfigActivationTest::everyChangeShowsInEveryProgram_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("outside fontconfig's reach") << "lib/plain.ttf";
    QTest::newRow("in the user's font folder") << "data/fonts/plain.ttf";
    QTest::newRow("of the distribution") << "sys/plain.ttf";
    QTest::newRow("a collection outside") << "lib/two.ttc";
    QTest::newRow("a collection of the distribution") << "sys/two.ttc";
    QTest::newRow("a Type 1 pair outside") << "lib/kite.pfm";
    QTest::newRow("a Type 1 pair of the distribution") << "sys/kite.pfm";
    for (const char* folder : {"lib", "sys"}) {
        const QString prefix = QLatin1String(folder);
        QTest::newRow(folder) << prefix + QStringLiteral("/two words/with  blanks .ttf");
        QTest::newRow(folder) << prefix + QStringLiteral("/a \"b\" 'c' & <d>.ttf");
        QTest::newRow(folder) << prefix + QStringLiteral("/stars * and ? marks.ttf");
        QTest::newRow(folder) << prefix + QStringLiteral("/sets [a-z] {1,2} \\ %41.ttf");
        QTest::newRow(folder) << prefix + QStringLiteral("/line\nend\r\ttab.ttf");
        QTest::newRow(folder) << prefix + QString::fromUtf8("/\u66f8\u4f53 \u0428\u0440\u0438\u0444\u0442 \u00fc.ttf");
    }
}

void FontconfigActivationTest::everyChangeShowsInEveryProgram()
{
    QFETCH(QString, name);
    PrivateFonts home;
    home.addFont(QStringLiteral("sys/other.ttf"), 1);
    const QString file = name.endsWith(QLatin1String(".ttc"))   ? home.addCollection(name)
                         : name.endsWith(QLatin1String(".pfm")) ? home.addType1(name)
                                                                : home.addFont(name);
    const auto strategy = home.makeStrategy();
    const bool found = !name.startsWith(QLatin1String("lib"));
    QCOMPARE(activity(*strategy, file), int(found ? PermanentlyActive : Inactive));
    QCOMPARE(home.isListed(file), found);

    for (const ActivityType from : types) {
        for (const ActivityType to : types) {
            QCOMPARE(change(*strategy, file, from), 0);
            QCOMPARE(change(*strategy, file, to), 0);
            QCOMPARE(activity(*strategy, file), int(to));
            QCOMPARE(home.isListed(file), to != Inactive);
            const int faces = to == Inactive ? 0 : name.endsWith(QLatin1String(".ttc")) ? 2 : 1;
            QCOMPARE(home.listedFaces(), 1 + faces);
        }
    }

    // Another process that starts now agrees.
    for (const ActivityType type : types) {
        QCOMPARE(change(*strategy, file, type), 0);
        QCOMPARE(activity(*home.makeStrategy(), file), int(type));
    }
    QVERIFY(strategy->installedFontFiles().contains(file) == found);
}

// fontconfig compares the file names of patterns without regard to case and blanks.
void FontconfigActivationTest::aTwinOfASwitchedOffFileStaysActive()
{
    PrivateFonts home;
    const QString file = home.addFont(QStringLiteral("sys/My Font.ttf"), 0);
    const QString twin = home.addFont(QStringLiteral("sys/myfont.ttf"), 1);
    const auto strategy = home.makeStrategy();
    QCOMPARE(change(*strategy, file, Inactive), 0);
    QVERIFY(!home.isListed(file));
    QVERIFY(home.isListed(twin));
    QCOMPARE(activity(*strategy, twin), int(PermanentlyActive));
}

void FontconfigActivationTest::temporaryFontsLastOneSession()
{
    PrivateFonts home;
    const QString outside = home.addFont(QStringLiteral("lib/outside.ttf"), 0);
    const QString inside = home.addFont(QStringLiteral("sys/inside.ttf"), 1);
    for (const QString& file : {outside, inside})
        QCOMPARE(change(*home.makeStrategy(), file, TemporarilyActive), 0);
    {
        const auto restarted = home.makeStrategy();
        for (const QString& file : {outside, inside}) {
            QCOMPARE(activity(*restarted, file), int(TemporarilyActive));
            QVERIFY(home.isListed(file));
        }
        const QSettings stored(home.path(QStringLiteral("settings/tempactive.ini")), QSettings::IniFormat);
        QCOMPARE(stored.value(QStringLiteral("UniqueSessionId")).toByteArray(), home.session().id());
        QCOMPARE(stored.value(QStringLiteral("TempActiveFonts")).toStringList(), QStringList({outside, inside}));
    }
    home.startNewSession();
    const auto next = home.makeStrategy();
    for (const QString& file : {outside, inside}) {
        QVERIFY(!home.isListed(file));
        QCOMPARE(activity(*next, file), int(Inactive));
    }
    QVERIFY(!QSettings(home.path(QStringLiteral("settings/tempactive.ini")), QSettings::IniFormat)
                 .contains(QStringLiteral("TempActiveFonts")));
    QCOMPARE(change(*next, inside, TemporarilyActive), 0);
    QVERIFY(home.isListed(inside));
}

void FontconfigActivationTest::sessionsAreToldApart()
{
    QTemporaryDir folder;
    const QString runtime = folder.filePath(QStringLiteral("run"));
    const LogonSession first = LogonSession::open(runtime, folder.path(), "1");
    QCOMPARE(first.id().size(), 16);
    QCOMPARE(LogonSession::open(runtime, folder.path(), "2").id(), first.id());

    // Without a runtime folder the session lasts until the machine starts anew.
    const LogonSession fallback = LogonSession::open({}, folder.path(), "1");
    QVERIFY(fallback.isValid());
    QCOMPARE(QFileInfo(fallback.folder() + QStringLiteral("/..")).permissions() & 0x0077, QFile::Permissions());
    writeFile(fallback.folder() + QStringLiteral("/fonts/00/x"), "x");
    QCOMPARE(LogonSession::open({}, folder.path(), "1").id(), fallback.id());
    QVERIFY(LogonSession::open({}, folder.path(), "2").id() != fallback.id());
    QVERIFY(!QFile::exists(fallback.folder() + QStringLiteral("/fonts/00/x")));

    // A link planted in the shared temporary folder is not followed.
    QTemporaryDir shared;
    const QString planted = QDir(shared.path()).filePath(QFileInfo(QFileInfo(fallback.folder()).path()).fileName());
    QVERIFY(QFile::link(folder.path(), planted));
    QVERIFY(!LogonSession::open({}, shared.path(), "1").isValid());
}

void FontconfigActivationTest::fontsOfALinkedFolderGoByTheirOwnName()
{
    PrivateFonts home;
    const QString file = home.addFont(QStringLiteral("lib/collection/a.ttf"));
    QVERIFY(QFile::link(home.path(QStringLiteral("lib/collection")), home.path(QStringLiteral("data/fonts/linked"))));
    const auto strategy = home.makeStrategy();
    QCOMPARE(activity(*strategy, file), int(PermanentlyActive));
    for (const ActivityType type : {Inactive, TemporarilyActive, PermanentlyActive, Inactive}) {
        QCOMPARE(change(*strategy, file, type), 0);
        QCOMPARE(activity(*strategy, file), int(type));
        QCOMPARE(home.listedFaces(), type == Inactive ? 0 : 1);
    }
    QCOMPARE(strategy->activityReason(file).kind, FontActivityReason::RejectedByUs);
}

void FontconfigActivationTest::refusalsChangeNothing()
{
    PrivateFonts home;
    const QString good = home.addFont(QStringLiteral("lib/good.ttf"));
    const QString broken = home.path(QStringLiteral("lib/broken.ttf"));
    writeFile(broken, "no font at all");
    const QString text = home.path(QStringLiteral("lib/notes.txt"));
    writeFile(text, "notes");
    const auto strategy = home.makeStrategy();
    const QString gone = home.path(QStringLiteral("lib/gone.ttf"));
    for (const QString& file : {broken, text, gone}) {
        QCOMPARE(change(*strategy, file, PermanentlyActive), int(FontManagerStrategyInterface::RegistrationFailed));
        QCOMPARE(change(*strategy, file, TemporarilyActive), int(FontManagerStrategyInterface::RegistrationFailed));
        QCOMPARE(activity(*strategy, file), int(Inactive));
        QCOMPARE(change(*strategy, file, Inactive), 0);
    }
    QCOMPARE(strategy->activityReason(broken).kind, FontActivityReason::NotReadable);
    QCOMPARE(strategy->activityReason(gone).kind, FontActivityReason::Missing);

    // One bad font does not stop a batch.
    strategy->beginBatch();
    for (const QString& file : {good, broken})
        QCOMPARE(strategy->activatePermanently(file, {file}).value(file), 0);
    const QHash<QString, int> failed = strategy->endBatch();
    QCOMPARE(failed, (QHash<QString, int>{{broken, FontManagerStrategyInterface::RegistrationFailed}}));
    QVERIFY(home.isListed(good));
    QCOMPARE(QDir(home.places().placed + QStringLiteral("/00")).entryList(QDir::Files).size(), 1);
}

void FontconfigActivationTest::rulesOfOthersAreRefusalsThatNameThem()
{
    PrivateFonts home;
    const QString hidden = home.addFont(QStringLiteral("sys/hidden/a.ttf"), 0);
    const QString other = home.path(QStringLiteral("config/fontconfig/conf.d/10-other.conf"));
    writeFile(other, "<fontconfig><selectfont><rejectfont><glob>*/sys/hidden</glob><pattern><patelt name=\"family\">"
                     "<string>DejaVu Math TeX Gyre</string></patelt></pattern></rejectfont></selectfont></fontconfig>");
    const auto strategy = home.makeStrategy();
    QVERIFY(!home.isListed(hidden));
    QVERIFY(strategy->installedFontFiles().contains(hidden));
    const FontActivityReason reason = strategy->activityReason(hidden);
    QCOMPARE(reason.kind, FontActivityReason::RejectedByOtherTool);
    QCOMPARE(reason.otherFile, other);
    QVERIFY(reason.text.contains(other));
    QCOMPARE(change(*strategy, hidden, PermanentlyActive), 1);

    // A file of ours is hidden by the same rule, and taken back.
    const QString outside = home.addFont(QStringLiteral("lib/b.ttf"), 0);
    QCOMPARE(change(*strategy, outside, PermanentlyActive), 1);
    QCOMPARE(activity(*strategy, outside), int(Inactive));
    QVERIFY(!QDir(home.places().placed).exists(QStringLiteral("00")));
}

void FontconfigActivationTest::unwritablePlacesAreRefusals()
{
    PrivateFonts home;
    const QString outside = home.addFont(QStringLiteral("lib/outside.ttf"), 0);
    const QString inside = home.addFont(QStringLiteral("sys/inside.ttf"), 1);
    // A file where a folder has to be: no user, the administrator neither, can write below it.
    writeFile(home.path(QStringLiteral("config/fontconfig")), "in the way");
    writeFile(home.path(QStringLiteral("data/fonts/kerval")), "in the way");
    writeFile(home.path(QStringLiteral("data/fonts/kerval-session")), "in the way");
    const auto strategy = home.makeStrategy();
    QCOMPARE(change(*strategy, outside, PermanentlyActive), 1);
    QCOMPARE(change(*strategy, outside, TemporarilyActive), 1);
    QCOMPARE(change(*strategy, inside, Inactive), 1);
    QCOMPARE(change(*strategy, inside, TemporarilyActive), 1);
    QCOMPARE(activity(*strategy, outside), int(Inactive));
    QCOMPARE(activity(*strategy, inside), int(PermanentlyActive));
    QVERIFY(home.isListed(inside));
    QVERIFY(!home.isListed(outside));
    QCOMPARE(readFile(home.path(QStringLiteral("config/fontconfig"))), QByteArray("in the way"));
}

void FontconfigActivationTest::aThousandFontsTakeOneBatch()
{
    PrivateFonts home;
    QStringList files;
    for (int i = 0; i < 1000; ++i)
        files.append(home.addFont(QStringLiteral("lib/%1.ttf").arg(i), i));
    const auto strategy = home.makeStrategy();
    for (const ActivityType type : {PermanentlyActive, TemporarilyActive, Inactive}) {
        strategy->beginBatch();
        for (const QString& file : qAsConst(files)) {
            if (type == PermanentlyActive)
                strategy->activatePermanently(file, {file});
            else if (type == TemporarilyActive)
                strategy->activateTemporarily(file, {file});
            else
                strategy->deactivate(file, {file});
        }
        QVERIFY(strategy->endBatch().isEmpty());
        strategy->notifyFontChange();
        QCOMPARE(home.listedFaces(), type == Inactive ? 0 : 1000);
        QCOMPARE(strategy->activeFonts().size(), type == Inactive ? 0 : 1000);
    }
    QCOMPARE(QDir(home.places().placed).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
}

void FontconfigActivationTest::changesByOthersAreAnnouncedOnce()
{
    PrivateFonts home;
    const QString placed = home.addFont(QStringLiteral("lib/placed.ttf"), 3);
    SystemFontManager manager(home.makeStrategy(), nullptr);
    // Queued, as receivers are to take it: a spy would count on the thread that emits.
    int changes = 0;
    connect(
        &manager, &SystemFontManager::activeFontsChanged, this, [&changes] { ++changes; }, Qt::QueuedConnection);
    const auto disconnected = qScopeGuard([&] { manager.disconnect(this); });
    const auto has = [&manager](const QString& file) {
        return manager.activeFonts().contains(SystemFontDescriptor(file));
    };

    // Copied in at once, and written slowly.
    const QString copied = home.addFont(QStringLiteral("data/fonts/new folder/copied.ttf"), 0);
    QTRY_VERIFY_WITH_TIMEOUT(has(copied), 2000);
    const QByteArray content = readFile(copied);
    QFile slow(home.path(QStringLiteral("sys/slow.ttf")));
    QVERIFY(slow.open(QIODevice::WriteOnly));
    slow.write(content.left(1000));
    slow.flush();
    QTest::qWait(0);
    slow.write(content.mid(1000));
    slow.close();
    QTRY_VERIFY_WITH_TIMEOUT(has(slow.fileName()), 2000);

    // A change of ours is announced after its batch, not during it.
    QTRY_VERIFY(changes >= 2);
    changes = 0;
    {
        SystemFontManager::Batch batch(&manager);
        manager.activatePermanently(placed, {placed});
        QVERIFY(batch.finish().isEmpty());
    }
    manager.notifyFontChange();
    QTRY_COMPARE(changes, 1);
    QVERIFY(has(placed));

    // A file of ours that is deleted by hand.
    const QDir own(home.places().placed + QStringLiteral("/00"));
    QCOMPARE(own.entryList(QDir::Files).size(), 1);
    QVERIFY(QFile::remove(own.filePath(own.entryList(QDir::Files).constFirst())));
    QTRY_VERIFY_WITH_TIMEOUT(!has(placed), 2000);

    // A rule that another tool adds.
    writeFile(home.path(QStringLiteral("config/fontconfig/conf.d/10-other.conf")),
              "<fontconfig><selectfont><rejectfont><glob>*/slow.ttf</glob></rejectfont></selectfont></fontconfig>");
    QTRY_VERIFY_WITH_TIMEOUT(!has(slow.fileName()), 2000);
}

void FontconfigActivationTest::filesOfTheUserStayAsTheyAre()
{
    PrivateFonts home;
    const QString file = home.addFont(QStringLiteral("sys/a.ttf"));
    const QString rules = home.path(QStringLiteral("config/fontconfig/conf.d/50-mine.conf"));
    const QString broken = home.path(QStringLiteral("config/fontconfig/fonts.conf"));
    writeFile(rules, "<fontconfig><match target=\"pattern\"></match></fontconfig>\r\n");
    writeFile(broken, "<fontconfig><dir>unfinished");
    const auto strategy = home.makeStrategy();
    for (const ActivityType type : {Inactive, TemporarilyActive, PermanentlyActive, Inactive}) {
        QCOMPARE(change(*strategy, file, type), 0);
        QCOMPARE(home.isListed(file), type != Inactive);
    }
    QCOMPARE(readFile(rules), QByteArray("<fontconfig><match target=\"pattern\"></match></fontconfig>\r\n"));
    QCOMPARE(readFile(broken), QByteArray("<fontconfig><dir>unfinished"));
    QCOMPARE(change(*strategy, file, PermanentlyActive), 0);
    QCOMPARE(QDir(QFileInfo(rules).path()).entryList(QDir::Files), QStringList{QStringLiteral("50-mine.conf")});
}

void FontconfigActivationTest::editedAndBrokenRulesAreKept()
{
    PrivateFonts home;
    const QString file = home.addFont(QStringLiteral("sys/a.ttf"), 0);
    const QString other = home.addFont(QStringLiteral("sys/b.ttf"), 1);
    const QString rules = home.places().rulesFile;
    QCOMPARE(change(*home.makeStrategy(), file, Inactive), 0);
    const QByteArray written = readFile(rules);
    QVERIFY(written.contains("/sys/a.ttf"));

    // Broken: the rules come back from their second copy.
    writeFile(rules, written.left(written.size() / 2));
    {
        const auto strategy = home.makeStrategy();
        QCOMPARE(activity(*strategy, file), int(Inactive));
        QVERIFY(!home.isListed(file));
    }
    const QDir folder(QFileInfo(rules).path());
    QCOMPARE(folder.entryList({QStringLiteral("*.kept-*")}, QDir::Files).size(), 1);

    // Edited: what it says now counts, and the next change keeps it.
    QByteArray edited = readFile(rules);
    edited.replace("/sys/a.ttf", "/sys/b.ttf");
    writeFile(rules, edited);
    const auto strategy = home.makeStrategy();
    QCOMPARE(activity(*strategy, file), int(PermanentlyActive));
    QCOMPARE(activity(*strategy, other), int(Inactive));
    QCOMPARE(change(*strategy, other, PermanentlyActive), 0);
    QCOMPARE(folder.entryList({QStringLiteral("*.kept-*")}, QDir::Files).size(), 2);
    QVERIFY(home.isListed(other));

    // Deleted: nothing is switched off any more.
    QCOMPARE(change(*strategy, file, Inactive), 0);
    QVERIFY(QFile::remove(rules));
    QTRY_COMPARE(activity(*strategy, file), int(PermanentlyActive));
}

void FontconfigActivationTest::protectedFontsAreNamed()
{
    PrivateFonts home;
    home.addFont(QStringLiteral("sys/Resolved by everything.ttf"));
    const auto strategy = home.makeStrategy();
    QCOMPARE(strategy->fontsFolder(), QStringLiteral("/usr/share/fonts"));
    const QStringList names = strategy->protectedFontFiles();
    QVERIFY(names.contains(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(names.contains(QStringLiteral("Resolved by everything.ttf")));
}

KERVAL_TEST(FontconfigActivationTest)
#include "FontconfigActivationTest.moc"
