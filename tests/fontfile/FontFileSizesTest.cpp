#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontMetrics.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/support/testregistry.h"

#include <QDataStream>
#include <QtTest>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <limits>

using namespace kerval::testing;
using MetricsCorrection = KrvFontMetrics::MetricsCorrection;

class FontFileSizesTest : public QObject
{
    Q_OBJECT

private slots:
    void correctionsAreWrittenAndRead();
    void correctionScalesWhatIsDrawnNotWhatCallersSee();
    void repeatedCorrectionsDoNotCompound();
    void uselessCorrectionsAreIgnored();
    void absurdFactorsAreSurvived();
    void pointSizesFollowTheResolution();
    void loadedGlyphFollowsTheSize();
};

void FontFileSizesTest::correctionsAreWrittenAndRead()
{
    const auto correction = MetricsCorrection::fromString(QStringLiteral("1.1;;0.6;0.8"));
    QCOMPARE(correction.c0, 1.1);
    QCOMPARE(correction.c1, 0.6);
    QCOMPARE(correction.c2, 0.8);
    QCOMPARE(correction.toString(), QStringLiteral("1.1000E+00;6.0000E-01;8.0000E-01"));
    QVERIFY(MetricsCorrection::fromString(QStringLiteral("0;x;1")).isValid());
    for (const char* text : {"", "1.1;0.6", "1;2;3;4", "-1;1;1", "1;inf;1"})
        QVERIFY2(!MetricsCorrection::fromString(QLatin1String(text)).isValid(), text);

    KrvFontFile none(QString{});
    const KrvFontMetrics registersTheType(&none);
    QVERIFY(QMetaType::type("KrvFontMetrics::MetricsCorrection") != QMetaType::UnknownType);
    QByteArray stored;
    QDataStream writer(&stored, QIODevice::WriteOnly);
    writer << QVariant::fromValue(correction);
    QVariant restored;
    QDataStream reader(stored);
    reader >> restored;
    QCOMPARE(restored.value<MetricsCorrection>().c2, 0.8);
}

void FontFileSizesTest::correctionScalesWhatIsDrawnNotWhatCallersSee()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    QVERIFY(font.setPixelSize(40));
    font.applyMetricsCorrection({1.2, 0.5, 0.75});
    QVERIFY(font.hasMetricsCorrection());
    QCOMPARE(int(font.face()->size->metrics.x_ppem), 48);
    QCOMPARE(font.pixelSize(), 40);
    const KrvFontMetrics metrics(&font);
    QCOMPARE(metrics.ascent(), 30);
    QCOMPARE(metrics.descent(), 10);

    font.applyMetricsCorrection({1.1, 0.5, 0.75});
    QVERIFY(font.setPixelSize(20));
    QCOMPARE(font.pixelSize(), 20);
    QCOMPARE(int(font.face()->size->metrics.x_ppem), 22);
}

void FontFileSizesTest::repeatedCorrectionsDoNotCompound()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    font.applyMetricsCorrection({1.2, 0.5, 0.75});
    font.applyMetricsCorrection({1.2, 0.5, 0.75});
    QCOMPARE(int(font.face()->size->metrics.x_ppem), 48);
}

void FontFileSizesTest::uselessCorrectionsAreIgnored()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    font.applyMetricsCorrection({1.2, std::numeric_limits<double>::infinity(), 0.75});
    font.applyMetricsCorrection({1.2, 0.5, -1.0});
    QVERIFY(!font.hasMetricsCorrection());
    QCOMPARE(int(font.face()->size->metrics.x_ppem), 40);
    const KrvFontMetrics metrics(&font);
    QCOMPARE(metrics.ascent(), font.winAscent());
    QCOMPARE(metrics.descent(), font.winDescent());
}

void FontFileSizesTest::absurdFactorsAreSurvived()
{
    for (const double factor : {0.0, -3.0, 1e-300, 1e300}) {
        KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
        QVERIFY(font.open(0));
        font.setPixelSize(40);
        font.applyMetricsCorrection({factor, factor, factor});
        font.setPixelSize(40);
        QVERIFY(qAbs(font.pixelSize()) <= 0xFFFF);
        const KrvFontMetrics metrics(&font);
        metrics.lineSpacing();
        metrics.textBox(QStringLiteral("A\nB"));
    }
}

void FontFileSizesTest::pointSizesFollowTheResolution()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(!font.setPointSize(12, 96));
    QVERIFY(font.open(0));
    QVERIFY(font.setPointSize(12, 96));
    QCOMPARE(font.pixelSize(), 16);
    QVERIFY(font.setPointSize(18, 300));
    QCOMPARE(font.pixelSize(), 75);
    QVERIFY(font.setPointSize(12)); // the screen's
    QVERIFY(font.pixelSize() >= 12);
    QVERIFY(!font.setPixelSize(-5));
}

void FontFileSizesTest::loadedGlyphFollowsTheSize()
{
    KrvFontFile font(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QVERIFY(font.open(0));
    QVERIFY(!font.loadCharacter(0xFFFE));
    font.setPixelSize(20);
    const KrvFontMetrics metrics(&font);
    const int small = metrics.glyphBox(QLatin1Char('M')).width();
    font.setPixelSize(80);
    QVERIFY(metrics.glyphBox(QLatin1Char('M')).width() > 3 * small);
    // Measuring goes through the same slot and must not leave another glyph in it.
    const unsigned int m = font.glyphIndex(QLatin1Char('M'));
    const auto width = font.loadGlyph(m)->metrics.width;
    metrics.advance(font.glyphIndex(QLatin1Char('i')));
    QCOMPARE(font.loadGlyph(m)->metrics.width, width);
}

KERVAL_TEST(FontFileSizesTest)
#include "FontFileSizesTest.moc"
