#include "tests/helpers/AdderRun.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

// Whatever the bytes: the adder program ends, by itself, with a report or with one line that says why there is none.
class AdderFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void brokenFilesAreNamed_data();
    void brokenFilesAreNamed();
    void otherThanFilesAreRefused();
    void commandLinesAreChecked_data();
    void commandLinesAreChecked();
    void crowdedNameTableIsBounded();
    void characterMapOfAllCodesIsBounded();
    void endlessWorkIsCutOff();
    void damagedFontsEndWithAnAnswer_data();
    void damagedFontsEndWithAnAnswer();
};

namespace {

bool isAnswer(const AdderRun& run)
{
    if (run.exitCode == 0)
        return run.complaint.isEmpty() && !run.information.isEmpty();
    return run.exitCode > 0 && run.output.isEmpty() && run.complaint.count('\n') == 1 && run.complaint.endsWith('\n');
}

} // namespace

void AdderFaultsTest::brokenFilesAreNamed_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<int>("face");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("empty") << QStringLiteral("empty.ttf") << 0 << QByteArray("the file is empty");
    QTest::newRow("a text") << QStringLiteral("not-a-font.ttf") << 0 << QByteArray("not a font file");
    QTest::newRow("cut") << QStringLiteral("cut-in-tables.ttf") << 0 << QByteArray("the file is cut short");
    QTest::newRow("zeroed") << QStringLiteral("zeroed-tables.ttf") << 0 << QByteArray("maps no characters");
    QTest::newRow("metrics alone") << QStringLiteral("outlines-missing.pfm") << 0 << QByteArray("outline file");
    QTest::newRow("face too many") << QStringLiteral("two-faces.ttc") << 2 << QByteArray("no such face");
    QTest::newRow("no file") << QStringLiteral("nowhere.ttf") << 0 << QByteArray("No such file");
}

void AdderFaultsTest::brokenFilesAreNamed()
{
    QFETCH(QString, font);
    QFETCH(int, face);
    QFETCH(QByteArray, reason);
    const AdderRun run = AdderRun::of(testFont(font), face);
    QCOMPARE(run.exitCode, 1);
    QVERIFY(isAnswer(run));
    QVERIFY2(run.complaint.contains(reason), run.complaint.constData());
    QVERIFY(run.complaint.contains(font.toUtf8()));
}

void AdderFaultsTest::otherThanFilesAreRefused()
{
    QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe.ttf"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& path : {pipe, folder.path(), QStringLiteral("/dev/zero")}) {
        const AdderRun run = AdderRun::of(path);
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.complaint.contains("not a regular file"));
    }
}

void AdderFaultsTest::commandLinesAreChecked_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no file") << QStringLiteral("-d stdout -g 0");
    QTest::newRow("value missing") << QStringLiteral("-d stdout -g 0 -i");
    QTest::newRow("odd digits") << QStringLiteral("-i 0x123 -d stdout -g 0");
    QTest::newRow("NUL in the name") << QStringLiteral("-i 0x2f00 -d stdout -g 0");
    QTest::newRow("face is no number") << QStringLiteral("-i 0x2f -d stdout -g one");
    QTest::newRow("negative face") << QStringLiteral("-i 0x2f -d stdout -g -1");
    QTest::newRow("named instance") << QStringLiteral("-i 0x2f -d stdout -g 65536");
    QTest::newRow("other destination") << QStringLiteral("-i 0x2f -d /etc/passwd -g 0");
    QTest::newRow("unknown switch") << QStringLiteral("-i 0x2f -x");
}

void AdderFaultsTest::commandLinesAreChecked()
{
    QFETCH(QString, line);
    const AdderRun run = AdderRun::withArguments(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(run.exitCode, 2);
    QVERIFY(isAnswer(run));
}

void AdderFaultsTest::crowdedNameTableIsBounded()
{
    const AdderRun run = AdderRun::of(testFont(QStringLiteral("names-of-64k.ttf")));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.information.value(QStringLiteral("face_name")).size(), 1024);
    QVERIFY(run.output.size() < (1 << 20));
}

void AdderFaultsTest::characterMapOfAllCodesIsBounded()
{
    const QStringList arguments{QStringLiteral("-i"), testFont(QStringLiteral("cmap-of-all-codes.ttf")),
                                QStringLiteral("-d"), QStringLiteral("stdout"),
                                QStringLiteral("-g"), QStringLiteral("0")};
    const AdderRun run = AdderRun::withArguments(arguments, 1);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.information.value(QStringLiteral("supported_subsets")).split(QLatin1Char(',')).size(), 34);
}

void AdderFaultsTest::endlessWorkIsCutOff()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return; // The program's bounds are off under the sanitizers.
#endif
    const QStringList arguments{QStringLiteral("-i"), testFont(QStringLiteral("endless-composites.ttf")),
                                QStringLiteral("-d"), QStringLiteral("stdout"),
                                QStringLiteral("-g"), QStringLiteral("0")};
    const AdderRun run = AdderRun::withArguments(arguments, 1);
    QCOMPARE(run.exitCode, 3);
    QVERIFY(isAnswer(run));
    QVERIFY(run.complaint.contains("takes too long"));
}

void AdderFaultsTest::damagedFontsEndWithAnAnswer_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<QString>("damage");
    for (const QString& font :
         {QStringLiteral("typographic-names.ttf"), QStringLiteral("ligatures.otf"), QStringLiteral("kite.pfb"),
          QStringLiteral("kite.pfm"), QStringLiteral("two-faces.ttc")})
        for (const QString& damage : {QStringLiteral("cut"), QStringLiteral("flipped"), QStringLiteral("zeroed")})
            QTest::newRow(qPrintable(font + QLatin1Char(' ') + damage)) << font << damage;
}

void AdderFaultsTest::damagedFontsEndWithAnAnswer()
{
    QFETCH(QString, font);
    QFETCH(QString, damage);
    const QByteArray whole = kerval::testing::readFile(testFont(font));
    QRandomGenerator random(static_cast<quint32>(qHash(font + damage, 0)));
    QTemporaryDir folder;
    const QString path = folder.filePath(font);
    if (font == QStringLiteral("kite.pfm"))
        kerval::testing::writeFile(folder.filePath(QStringLiteral("kite.pfb")),
                                   kerval::testing::readFile(testFont(QStringLiteral("kite.pfb"))));
    for (int round = 0; round < 30; ++round) {
        QByteArray content = whole;
        const int at = random.bounded(content.size());
        if (damage == QStringLiteral("cut"))
            content.truncate(at);
        else if (damage == QStringLiteral("zeroed"))
            content.replace(at, 64, QByteArray(qMin(64, content.size() - at), '\0'));
        for (int i = 0; damage == QStringLiteral("flipped") && i < 8; ++i)
            content[random.bounded(content.size())] = static_cast<char>(random.generate());
        kerval::testing::writeFile(path, content);
        const AdderRun run = AdderRun::of(path);
        QVERIFY2(isAnswer(run), qPrintable(QStringLiteral("round %1: exit code %2").arg(round).arg(run.exitCode)));
    }
}

KERVAL_TEST(AdderFaultsTest)

#include "AdderFaultsTest.moc"
