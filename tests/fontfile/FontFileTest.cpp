#include "fontfile/KrvFontFile.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QTemporaryDir>
#include <QtTest>

#include <thread>

#include <sys/stat.h>

using namespace kerval::testing;

namespace {

QString dejaVu()
{
    return debianFont(QStringLiteral("DejaVuSans.ttf"));
}

} // namespace

class FontFileTest : public QObject
{
    Q_OBJECT

private slots:
    void kindOfFileFollowsExtension_data();
    void kindOfFileFollowsExtension();
    void companionsShareTheNameUpToTheFirstDot();
    void blocksAreTheFixedTable();
    void opensOnlyWhatIsAFont();
    void type1IsOpenedThroughItsMetricsFile();
    void collectionsHaveTheirFacesAndNoMore();
    void namesFallBackAsAsked();
    void familyNamesOfRealFonts();
    void coverageIsSortedCountedAndTruncated();
    void symbolFontsReportShiftedCodes();
    void characterMapsAreListedAndSelected();
    void otherThreadsSeeNothing();
    void setFileMovesToAnotherFont();
    void aFileMayBeCutOffWhileItIsOpen();

private:
    QString save(const QString& name, const QByteArray& data)
    {
        const QString path = m_folder.filePath(name);
        writeFile(path, data);
        return path;
    }
    static SfntBuilder boxFont()
    {
        SfntBuilder font;
        font.mapCharacter('A', font.addGlyph(SfntBuilder::boxGlyph(50, 0, 550, 700)));
        return font;
    }

    QTemporaryDir m_folder;
};

void FontFileTest::kindOfFileFollowsExtension_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<KrvFontFile::Format>("format");
    QTest::addColumn<KrvFontFile::FileType>("type");
    QTest::newRow("capitals") << "/a/B.TTF" << KrvFontFile::FormatTtf << KrvFontFile::FileTypeTrueType;
    QTest::newRow("collection") << "b.ttc" << KrvFontFile::FormatTtc << KrvFontFile::FileTypeTrueTypeCollection;
    QTest::newRow("last extension counts") << "a.ttf.otf" << KrvFontFile::FormatOtf << KrvFontFile::FileTypeOpenType;
    QTest::newRow("Type 1 metrics") << "a.pfm" << KrvFontFile::FormatPfm << KrvFontFile::FileTypeType1;
    QTest::newRow("Type 1 outlines") << "a.Pfb" << KrvFontFile::FormatPfb << KrvFontFile::FileTypeType1;
    QTest::newRow("multiple master") << "a.mbn" << KrvFontFile::FormatMbn << KrvFontFile::FileTypeType1;
    QTest::newRow("text metrics are no font") << "a.afm" << KrvFontFile::FormatAfm << KrvFontFile::FileTypeUnknown;
    QTest::newRow("suitcase") << "a.dfont" << KrvFontFile::FormatDfont << KrvFontFile::FileTypeDfont;
    QTest::newRow("other") << "/ttf/readme" << KrvFontFile::FormatUnknown << KrvFontFile::FileTypeUnknown;
}

void FontFileTest::kindOfFileFollowsExtension()
{
    QFETCH(QString, path);
    QTEST(KrvFontFile::formatFromFileName(path), "format");
    QTEST(KrvFontFile::fileTypeFromFileName(path), "type");
}

void FontFileTest::companionsShareTheNameUpToTheFirstDot()
{
    const QString path = m_folder.filePath(QStringLiteral("100%1.old.pfm"));
    QCOMPARE(KrvFontFile::companionFileName(path, KrvFontFile::FormatPfb),
             m_folder.filePath(QStringLiteral("100%1.pfb")));
    QVERIFY(!KrvFontFile::companionFileExists(path, KrvFontFile::FormatPfb));
    const QString longer = save(QStringLiteral("100%1.old.pfb"), "x");
    QCOMPARE(KrvFontFile::companionFileName(path, KrvFontFile::FormatPfb), longer);
    save(QStringLiteral("100%1.PFB"), "x");
    QVERIFY(KrvFontFile::companionFileName(path, KrvFontFile::FormatPfb) != longer);
    QVERIFY(KrvFontFile::companionFileExists(path, KrvFontFile::FormatPfb));
    QCOMPARE(KrvFontFile::extensionForFormat(KrvFontFile::FormatUnknown), QString());
}

void FontFileTest::blocksAreTheFixedTable()
{
    QCOMPARE(KrvFontFile::unicodeBlockCount(), 34);
    QCOMPARE(KrvFontFile::unicodeBlock(15).name, QStringLiteral("Lattin Extended Additional"));
    QCOMPARE(KrvFontFile::unicodeBlock(14).first, 0x1DC0);
    QCOMPARE(KrvFontFile::unicodeBlock(33).last, 0xDFFF);
    int covered = 0;
    for (int c = 0; c <= 0xFFFF; ++c) {
        int holders = 0;
        for (const UnicodeBlock& block : KrvFontFile::unicodeBlocks())
            holders += c >= block.first && c <= block.last;
        QVERIFY2(holders <= 1, "blocks do not overlap");
        covered += holders;
    }
    QCOMPARE(covered, 0x10000 - (0x70 + 0x80 + 0x30 + 0x100 + 0x200 + 0x3B0));
}

