#include "tests/qtService/management/systemfm/privatefonts.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

using namespace kerval::systemfm;
using namespace kerval::testing;

namespace {

// The first sample and the family it holds.
constexpr int sample = 0;
const char family[] = "DejaVu Math TeX Gyre";

QByteArray config(const QByteArray& rules)
{
    return "<?xml version=\"1.0\"?><fontconfig>" + rules + "</fontconfig>";
}

} // namespace

class ActivityReasonTest : public QObject
{
    Q_OBJECT

private slots:
    void ownChangesAreToldApart();
    void rulesOfOthersAreNamed_data();
    void rulesOfOthersAreNamed();
    void theWinningDuplicateIsNamed();
};

void ActivityReasonTest::ownChangesAreToldApart()
{
    PrivateFonts home;
    const QString outside = home.addFont(QStringLiteral("lib/a.ttf"), 0);
    const QString inside = home.addFont(QStringLiteral("sys/b.ttf"), 1);
    const QString users = home.addFont(QStringLiteral("data/fonts/c.ttf"), 2);
    const auto strategy = home.makeStrategy();
    const auto reason = [&](const QString& file) { return strategy->activityReason(file); };
    QCOMPARE(reason(outside).kind, FontActivityReason::NotInstalled);
    QCOMPARE(reason(inside).kind, FontActivityReason::InstalledInSystem);
    QCOMPARE(reason(users).kind, FontActivityReason::InstalledByUser);
    for (const QString& file : {outside, inside, users}) {
        change(*strategy, file, TemporarilyActive);
        QCOMPARE(reason(file).kind, FontActivityReason::PlacedForSession);
        QCOMPARE(reason(file).activityType, TemporarilyActive);
        change(*strategy, file, Inactive);
        QCOMPARE(reason(file).kind,
                 file == outside ? FontActivityReason::NotInstalled : FontActivityReason::RejectedByUs);
        change(*strategy, file, PermanentlyActive);
        QCOMPARE(reason(file).activityType, PermanentlyActive);
        QVERIFY(!reason(file).text.isEmpty());
    }
    QCOMPARE(reason(outside).kind, FontActivityReason::PlacedByUs);
}

void ActivityReasonTest::rulesOfOthersAreNamed_data()
{
    QTest::addColumn<QByteArray>("rules");
    QTest::addColumn<int>("kind");
    const QByteArray name = family;
    QTest::newRow("hidden by path") << QByteArray(
                                           "<selectfont><rejectfont><glob>*/a.ttf</glob></rejectfont></selectfont>")
                                    << int(FontActivityReason::RejectedByOtherTool);
    QTest::newRow("hidden by family") << "<selectfont><rejectfont><pattern><patelt name=\"family\"><string>" + name +
                                             "</string></patelt></pattern></rejectfont></selectfont>"
                                      << int(FontActivityReason::RejectedByOtherTool);
    QTest::newRow("hidden with its folder")
        << QByteArray("<selectfont><rejectfont><glob>*/sys/inner</glob></rejectfont></selectfont>")
        << int(FontActivityReason::RejectedByOtherTool);
    QTest::newRow("another family is answered")
        << "<match target=\"pattern\"><test name=\"family\"><string>" + name +
               "</string></test><edit name=\"family\" mode=\"assign\" binding=\"strong\"><string>Other</string>"
               "</edit></match>"
        << int(FontActivityReason::RenamedByOtherTool);
    QTest::newRow("renamed when it is read")
        << "<match target=\"scan\"><test name=\"family\"><string>" + name +
               "</string></test><edit name=\"family\" mode=\"assign\"><string>Other</string></edit></match>"
        << int(FontActivityReason::RenamedByOtherTool);
    QTest::newRow("a preference renames nothing")
        << "<alias><family>" + name + "</family><accept><family>Other</family></accept></alias>"
        << int(FontActivityReason::InstalledInSystem);
}

void ActivityReasonTest::rulesOfOthersAreNamed()
{
    QFETCH(QByteArray, rules);
    QFETCH(int, kind);
    PrivateFonts home;
    const QString file = home.addFont(QStringLiteral("sys/inner/a.ttf"), sample);
    const QString other = home.path(QStringLiteral("config/fontconfig/conf.d/10-other.conf"));
    writeFile(home.path(QStringLiteral("config/fontconfig/conf.d/05-harmless.conf")),
              config("<selectfont><rejectfont><glob>/nowhere/*</glob></rejectfont></selectfont>"));
    writeFile(other, config(rules));
    const auto strategy = home.makeStrategy();
    const FontActivityReason reason = strategy->activityReason(file);
    QCOMPARE(int(reason.kind), kind);
    QCOMPARE(reason.activityType, kind == FontActivityReason::RejectedByOtherTool ? Inactive : PermanentlyActive);
    if (kind != FontActivityReason::InstalledInSystem) {
        QCOMPARE(reason.otherFile, other);
        QVERIFY(reason.text.contains(other));
    }
}

void ActivityReasonTest::theWinningDuplicateIsNamed()
{
    PrivateFonts home;
    const QStringList files{home.addFont(QStringLiteral("sys/a.ttf"), sample),
                            home.addFont(QStringLiteral("lib/b.ttf"), sample)};
    const auto strategy = home.makeStrategy();
    change(*strategy, files.at(1), PermanentlyActive);
    QCOMPARE(home.listedFaces(), 2);
    // Which of the two is fontconfig's to say.
    const bool firstWins = home.matched(QLatin1String(family)) == files.at(0);
    const QString& winner = files.at(firstWins ? 0 : 1);
    const FontActivityReason loser = strategy->activityReason(files.at(firstWins ? 1 : 0));
    QCOMPARE(loser.kind, FontActivityReason::DuplicateWins);
    QCOMPARE(loser.otherFile, winner);
    QVERIFY(strategy->activityReason(winner).kind != FontActivityReason::DuplicateWins);
}

KERVAL_TEST(ActivityReasonTest)
#include "ActivityReasonTest.moc"
