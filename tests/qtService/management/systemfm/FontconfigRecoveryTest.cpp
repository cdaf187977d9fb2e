#include "qtService/app/core/PathCodec.h"
#include "qtService/management/systemfm/PlacedFonts.h"
#include "tests/qtService/management/systemfm/privatefonts.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <sys/resource.h>

#include <csignal>

using namespace kerval::systemfm;
using namespace kerval::testing;

// What a kill between two steps leaves behind, and what else may meet a start: files, rules and answers agree again.
class FontconfigRecoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.reset(new PrivateFonts); }
    void cleanup() { m_home.reset(); }
    void aFontNotedButNotMadeIsInactive();
    void aHalfMadePairIsCompleted();
    void aFileAndALinkOfOneFontLeaveTheFile();
    void aLinkBesideAFoundFontGoes();
    void aRuleWithoutLinkIsInactive();
    void strayFilesAreClearedAndLastCopiesKept();
    void aTornIndexLineCostsOnlyItself();
    void fontsWhoseFileIsGoneAreCleared();
    void aReplacedFontIsRenewed();
    void aFullDiskRefusesAndHarmsNothing();
    void theIndexDoesNotGrowForever();

private:
    // Files, what programs see and what is answered tell the same.
    void verifyAgreement(const QString& file, ActivityType expected)
    {
        const auto strategy = m_home->makeStrategy();
        QCOMPARE(activity(*strategy, file), int(expected));
        QCOMPARE(m_home->isListed(file), expected != Inactive);
        QCOMPARE(m_home->listedFaces(), expected != Inactive ? 1 : 0);
        QCOMPARE(change(*strategy, file, PermanentlyActive), 0);
        QCOMPARE(change(*strategy, file, Inactive), 0);
        QCOMPARE(m_home->listedFaces(), 0);
    }
    void set(const QString& file, ActivityType type) { QCOMPARE(change(*m_home->makeStrategy(), file, type), 0); }
    QStringList placedFiles() const
    {
        const QDir folder(m_home->places().placed + QStringLiteral("/00"));
        QStringList files;
        const QStringList names = folder.entryList(QDir::Files);
        for (const QString& name : names)
            files.append(folder.filePath(name));
        return files;
    }

    QScopedPointer<PrivateFonts> m_home;
};

void FontconfigRecoveryTest::aFontNotedButNotMadeIsInactive()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"));
    PlacedFonts placed(m_home->places());
    QVERIFY(placed.note({file}));
    verifyAgreement(file, Inactive);
}

void FontconfigRecoveryTest::aHalfMadePairIsCompleted()
{
    const QString file = m_home->addType1(QStringLiteral("lib/kite.pfm"));
    set(file, PermanentlyActive);
    QCOMPARE(placedFiles().size(), 2);
    QVERIFY(QFile::remove(placedFiles().filter(QStringLiteral(".pfm")).constFirst()));
    QCOMPARE(activity(*m_home->makeStrategy(), file), int(PermanentlyActive));
    QCOMPARE(placedFiles().size(), 2);
    QVERIFY(QFile::remove(placedFiles().filter(QStringLiteral(".pfb")).constFirst()));
    verifyAgreement(file, Inactive);
    QVERIFY(placedFiles().isEmpty());
}

void FontconfigRecoveryTest::aFileAndALinkOfOneFontLeaveTheFile()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"));
    set(file, TemporarilyActive);
    PlacedFonts placed(m_home->places());
    QVERIFY(placed.note({file}) && placed.place(file));
    QCOMPARE(m_home->listedFaces(), 2);
    verifyAgreement(file, PermanentlyActive);
}

void FontconfigRecoveryTest::aLinkBesideAFoundFontGoes()
{
    const QString file = m_home->addFont(QStringLiteral("sys/a.ttf"));
    set(file, TemporarilyActive);
    QVERIFY(QFile::remove(m_home->places().rulesFile));
    QCOMPARE(m_home->listedFaces(), 2);
    verifyAgreement(file, PermanentlyActive);
}

void FontconfigRecoveryTest::aRuleWithoutLinkIsInactive()
{
    const QString file = m_home->addFont(QStringLiteral("sys/a.ttf"));
    set(file, TemporarilyActive);
    QDir(m_home->path(QStringLiteral("run/kerval/fonts/00"))).removeRecursively();
    verifyAgreement(file, Inactive);
}