void FontFileTest::opensOnlyWhatIsAFont()
{
    KrvFontFile font(dejaVu());
    QVERIFY(!font.isOpen());
    QCOMPARE(font.characters().size(), 0);
    QVERIFY(font.open(0));
    QVERIFY2(font.open(5), "an open face stays as it is");
    QCOMPARE(font.faceCount(), 1);
    font.close();
    QVERIFY(!font.isOpen());
    QCOMPARE(font.familyName(), QString());
    QVERIFY(font.open(0));

    const QString pipe = m_folder.filePath(QStringLiteral("pipe.ttf"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& path :
         {m_folder.filePath(QStringLiteral("missing.ttf")), m_folder.path(), pipe,
          save(QStringLiteral("empty.ttf"), QByteArray()), save(QStringLiteral("text.ttf"), "not a font"),
          save(QStringLiteral("cut.ttf"), readFile(dejaVu()).left(300))})
        QVERIFY2(!KrvFontFile(path).open(0), qPrintable(path));
    QVERIFY(!KrvFontFile(dejaVu()).open(1));
    QVERIFY(!KrvFontFile(dejaVu()).open(-1));
}

void FontFileTest::type1IsOpenedThroughItsMetricsFile()
{
    // FreeType goes by content, so a TrueType file will do as the outlines.
    const QString outlines = save(QStringLiteral("pair.pfb"), boxFont().build());
    const QString metrics = save(QStringLiteral("pair.pfm"), "metrics that FreeType cannot read");
    QVERIFY(!KrvFontFile(outlines).open(0));
    QVERIFY(KrvFontFile(metrics).open(0));
    QVERIFY(QFile::remove(outlines));
    QVERIFY(!KrvFontFile(metrics).open(0));
    QVERIFY2(KrvFontFile(save(QStringLiteral("alone.pfm"), boxFont().build())).open(0), "opened as given");
}

void FontFileTest::collectionsHaveTheirFacesAndNoMore()
{
    SfntBuilder second = boxFont();
    second.addName({3, 0x409, 1, SfntBuilder::utf16("Second")});
    const QString path =
        save(QStringLiteral("two.ttc"), SfntBuilder::buildCollection({boxFont().build(), second.build()}));
    KrvFontFile font(path);
    QVERIFY(font.open(1));
    QCOMPARE(font.faceCount(), 2);
    QCOMPARE(font.familyName(), QStringLiteral("Second"));
    QVERIFY(!KrvFontFile(path).open(2));
}

void FontFileTest::namesFallBackAsAsked()
{
    SfntBuilder macintosh = boxFont();
    macintosh.addName({1, 0, 16, "Mac Family"});
    macintosh.addName({1, 0, 6, "Post Script "});
    KrvFontFile mac(save(QStringLiteral("mac.ttf"), macintosh.build()));
    QVERIFY(mac.open(0));
    QCOMPARE(mac.sfntName(16, 3, 0x409, true), QString());
    QCOMPARE(mac.sfntName(16, 3, 0x409, false), QStringLiteral("Mac Family"));
    QCOMPARE(mac.sfntName(6, 1, 0, true), QStringLiteral("Post Script "));
    QCOMPARE(mac.sfntName(4, 1, 0, true), QString());

    SfntBuilder microsoft = boxFont();
    microsoft.addName({3, 0x407, 1, SfntBuilder::utf16("  Deutsch ")});
    microsoft.addName({3, 0x409, 2, SfntBuilder::utf16("Old")});
    microsoft.addName({3, 0x409, 2, SfntBuilder::utf16("Bold") + QByteArray("\0\0\0x", 4)});
    KrvFontFile german(save(QStringLiteral("german.ttf"), microsoft.build()));
    QVERIFY(german.open(0));
    QCOMPARE(german.sfntName(2, 3, 0x409, true), QStringLiteral("Bold"));    // the later record, cut at its NUL
    QCOMPARE(german.sfntName(1, 3, 0x999, true), QStringLiteral("Deutsch")); // languages fall back even so
    QCOMPARE(german.familyName(), QString());
}

void FontFileTest::familyNamesOfRealFonts()
{
    KrvFontFile condensed(debianFont(QStringLiteral("DejaVuSansCondensed-Bold.ttf")));
    QVERIFY(condensed.open(0));
    QCOMPARE(condensed.familyName(), QStringLiteral("DejaVu Sans"));
    QCOMPARE(condensed.familyName(true), QStringLiteral("DejaVu Sans Condensed"));
    QCOMPARE(condensed.postScriptName(), QStringLiteral("DejaVuSansCondensed-Bold"));
}

void FontFileTest::coverageIsSortedCountedAndTruncated()
{
    SfntBuilder builder;
    const int glyph = builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500));
    for (const quint32 code : {0x1Fu, 0x20u, 0x41u, 0x5A0u, 0x301u, 0x1DC5u, 0x10042u})
        builder.mapCharacter(code, glyph);
    KrvFontFile font(save(QStringLiteral("coverage.ttf"), builder.build()));
    QVERIFY(font.open(0));
    QCOMPARE(font.characters(), (QList<ushort>{0x20, 0x41, 0x42, 0x301, 0x5A0, 0x1DC5}));
    const auto blocks = font.supportedBlocks();
    QCOMPARE(blocks.size(), 3);
    QCOMPARE(blocks.value(0), qMakePair(3, 0));
    QCOMPARE(blocks.value(9), qMakePair(1, 4));
    QCOMPARE(blocks.value(14), qMakePair(1, 5));
    QCOMPARE(font.charactersInBlock(0), (QList<ushort>{0x20, 0x41, 0x42}));
    QCOMPARE(font.charactersInBlock(7), QList<ushort>());
    QCOMPARE(font.charactersInBlock(-1), font.characters());
}

