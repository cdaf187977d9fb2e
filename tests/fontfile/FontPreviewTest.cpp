#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontPainter.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/support/testregistry.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QtTest>

using namespace kerval::testing;

namespace {

bool renderPoints(const PointSizePreviewRequest& request, QImage* out, bool watermark = false)
{
    return KrvFontPainter::renderPreview(debianFont(QStringLiteral("LiberationSans-Regular.ttf")), request, out, 0,
                                         nullptr, Qt::AlignLeft, watermark, 0.4);
}

PointSizePreviewRequest pointRequest(const QString& text)
{
    PointSizePreviewRequest request;
    request.dpi = 96;
    request.pointSize = 30;
    request.text = text;
    return request;
}

} // namespace

class FontPreviewTest : public QObject
{
    Q_OBJECT

private slots:
    void looksAsItAlwaysDid_data();
    void looksAsItAlwaysDid();
    void pointPreviewIsCroppedToItsInk();
    void linesOfAPointPreviewAreStacked();
    void blankPreviewsFail();
    void marginsGrowThePictureOnlyWhenAsked();
    void correctionChangesTheSizeOfLettersOnly();
    void sharedPixelsAreFull();
    void previewsThatWouldFillTheMemoryFail();
    void watermarkTurnsThePictureTo32Bits();
    void systemFontDrawsMessages();
};

void FontPreviewTest::looksAsItAlwaysDid_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("correction");
    QTest::addColumn<QRgb>("color");
    QTest::newRow("dejavu") << "DejaVuSans.ttf" << 24 << "Hamburgefonstiv 0123 & (fi)"
                            << "" << 0xFF000000u;
    QTest::newRow("liberation-kerned") << "LiberationSerif-Regular.ttf" << 32 << "AVATAR To Wave"
                                       << "" << 0xFF000000u;
    QTest::newRow("cantarell-cff") << "Cantarell-Bold.otf" << 28 << "first fjord, quay"
                                   << "" << 0xFF1A4C8Bu;
    QTest::newRow("lobster-corrected") << "LobsterTwo-BoldItalic.otf" << 36 << "Sphinx"
                                       << "1.2;0.5;0.75" << 0xFF000000u;
    QTest::newRow("freeserif-scripts") << "FreeSerif.ttf" << 24 << QString::fromUtf8("Ωμέγα Ґудзик e\u0301") << ""
                                       << 0xFF000000u;
    QTest::newRow("missing-glyphs") << "Cantarell-Regular.otf" << 24 << QString::fromUtf8("a\u4e00b") << ""
                                    << 0xFF000000u;
}

