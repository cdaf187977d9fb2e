#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvGlyphLayout.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/support/testregistry.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H

using namespace kerval::testing;

namespace {

constexpr int pixelSize = 24;

struct ShapedGlyph
{
    unsigned int glyph;
    int cluster;
    int advance;
};

// What HarfBuzz's own tool makes of the text, in 64ths of a pixel with linear advances.
QVector<ShapedGlyph> shapeWithTool(const QString& fontFile, const QString& text, const QString& features)
{
    QProcess tool;
    tool.start(QStringLiteral("hb-shape"),
               {QStringLiteral("--script=Zyyy"), QStringLiteral("--direction=ltr"), QStringLiteral("--no-glyph-names"),
                QStringLiteral("--font-funcs=ot"), QStringLiteral("--font-size=%1").arg(pixelSize * 64),
                QStringLiteral("--font-ppem=%1").arg(pixelSize), QStringLiteral("--features=%1").arg(features),
                fontFile, text});
    if (!tool.waitForFinished() || tool.exitCode() != 0)
        qFatal("hb-shape fails: %s", tool.readAllStandardError().constData());
    QVector<ShapedGlyph> glyphs;
    static const QRegularExpression glyph(QStringLiteral("(\\d+)=(\\d+)(?:@-?\\d+,-?\\d+)?\\+(-?\\d+)"));
    auto matches = glyph.globalMatch(QString::fromUtf8(tool.readAllStandardOutput()));
    while (matches.hasNext()) {
        const auto match = matches.next();
        glyphs.append({match.captured(1).toUInt(), match.captured(2).toInt(), match.captured(3).toInt()});
    }
    return glyphs;
}

} // namespace

class FontLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithTheShapersOwnTool_data();
    void agreesWithTheShapersOwnTool();
    void surrogatePairIsOneGlyph();
    void missingCharactersAreGlyphZero();
    void widthsOfAdjoiningRangesAddUp();
    void layoutFollowsSizeAndClosing();
    void charactersKnowWhereTheyMayBeParted();
};

void FontLayoutTest::agreesWithTheShapersOwnTool_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("kerns"); // for the Common script; many fonts kern Latin alone
    QTest::newRow("kerning pairs") << "FreeSerif.ttf"
                                   << "AVATAR, To Wave. LT \"P.\"" << true;
    QTest::newRow("kerning of Latin alone") << "DejaVuSans.ttf"
                                            << "AVATAR office fluffy" << false;
    QTest::newRow("marks") << "DejaVuSans.ttf" << QString::fromUtf8("e\u0301a\u0308\u0323 x\u0304") << false;
    QTest::newRow("CFF outlines and ligatures") << "Cantarell-Regular.otf"
                                                << "AV Type, Yoke; flat first fjord" << false;
    QTest::newRow("table of kerning pairs") << "LiberationSans-Regular.ttf"
                                            << "AVATAR To Tea, 11 P." << true;
    QTest::newRow("script face") << "LobsterTwo-BoldItalic.otf"
                                 << "The quick brown fox; To" << true;
    QTest::newRow("Greek and Cyrillic") << "FreeSerif.ttf" << QString::fromUtf8("Αβγ ΤΑΥ Ωμέγα Ґудзик") << true;
}

void FontLayoutTest::agreesWithTheShapersOwnTool()
{
    QFETCH(QString, file);
    QFETCH(QString, text);
    const QString path = debianFont(file);
    KrvFontFile font(path);
    QVERIFY(font.open(0));
    QVERIFY(font.setPixelSize(pixelSize));
    KrvGlyphLayout layout(&font);
    layout.setText(text);

    const auto kerned = shapeWithTool(path, text, QString());
    const auto unkerned = shapeWithTool(path, text, QStringLiteral("-kern"));
    QCOMPARE(layout.glyphCount(), kerned.size());
    QCOMPARE(unkerned.size(), kerned.size());
    const auto glyphs = layout.glyphs();
    const auto advances = layout.advances();
    int kernedPairs = 0;
    for (int i = 0; i < kerned.size(); ++i) {
        QCOMPARE(glyphs[i], kerned.at(i).glyph);
        // Positions add to the hinted advance what they add to the linear one.
        FT_Fixed hinted = 0;
        QCOMPARE(FT_Get_Advance(font.face(), glyphs[i], FT_LOAD_DEFAULT, &hinted), 0);
        const int kerning = kerned.at(i).advance - unkerned.at(i).advance;
        kernedPairs += kerning != 0;
        if (unkerned.at(i).advance != 0)
            QCOMPARE(advances[i], (int((hinted + 32) >> 16) * 64 + kerning) >> 6);
        else
            QCOMPARE(advances[i], 0); // a mark
    }
    const auto clusters = layout.logClusters();
    QCOMPARE(clusters.size(), text.size());
    for (int unit = 0; unit < text.size(); ++unit) {
        int first = kerned.size() - 1;
        while (first > 0 && kerned.at(first).cluster > unit)
            --first;
        while (first > 0 && kerned.at(first - 1).cluster == kerned.at(first).cluster)
            --first;
        QCOMPARE(int(clusters[unit]), first);
    }
    QTEST(kernedPairs > 0, "kerns");
}

