#include "tests/helpers/AdderRun.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

// What the adder program says about fonts whose content is known (tests/data/fonts/make-fonts).
class AdderReportTest : public QObject
{
    Q_OBJECT

private slots:
    void everyItemOfTheCatalogueIsThere();
    void values_data();
    void values();
    void namesAgreeWithFontconfig();
    void hashIsThatOfTheNamedFile();
    void facesOfACollectionDiffer();
    void lettersHaveVectors();
    void sizesAgreeInARow();
    void sideFileIsRead_data();
    void sideFileIsRead();
    void strangeSideFilesAreIgnored();
    void strangeFileNamesComeBack();

private:
    void checkSideFile(const QDateTime& downloaded, const QString& source, const char* codec);
};

void AdderReportTest::everyItemOfTheCatalogueIsThere()
{
    const AdderRun run = AdderRun::of(testFont(QStringLiteral("typographic-names.ttf")));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.complaint, QByteArray());
    const char* const keys[] = {"file_name",
                                "original_file_name",
                                "face_name",
                                "style",
                                "menu_family_name",
                                "menu_style_name",
                                "full_name",
                                "ps_name",
                                "sfnt_ps_name",
                                "filehash",
                                "bold",
                                "italic",
                                "deleted",
                                "mono",
                                "smallcaps",
                                "ligature",
                                "version",
                                "vendor",
                                "vendor_url",
                                "designer",
                                "designer_url",
                                "description",
                                "trademark",
                                "other_info",
                                "format",
                                "foundry",
                                "added",
                                "used",
                                "downloaded",
                                "license",
                                "license_url",
                                "other_info2",
                                "style_field",
                                "serif_style",
                                "hwi",
                                "hhe",
                                "hwe",
                                "supported_subsets",
                                "italic_angle",
                                "specific_width",
                                "specific_height",
                                "latin_metrics_correction",
                                "full_metrics_correction",
                                "sc_all",
                                "sc_body",
                                "sc_head",
                                "face_index",
                                "activated",
                                "deactivated",
                                "last_seen",
                                "online_source",
                                "online_id",
                                "is_purchased"};
    for (const char* key : keys)
        QVERIFY2(run.information.contains(QLatin1String(key)), key);
    QCOMPARE(run.information.size(), static_cast<int>(std::size(keys)));
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    QVERIFY(qAbs(run.information.value(QStringLiteral("added")).toLongLong() - now) < 600);
    QCOMPARE(run.information.value(QStringLiteral("added")), run.information.value(QStringLiteral("last_seen")));
}