void FontPreviewTest::looksAsItAlwaysDid()
{
    QFETCH(QString, file);
    QFETCH(QString, correction);
    QFETCH(int, pixelSize);
    QFETCH(QString, text);
    QFETCH(QRgb, color);
    PixelSizePreviewRequest request;
    request.pixelSize = pixelSize;
    request.text = text;
    request.color = color;
    request.correction = KrvFontMetrics::MetricsCorrection::fromString(correction);
    QImage image;
    QVERIFY(KrvFontPainter::renderPixelPreview(debianFont(file), request, &image, 0));
    QCOMPARE(image.format(), QImage::Format_Indexed8);
    const QString difference = goldenDifference(QLatin1String(QTest::currentDataTag()), image);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void FontPreviewTest::pointPreviewIsCroppedToItsInk()
{
    QImage image;
    QVERIFY(renderPoints(pointRequest(QStringLiteral("Hx")), &image));
    KrvFontFile font(debianFont(QStringLiteral("LiberationSans-Regular.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    const KrvFontMetrics metrics(&font);
    const QRect h = metrics.inkBox(font.glyphIndex(QLatin1Char('H')));
    QCOMPARE(image.height(), h.height());
    const QRect x = metrics.inkBox(font.glyphIndex(QLatin1Char('x')))
                        .translated(metrics.advance(font.glyphIndex(QLatin1Char('H'))), 0);
    QCOMPARE(image.width(), x.right() - h.left() + 1);
    QVERIFY2(!KrvFontPainter::renderPreview(QStringLiteral("/nowhere.ttf"), pointRequest(QStringLiteral("A")), &image,
                                            0, nullptr, 0, false, 0),
             "no such font");
}

void FontPreviewTest::linesOfAPointPreviewAreStacked()
{
    QImage one;
    QImage two;
    QVERIFY(renderPoints(pointRequest(QStringLiteral("Hg")), &one));
    QVERIFY(renderPoints(pointRequest(QStringLiteral("Hg\nHg")), &two));
    KrvFontFile font(debianFont(QStringLiteral("LiberationSans-Regular.ttf")));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    QCOMPARE(two.height(), one.height() + KrvFontMetrics(&font).lineSpacing());
    QCOMPARE(two.width(), one.width());
}

void FontPreviewTest::blankPreviewsFail()
{
    QImage image(3, 3, QImage::Format_ARGB32);
    QVERIFY(!renderPoints(pointRequest(QStringLiteral("   ")), &image));
    QVERIFY(!renderPoints(pointRequest(QString()), &image));
    QCOMPARE(image.width(), 3); // left alone
    PixelSizePreviewRequest request;
    request.text = QStringLiteral("  ");
    QVERIFY(KrvFontPainter::renderPixelPreview(debianFont(QStringLiteral("DejaVuSans.ttf")), request, &image, 0));
    QVERIFY(image.isNull());
}

void FontPreviewTest::marginsGrowThePictureOnlyWhenAsked()
{
    PointSizePreviewRequest request = pointRequest(QStringLiteral("Ag"));
    QImage plain;
    QImage wide;
    request.marginLeft = 2;
    request.marginRight = 3;
    request.marginTop = 4;
    request.marginBottom = 5;
    QVERIFY(renderPoints(request, &plain));
    request.extendMargins = true;
    QVERIFY(renderPoints(request, &wide));
    QCOMPARE(wide.size(), plain.size() + QSize(5, 9));
    QCOMPARE(wide.copy(QRect(QPoint(2, 4), plain.size())), plain);
    QCOMPARE(wide.pixelIndex(0, 0), 0);

    PixelSizePreviewRequest pixels;
    pixels.text = QStringLiteral("Ag");
    pixels.margins = QMargins(2, 4, 3, 5);
    const QString file = debianFont(QStringLiteral("DejaVuSans.ttf"));
    QVERIFY(KrvFontPainter::renderPixelPreview(file, pixels, &plain, 0));
    pixels.extendMargins = true;
    QVERIFY(KrvFontPainter::renderPixelPreview(file, pixels, &wide, 0));
    QCOMPARE(wide.size(), plain.size() + QSize(5, 9));
}

void FontPreviewTest::correctionChangesTheSizeOfLettersOnly()
{
    const QString file = debianFont(QStringLiteral("DejaVuSans.ttf"));
    PixelSizePreviewRequest request;
    request.pixelSize = 100;
    request.text = QStringLiteral("HH");
    QImage plain;
    QImage large;
    QVERIFY(KrvFontPainter::renderPixelPreview(file, request, &plain, 0));
    request.correction = {1.2, 0.6, 0.75};
    QVERIFY(KrvFontPainter::renderPixelPreview(file, request, &large, 0));
    QVERIFY(qAbs(large.height() - plain.height() * 1.2) <= 2);
    QVERIFY(qAbs(large.width() - plain.width() * 1.2) <= 4);
    // Letters taller than one and a half times the nominal size are cut at the line's height.
    request.correction = {3.0, 0.6, 0.75};
    QVERIFY(KrvFontPainter::renderPixelPreview(file, request, &large, 0));
    QVERIFY(large.height() > 150);
    int covered = 0;
    for (int y = 0; y < large.height(); ++y)
        covered += large.pixelIndex(2, y) + large.pixelIndex(large.width() / 4, y) != 0;
    QVERIFY(covered <= 150);
}

void FontPreviewTest::sharedPixelsAreFull()
{
    // A negative advance would be needed in Latin; a stacked mark overlaps its base in any font.
    PixelSizePreviewRequest request;
    request.pixelSize = 60;
    request.text = QString::fromUtf8("o\u0338");
    QImage image;
    QVERIFY(KrvFontPainter::renderPixelPreview(debianFont(QStringLiteral("DejaVuSans.ttf")), request, &image, 0));
    bool full = false;
    for (int i = 0; i < image.width() && !full; ++i)
        full = image.pixelIndex(i, image.height() / 2) == 255;
    QVERIFY(full);
}

void FontPreviewTest::previewsThatWouldFillTheMemoryFail()
{
    PointSizePreviewRequest request = pointRequest(QString(10000, QLatin1Char('W')));
    request.pointSize = 5000;
    QImage image;
    QVERIFY(!renderPoints(request, &image));
    PixelSizePreviewRequest pixels;
    pixels.pixelSize = 60000;
    pixels.text = request.text;
    QVERIFY(!KrvFontPainter::renderPixelPreview(debianFont(QStringLiteral("DejaVuSans.ttf")), pixels, &image, 0));
    pixels.pixelSize = 40;
    pixels.text = QStringLiteral("A");
    pixels.extendMargins = true;
    pixels.margins = QMargins(1 << 20, 0, 1 << 20, 1 << 20);
    QVERIFY(KrvFontPainter::renderPixelPreview(debianFont(QStringLiteral("DejaVuSans.ttf")), pixels, &image, 0));
    QVERIFY(image.isNull());
}

void FontPreviewTest::watermarkTurnsThePictureTo32Bits()
{
    QImage plain;
    QImage marked;
    QVERIFY(renderPoints(pointRequest(QStringLiteral("Sample")), &plain));
    QVERIFY(renderPoints(pointRequest(QStringLiteral("Sample")), &marked, true));
    QCOMPARE(plain.format(), QImage::Format_Indexed8);
    QCOMPARE(marked.format(), QImage::Format_ARGB32);
    QCOMPARE(marked.size(), plain.size());
    QVERIFY(marked != plain.convertToFormat(QImage::Format_ARGB32));
    QImage none;
    QVERIFY(!KrvFontPainter::drawWatermark(&none, 0.4));
    QImage clear(80, 20, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    QVERIFY(KrvFontPainter::drawWatermark(&clear, 0.0));
    QCOMPARE(qAlpha(clear.pixel(40, 10)), 0);
}

void FontPreviewTest::systemFontDrawsMessages()
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(20);
    QImage image;
    QVERIFY(KrvFontPainter::renderWithSystemFont(font, Qt::red, QStringLiteral("File gone"), &image, false, 0.4));
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(qAlpha(image.pixel(image.width() - 1, 0)), 0);
    bool red = false;
    for (int x = 0; x < image.width(); ++x)
        red = red || image.pixel(x, image.height() / 2) == 0xFFFF0000;
    QVERIFY(red);
}

KERVAL_TEST(FontPreviewTest)
#include "FontPreviewTest.moc"