void FontLayoutTest::surrogatePairIsOneGlyph()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    KrvGlyphLayout layout(&font);
    layout.setText(QString::fromUtf8("a\U0001D538b")); // double-struck A
    QCOMPARE(layout.glyphCount(), 3);
    QCOMPARE(layout.glyphs()[1], font.glyphIndexOf(0x1D538));
    QVERIFY(layout.glyphs()[1] != 0);
    const auto clusters = layout.logClusters();
    QCOMPARE(clusters.size(), 4);
    QCOMPARE(clusters[1], clusters[2]);
    QCOMPARE(clusters[3], 2u);
}

void FontLayoutTest::missingCharactersAreGlyphZero()
{
    KrvFontFile font(debianFont(QStringLiteral("Cantarell-Regular.otf")));
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    KrvGlyphLayout layout(&font);
    layout.setText(QString(QChar(0x4E00)) + QChar(0xD800) + QLatin1Char('a'));
    QCOMPARE(layout.glyphCount(), 3);
    QCOMPARE(layout.glyphs()[0], 0u);
    QCOMPARE(layout.glyphs()[1], 0u); // half a surrogate pair
    QVERIFY(layout.glyphs()[2] != 0);
}

void FontLayoutTest::widthsOfAdjoiningRangesAddUp()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    const QString text = QStringLiteral("office AV e\u0301fl");
    KrvGlyphLayout layout(&font);
    layout.setText(text);
    const int whole = layout.textWidth(0, text.size());
    QVERIFY(whole > 0);
    for (int cut = 0; cut <= text.size(); ++cut)
        QCOMPARE(layout.textWidth(0, cut) + layout.textWidth(cut, text.size() - cut), whole);
    QCOMPARE(layout.textWidth(-3, 1000), whole);
    QCOMPARE(layout.textWidth(text.size(), 5), 0);
    QCOMPARE(layout.textWidth(3, -1), 0);
}

void FontLayoutTest::layoutFollowsSizeAndClosing()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    KrvGlyphLayout layout(&font);
    layout.setText(QStringLiteral("Wave"));
    QCOMPARE(layout.glyphCount(), 0);
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    layout.setText(QStringLiteral("Wave"));
    const int width = layout.textWidth(0, 4);
    font.setPixelSize(2 * pixelSize);
    QCOMPARE(layout.textWidth(0, 4), width); // of the time it was laid out
    layout.setText(QStringLiteral("Wave"));
    QVERIFY(layout.textWidth(0, 4) > width * 3 / 2);
    layout.setText(QString());
    QCOMPARE(layout.glyphCount(), 0);
    font.close();
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    layout.setText(QStringLiteral("Wave"));
    QCOMPARE(layout.textWidth(0, 4), width);
}

void FontLayoutTest::charactersKnowWhereTheyMayBeParted()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(pixelSize);
    KrvGlyphLayout layout(&font);
    layout.setText(QStringLiteral("e\u0301 b"));
    const auto attributes = layout.charAttributes();
    QCOMPARE(attributes.size(), 4);
    QVERIFY(attributes[0].charStop && !attributes[1].charStop && attributes[2].charStop);
    QVERIFY(attributes[2].whiteSpace && !attributes[3].whiteSpace);
    QVERIFY(attributes[3].lineBreak && !attributes[1].lineBreak);
}

KERVAL_TEST(FontLayoutTest)
#include "FontLayoutTest.moc"