void AdderReportTest::values_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* font, const char* key, const char* value) {
        QTest::addRow("%s %s", font, key)
            << QString::fromLatin1(font) << QString::fromLatin1(key) << QString::fromUtf8(value);
    };
    row("typographic-names.ttf", "face_name", "Kite");
    row("typographic-names.ttf", "style", "Semibold Italic");
    row("typographic-names.ttf", "menu_family_name", "Kite Semibold");
    row("typographic-names.ttf", "menu_style_name", "Italic");
    row("typographic-names.ttf", "full_name", "Kite Semibold Italic");
    row("typographic-names.ttf", "ps_name", "Kite-SemiboldItalic");
    row("typographic-names.ttf", "sfnt_ps_name", "Kite-SemiboldItalic");
    row("typographic-names.ttf", "version", "Version 2.500");
    row("typographic-names.ttf", "vendor", "Google");
    row("typographic-names.ttf", "foundry", "Google");
    row("typographic-names.ttf", "vendor_url", "http://vendor.example/");
    row("typographic-names.ttf", "designer", "Ada Draw");
    row("typographic-names.ttf", "designer_url", "http://designer.example/");
    row("typographic-names.ttf", "description", "A font of\nrectangles");
    row("typographic-names.ttf", "trademark", "Kite is a trademark");
    row("typographic-names.ttf", "other_info", "Copyright 2020 The Kite Authors");
    row("typographic-names.ttf", "license", "Free to use");
    row("typographic-names.ttf", "license_url", "http://license.example/");
    row("typographic-names.ttf", "format", "TrueType");
    row("typographic-names.ttf", "bold", "0");
    row("typographic-names.ttf", "italic", "1");
    row("typographic-names.ttf", "mono", "0");
    row("typographic-names.ttf", "ligature", "0");
    row("typographic-names.ttf", "smallcaps", "0");
    row("typographic-names.ttf", "supported_subsets", "0");
    row("typographic-names.ttf", "deleted", "0");
    row("typographic-names.ttf", "activated", "0");
    row("typographic-names.ttf", "online_id", "0");

    row("japanese-names-only.ttf", "face_name", "凧");
    row("japanese-names-only.ttf", "full_name", "凧 標準");
    row("japanese-names-only.ttf", "vendor", "凧工房");
    row("japanese-names-only.ttf", "foundry", "ZZZZ");
    row("shift-jis-names.ttf", "face_name", "凧");
    row("shift-jis-names.ttf", "style", "Regular");
    row("macintosh-names-only.ttf", "face_name", "Café");
    row("macintosh-names-only.ttf", "foundry", "Café Works");
    row("no-names.ttf", "face_name", "no-names");
    row("no-names.ttf", "style", "Regular");
    row("no-names.ttf", "ps_name", "no-names");
    row("no-names.ttf", "foundry", "");

    row("separators-in-names.ttf", "face_name", "A¦:|face_name:Stolen¦:::::|");
    row("separators-in-names.ttf", "style", "Bold|");
    row("separators-in-names.ttf", "license", "ab\nc\td");
    row("names-hidden-from-systems.ttf", "face_name", "Kite Web");
    row("names-hidden-from-systems.ttf", "style", "Regular");
    row("names-hidden-from-systems.ttf", "ps_name", "Kite-Web");

    row("fixed-pitch-unsaid.ttf", "mono", "1");
    row("fixed-pitch-unsaid.ttf", "bold", "1");
    row("fixed-pitch-claimed.ttf", "mono", "0");
    row("digits-of-one-width.ttf", "mono", "0");
    row("ligatures.otf", "format", "OpenType");
    row("ligatures.otf", "ligature", "1");
    row("ligatures.otf", "smallcaps", "1");
    row("blocks.ttf", "supported_subsets", "0,7,29,33");

    row("kite.pfm", "format", "Type 1");
    row("kite.pfm", "face_name", "Kite");
    row("kite.pfm", "style", "Bold Italic");
    row("kite.pfm", "menu_family_name", "Kite Menu");
    row("kite.pfm", "menu_style_name", "Bold Italic");
    row("kite.pfm", "full_name", "Kite Bold Italic");
    row("kite.pfm", "ps_name", "Kite-BoldItalic");
    row("kite.pfm", "sfnt_ps_name", "");
    row("kite.pfm", "foundry", "Adobe");
    row("kite.pfm", "version", "001.005");
    row("kite.pfb", "menu_family_name", "Kite Menu");
}

void AdderReportTest::values()
{
    QFETCH(QString, font);
    QFETCH(QString, key);
    QFETCH(QString, value);
    static QHash<QString, AdderRun> runs;
    if (!runs.contains(font))
        runs.insert(font, AdderRun::of(testFont(font)));
    QCOMPARE(runs[font].exitCode, 0);
    QCOMPARE(runs[font].information.value(key, QStringLiteral("(missing)")), value);
}