void FontconfigRecoveryTest::strayFilesAreClearedAndLastCopiesKept()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"));
    set(file, PermanentlyActive);
    const QString own = placedFiles().constFirst();
    const QString folder = QFileInfo(own).path();
    writeFile(folder + QStringLiteral("/.half.ttf.part"), "half");
    const QString last = folder + QStringLiteral("/0123.ttf");
    QVERIFY(QFile::copy(file, last));
    QVERIFY(QFile::remove(m_home->path(QStringLiteral("settings/permactive.ini"))));
    verifyAgreement(file, Inactive);
    QVERIFY(!QDir(folder).exists());
    QCOMPARE(readFile(m_home->path(QStringLiteral("settings/unclaimed-fonts/0123.ttf"))), readFile(file));
}

void FontconfigRecoveryTest::aTornIndexLineCostsOnlyItself()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"), 0);
    const QString other = m_home->addFont(QStringLiteral("lib/b.ttf"), 1);
    set(file, PermanentlyActive);
    QFile index(m_home->path(QStringLiteral("settings/permactive.ini")));
    QVERIFY(index.open(QIODevice::Append));
    index.write("01\\torn.ttf=0x2f68");
    index.close();
    set(other, PermanentlyActive);
    const auto strategy = m_home->makeStrategy();
    QCOMPARE(activity(*strategy, file), int(PermanentlyActive));
    QCOMPARE(activity(*strategy, other), int(PermanentlyActive));
    QCOMPARE(strategy->activeFonts().size(), 2);
    QCOMPARE(m_home->listedFaces(), 2);
}

void FontconfigRecoveryTest::fontsWhoseFileIsGoneAreCleared()
{
    const QString placed = m_home->addFont(QStringLiteral("lib/placed.ttf"), 0);
    const QString linked = m_home->addFont(QStringLiteral("lib/linked.ttf"), 1);
    const QString rejected = m_home->addFont(QStringLiteral("sys/rejected.ttf"), 2);
    set(placed, PermanentlyActive);
    set(linked, TemporarilyActive);
    set(rejected, Inactive);
    for (const QString& file : {placed, linked, rejected})
        QVERIFY(QFile::remove(file));
    const auto strategy = m_home->makeStrategy();
    QVERIFY(strategy->activeFonts().isEmpty());
    QCOMPARE(m_home->listedFaces(), 0);
    QVERIFY(placedFiles().isEmpty());
    QVERIFY(!QFile::exists(m_home->places().rulesFile));
}

void FontconfigRecoveryTest::aReplacedFontIsRenewed()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"), 0);
    set(file, PermanentlyActive);
    m_home->addFont(QStringLiteral("lib/a.ttf"), 1);
    QVERIFY(!m_home->isListed(file));
    verifyAgreement(file, PermanentlyActive);
}

// Every write fails after some bytes; whatever was there is whole afterwards.
void FontconfigRecoveryTest::aFullDiskRefusesAndHarmsNothing()
{
    QStringList files;
    for (int i = 0; i < 4; ++i)
        files.append(m_home->addFont(QStringLiteral("sys/%1.ttf").arg(i), i));
    const QString outside = m_home->addFont(QStringLiteral("lib/outside.ttf"), 5);
    const auto strategy = m_home->makeStrategy();
    QCOMPARE(change(*strategy, files.at(0), Inactive), 0);
    const QByteArray rules = readFile(m_home->places().rulesFile);

    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    struct rlimit limit = before;
    limit.rlim_cur = 100;
    setrlimit(RLIMIT_FSIZE, &limit);
    const int rejecting = change(*strategy, files.at(1), Inactive);
    const int placing = change(*strategy, outside, PermanentlyActive);
    setrlimit(RLIMIT_FSIZE, &before);

    QCOMPARE(rejecting, 1);
    QCOMPARE(placing, 1);
    QCOMPARE(readFile(m_home->places().rulesFile), rules);
    QCOMPARE(activity(*strategy, files.at(1)), int(PermanentlyActive));
    QVERIFY(m_home->isListed(files.at(1)));
    QVERIFY(!m_home->isListed(files.at(0)));
    QVERIFY(!m_home->isListed(outside));
    QCOMPARE(change(*strategy, outside, PermanentlyActive), 0);
    QVERIFY(m_home->isListed(outside));
}

void FontconfigRecoveryTest::theIndexDoesNotGrowForever()
{
    const QString file = m_home->addFont(QStringLiteral("lib/a.ttf"));
    PlacedFonts placed(m_home->places());
    for (int i = 0; i < 100; ++i) {
        QVERIFY(placed.note({file}) && placed.place(file));
        placed.remove({file});
    }
    QVERIFY(placed.note({file}) && placed.place(file));
    verifyAgreement(file, PermanentlyActive);
    QVERIFY(readFile(m_home->path(QStringLiteral("settings/permactive.ini"))).count('\n') < 10);
}

KERVAL_TEST(FontconfigRecoveryTest)
#include "FontconfigRecoveryTest.moc"