void FontFileTest::symbolFontsReportShiftedCodes()
{
    SfntBuilder builder;
    builder.setSymbolMap();
    const int glyph = builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500));
    for (const quint32 code : {3u, 4u, 126u, 127u, 225u, 226u})
        builder.mapCharacter(code, glyph);
    KrvFontFile font(save(QStringLiteral("symbol.ttf"), builder.build()));
    QVERIFY(font.open(0));
    QCOMPARE(font.currentCharMap().encoding, KrvFontFile::EncodingMsSymbol);
    QCOMPARE(font.characters(), (QList<ushort>{0, 33, 155, 157, 255}));
}

void FontFileTest::characterMapsAreListedAndSelected()
{
    KrvFontFile font(dejaVu());
    QVERIFY(!font.selectCharMap({KrvFontFile::EncodingUnicode, KrvFontFile::PlatformMicrosoft, 0}));
    QVERIFY(font.open(0));
    const auto maps = font.charMaps();
    QVERIFY(maps.size() > 1);
    QCOMPARE(font.currentCharMap().encoding, KrvFontFile::EncodingUnicode);
    const auto roman = std::find_if(maps.cbegin(), maps.cend(), [](const KrvFontFile::CharMap& map) {
        return map.encoding == KrvFontFile::EncodingAppleRoman;
    });
    QVERIFY(roman != maps.cend());
    QCOMPARE(roman->platform, KrvFontFile::PlatformMacintosh);
    QVERIFY(font.characters().contains(0x20AC));
    QVERIFY(font.selectCharMap(*roman));
    QCOMPARE(font.currentCharMap().index, roman->index);
    QVERIFY2(!font.characters().contains(0x20AC), "coverage is that of the selected map");
    QVERIFY(!font.selectCharMap({KrvFontFile::EncodingBig5, KrvFontFile::PlatformMicrosoft, 0}));
    QVERIFY(!font.selectCharMap({KrvFontFile::EncodingUnicode, KrvFontFile::PlatformMicrosoft, int(maps.size())}));
}

void FontFileTest::otherThreadsSeeNothing()
{
    KrvFontFile font(dejaVu());
    QVERIFY(font.open(0));
    font.setPixelSize(20);
    bool blind = false;
    std::thread([&] {
        blind = !font.isOpen() && !font.face() && font.characters().isEmpty() && font.familyName().isEmpty() &&
                font.pixelSize() == 0 && !font.loadCharacter('A') && font.hintedAdvance(36) == 0 && !font.open(0) &&
                KrvFontMetrics(&font).textBox(QStringLiteral("A")).isNull() && font.winAscent() == 0;
    }).join();
    QVERIFY(blind);
    QVERIFY(font.isOpen());
}

void FontFileTest::setFileMovesToAnotherFont()
{
    KrvFontFile font(QStringLiteral("/nowhere"));
    QVERIFY(!font.open(0));
    QVERIFY(font.setFile(dejaVu(), 0));
    QCOMPARE(font.fileName(), dejaVu());
    QVERIFY(!font.setFile(QStringLiteral("/nowhere"), 0));
    QVERIFY(!font.isOpen());
}

// As by a program that copies another file over it.
void FontFileTest::aFileMayBeCutOffWhileItIsOpen()
{
    const QString path = save(QStringLiteral("cut.ttf"), readFile(dejaVu()));
    KrvFontFile font(path);
    QVERIFY(font.open(0));
    font.setPixelSize(20);
    QVERIFY(QFile::resize(path, 5000));
    for (ushort c = 'A'; c < 0x2000; ++c)
        font.loadCharacter(c);
    font.characters();
    font.close();
    QVERIFY(!font.open(0) || font.characters().isEmpty());

    // The next mapping may lie at the same place.
    KrvFontFile whole(dejaVu());
    QVERIFY(whole.open(0));
    QVERIFY(whole.characters().contains('A'));
}

KERVAL_TEST(FontFileTest)
#include "FontFileTest.moc"