// Fonts of the machine, so that names meet what real foundries write; fontconfig lists every name a face has.
void AdderReportTest::namesAgreeWithFontconfig()
{
    QProcess scan;
    scan.start(
        QStringLiteral("fc-scan"),
        {QStringLiteral("--format"),
         QStringLiteral("%{file}\t%{index}\t%{family}\t%{style}\t%{fullname}\t%{postscriptname}\n"),
         QStringLiteral("/usr/share/fonts/truetype/dejavu"), QStringLiteral("/usr/share/fonts/truetype/liberation"),
         QStringLiteral("/usr/share/fonts/truetype/freefont"), QStringLiteral("/usr/share/fonts/opentype/cantarell")});
    QVERIFY(scan.waitForFinished());
    int compared = 0;
    for (const QString& line :
         QString::fromUtf8(scan.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        QCOMPARE(fields.size(), 6);
        if (fields[1] != QLatin1String("0"))
            continue;
        const AdderRun run = AdderRun::of(fields[0]);
        const char* const keys[] = {"face_name", "style", "full_name", "ps_name"};
        for (int i = 0; i < 4; ++i) {
            const QString ours = run.information.value(QLatin1String(keys[i]));
            const QString theirs = QString(fields[2 + i]).remove(QLatin1Char('\\'));
            QVERIFY2(theirs.split(QLatin1Char(',')).contains(ours),
                     qPrintable(fields[0] + QStringLiteral(": ") + ours));
        }
        ++compared;
    }
    QVERIFY2(compared > 8, "the fonts of the test packages are missing");
}

void AdderReportTest::hashIsThatOfTheNamedFile()
{
    for (const QString& name : {QStringLiteral("ligatures.otf"), QStringLiteral("kite.pfm")}) {
        const QByteArray content = kerval::testing::readFile(testFont(name));
        const QByteArray hash = QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex();
        QCOMPARE(AdderRun::of(testFont(name)).information.value(QStringLiteral("filehash")), QString::fromLatin1(hash));
    }
}

void AdderReportTest::facesOfACollectionDiffer()
{
    const QString collection = testFont(QStringLiteral("two-faces.ttc"));
    const AdderRun first = AdderRun::of(collection, 0);
    const AdderRun second = AdderRun::of(collection, 1);
    QCOMPARE(first.information.value(QStringLiteral("face_name")), QStringLiteral("Kite"));
    QCOMPARE(second.information.value(QStringLiteral("face_name")), QStringLiteral("Fixed"));
    QCOMPARE(second.information.value(QStringLiteral("face_index")), QStringLiteral("1"));
    QCOMPARE(first.information.value(QStringLiteral("filehash")), second.information.value(QStringLiteral("filehash")));
}

void AdderReportTest::lettersHaveVectors()
{
    const QByteArray blank(244, '\0');
    const AdderRun whole = AdderRun::of(testFont(QStringLiteral("typographic-names.ttf")));
    QCOMPARE(whole.features.size(), 62);
    for (const char letter : QByteArray("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"))
        QVERIFY2(whole.features.value(letter, blank) != blank, &letter);
    const AdderRun without = AdderRun::of(testFont(QStringLiteral("blocks.ttf")));
    QCOMPARE(without.features.size(), 62);
    QCOMPARE(without.features.value('a'), blank);
}

void AdderReportTest::sizesAgreeInARow()
{
    const auto correction = [](const char* font, const char* key) {
        QVector<double> factors;
        const QString text = AdderRun::of(testFont(QString::fromLatin1(font))).information.value(QLatin1String(key));
        for (const QString& part : text.split(QLatin1Char(';')))
            factors.append(part.toDouble());
        factors.resize(3);
        return factors;
    };
    // Heights of the lower-case letters and of the capitals as the fonts were made, in parts of the em.
    const QVector<double> middle = correction("typographic-names.ttf", "latin_metrics_correction");
    const QVector<double> low = correction("low-x-height.ttf", "latin_metrics_correction");
    const QVector<double> capitals = correction("capitals-only.ttf", "latin_metrics_correction");
    const QVector<double> foreign = correction("blocks.ttf", "full_metrics_correction");
    // As tall as the row allows: capitals of 0.8 em keep the low letters from reaching the common height.
    QVERIFY(low[0] > middle[0]);
    QVERIFY(low[0] * 0.8 <= low[2] + 0.2 + 1e-4);
    QVERIFY(qAbs(capitals[0] * 0.7 - middle[0] * 0.7) < 0.05);
    QVERIFY(middle[0] * 0.5 > 0.4 && middle[0] * 0.5 < 0.5);
    // One baseline for all.
    QCOMPARE(low[2], middle[2]);
    QCOMPARE(capitals[2], middle[2]);
    QCOMPARE(foreign[2], middle[2]);
    // The widest of the 62 letters is 1.03 em wide.
    QVERIFY(qAbs(middle[1] - middle[0] * 1.03) < 1e-3);
}

void AdderReportTest::sideFileIsRead_data()
{
    QTest::addColumn<QDateTime>("downloaded");
    QTest::addColumn<QString>("source");
    QTest::newRow("local time") << QDateTime(QDate(2021, 7, 4), QTime(23, 59, 58)) << QStringLiteral("shop");
    QTest::newRow("UTC") << QDateTime(QDate(2000, 2, 29), QTime(1, 2, 3), Qt::UTC)
                         << QStringLiteral("a, b; \"c\" = d\\e");
    QTest::newRow("distance to UTC") << QDateTime(QDate(1999, 12, 31), QTime(12, 0), Qt::OffsetFromUTC, -5400)
                                     << QStringLiteral("Größe 凧 x1");
    // Its Julian day is 0x257f80 and has bytes that UTF-8 spells otherwise.
    QTest::newRow("high bytes") << QDateTime(QDate(2017, 1, 28).addDays(2000), QTime(22, 22, 22))
                                << QStringLiteral("x");
    QTest::newRow("no date") << QDateTime() << QString();
}

void AdderReportTest::sideFileIsRead()
{
    QFETCH(QDateTime, downloaded);
    QFETCH(QString, source);
    for (const char* codec : {"", "UTF-8"})
        checkSideFile(downloaded, source, codec);
}

void AdderReportTest::checkSideFile(const QDateTime& downloaded, const QString& source, const char* codec)
{
    QTemporaryDir folder;
    const QString font = folder.filePath(QStringLiteral("kite.ttf"));
    QVERIFY(QFile::copy(testFont(QStringLiteral("typographic-names.ttf")), font));
    {
        QSettings settings(font + QStringLiteral(".onlineinfo"), QSettings::IniFormat);
        if (*codec != '\0')
            settings.setIniCodec(codec);
        settings.setValue(QStringLiteral("OnlineId"), 1234567);
        settings.setValue(QStringLiteral("OnlineSource"), source);
        settings.setValue(QStringLiteral("DownloadedDate"), downloaded);
        settings.setValue(QStringLiteral("Purchased"), true);
    }
    const AdderRun run = AdderRun::of(font);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.information.value(QStringLiteral("online_id")), QStringLiteral("1234567"));
    QCOMPARE(run.information.value(QStringLiteral("online_source")), source);
    QCOMPARE(run.information.value(QStringLiteral("is_purchased")), QStringLiteral("1"));
    const qint64 expected = downloaded.isValid() ? downloaded.toSecsSinceEpoch() : 0;
    QCOMPARE(run.information.value(QStringLiteral("downloaded")).toLongLong(), expected);
}

void AdderReportTest::strangeSideFilesAreIgnored()
{
    QTemporaryDir folder;
    const QString font = folder.filePath(QStringLiteral("kite.ttf"));
    QVERIFY(QFile::copy(testFont(QStringLiteral("typographic-names.ttf")), font));
    const QString sideFile = font + QStringLiteral(".onlineinfo");
    for (const QByteArray& content :
         {QByteArray("OnlineId=9999999999999999999999\nDownloadedDate=@DateTime(\\0\\0\\0\\x10"),
          QByteArray(1 << 20, '\\'), QByteArray("[Other]\nOnlineId=5\nPurchased=true\n=\n[\n\0\xff\n", 41)}) {
        kerval::testing::writeFile(sideFile, content);
        const AdderRun run = AdderRun::of(font);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.information.value(QStringLiteral("online_id")), QStringLiteral("0"));
        QCOMPARE(run.information.value(QStringLiteral("downloaded")), QStringLiteral("0"));
        QCOMPARE(run.information.value(QStringLiteral("is_purchased")), QStringLiteral("0"));
    }
}

void AdderReportTest::strangeFileNamesComeBack()
{
    QTemporaryDir folder;
    for (const QString& name :
         {QStringLiteral("a b'\"$(x).ttf"), QStringLiteral("Größe 凧.ttf"), QStringLiteral("-i|.ttf")}) {
        const QString font = folder.filePath(name);
        QVERIFY(QFile::copy(testFont(QStringLiteral("typographic-names.ttf")), font));
        QCOMPARE(AdderRun::of(font).information.value(QStringLiteral("file_name")), font);
    }
    // One that the report cannot carry does not break it up.
    const QString unspeakable = folder.filePath(QStringLiteral("a|:|b.ttf"));
    QVERIFY(QFile::copy(testFont(QStringLiteral("typographic-names.ttf")), unspeakable));
    QCOMPARE(AdderRun::of(unspeakable).information.value(QStringLiteral("file_name")),
             folder.filePath(QStringLiteral("a\u00a6:|b.ttf")));
}

KERVAL_TEST(AdderReportTest)

#include "AdderReportTest.moc"
