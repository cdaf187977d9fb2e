#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontPainter.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QElapsedTimer>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace kerval::testing;

namespace {

// Everything the program asks of a font, whatever it answers.
void exerciseFont(const QString& path)
{
    KrvFontFile font(path);
    if (!font.open(0))
        return;
    font.familyName();
    font.postScriptName();
    font.supportedBlocks();
    const QString text = QStringLiteral("Affirm VA\u0301 sphinx\n\u00e9\u4e00");
    for (const int size : {13, 120}) {
        font.setPixelSize(size);
        const KrvFontMetrics metrics(&font);
        metrics.lineSpacing();
        metrics.textBox(text);
        metrics.inkTextBox(text);
        for (const ushort c : font.characters().mid(0, 20))
            metrics.glyphBox(QChar(c));
    }
    QImage image;
    PointSizePreviewRequest points;
    points.dpi = 96;
    points.text = text;
    KrvFontPainter::renderPreview(path, points, &image, 0, nullptr, Qt::AlignHCenter, false, 0);
    PixelSizePreviewRequest pixels;
    pixels.pixelSize = 40;
    pixels.text = text;
    KrvFontPainter::renderPixelPreview(path, pixels, &image, 0);
}

} // namespace

// Fonts that no honest tool made: each must end in a failed or an odd picture, soon, and never in a crash.
class HostileFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void damagedFonts_data();
    void damagedFonts();
    void compositesThatMultiplyAreNotDrawn();
    void compositesInCirclesAreNotDrawn();
    void honestCompositesAreDrawn();
    void noUnitsPerEm();
    void nameTablesThatRepeatThemselves();
    void characterMapForEveryCode();
    void giantGlyphsAreRefused();
    void giantAdvancesStayFinite();

private:
    QString save(const QByteArray& data)
    {
        const QString path = m_folder.filePath(QStringLiteral("hostile.ttf"));
        writeFile(path, data);
        return path;
    }

    QTemporaryDir m_folder;
};

void HostileFontsTest::damagedFonts_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("TrueType") << "LiberationMono-Regular.ttf";
    QTest::newRow("CFF") << "LobsterTwo-Regular.otf";
    QTest::newRow("many features") << "DejaVuSansMono-Oblique.ttf";
}

void HostileFontsTest::damagedFonts()
{
    QFETCH(QString, file);
    const QByteArray sound = readFile(debianFont(file));
    const int tableCount = qFromBigEndian<quint16>(sound.constData() + 4);
    QRandomGenerator random(20240607); // the same damage in every run
    for (int round = 0; round < 60; ++round) {
        QByteArray broken = sound;
        if (round % 10 == 9) {
            broken.truncate(random.bounded(broken.size()));
        } else {
            // One table at a time: damage all over mostly hits outlines.
            const char* entry = sound.constData() + 12 + 16 * (round % tableCount);
            const int offset = int(qFromBigEndian<quint32>(entry + 8));
            const int length = int(qFromBigEndian<quint32>(entry + 12));
            for (int hit = 0; hit < 1 + round / 4; ++hit)
                broken[offset + random.bounded(qMax(1, qMin(length, 400)))] =
                    char(hit % 2 ? random.bounded(256) : 0xFF);
        }
        exerciseFont(save(broken));
    }
}

void HostileFontsTest::compositesThatMultiplyAreNotDrawn()
{
    SfntBuilder builder;
    builder.setMaxComponentDepth(40);
    int part = builder.addGlyph(QByteArray());
    for (int level = 0; level < 20; ++level)
        part = builder.addGlyph(SfntBuilder::compositeGlyph(QVector<int>(10, part)));
    builder.mapCharacter('A', part);
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    QVERIFY(!font.loadCharacter('A'));
    QVERIFY2(!font.loadCharacter('A'), "nor when asked again");
    QCOMPARE(font.hintedAdvance(uint(part)), 0);
    exerciseFont(font.fileName());
}

void HostileFontsTest::compositesInCirclesAreNotDrawn()
{
    SfntBuilder builder;
    const int first = builder.addGlyph(SfntBuilder::compositeGlyph({2}));
    builder.addGlyph(SfntBuilder::compositeGlyph({1}));
    builder.mapCharacter('A', first);
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    QVERIFY(!font.loadCharacter('A'));
}

void HostileFontsTest::honestCompositesAreDrawn()
{
    SfntBuilder builder;
    const int box = builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500));
    const int twice = builder.addGlyph(SfntBuilder::compositeGlyph({box, box}));
    builder.mapCharacter('A', builder.addGlyph(SfntBuilder::compositeGlyph({twice, box})));
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.setPixelSize(40);
    const FT_GlyphSlot slot = font.loadCharacter('A');
    QVERIFY(slot);
    QCOMPARE(int(slot->outline.n_contours), 3);
}

void HostileFontsTest::noUnitsPerEm()
{
    SfntBuilder builder;
    builder.mapCharacter('A', builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500)));
    builder.setUnitsPerEm(0);
    KrvFontFile font(save(builder.build()));
    if (font.open(0))
        QVERIFY(!font.setPixelSize(40));
    exerciseFont(font.fileName());
}

void HostileFontsTest::nameTablesThatRepeatThemselves()
{
    SfntBuilder builder;
    builder.mapCharacter('A', builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500)));
    QByteArray table;
    const auto put = [&table](int value) {
        table.append(char(value >> 8));
        table.append(char(value));
    };
    constexpr int count = 60000;
    put(0);
    put(count);
    put(6); // the texts begin at the records themselves
    for (int i = 0; i < count; ++i) {
        for (const int field : {3, 1, i, 1, 0xFFFF, 0})
            put(field);
    }
    builder.setTable("name", table);
    QElapsedTimer timer;
    timer.start();
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.familyName();
    QVERIFY(timer.elapsed() < 10000);
}

void HostileFontsTest::characterMapForEveryCode()
{
    SfntBuilder builder;
    builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 500, 500));
    QByteArray map("\0\0\0\1\0\3\0\12\0\0\0\14"         // one table for platform 3, encoding 10
                   "\0\15\0\0\0\0\0\34\0\0\0\0\0\0\0\1" // format 13: one glyph for a range
                   "\0\0\0\40\xFF\xFF\xFF\xFF\0\0\0\1",
                   40);
    builder.setTable("cmap", map);
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    QVERIFY(font.characters().size() <= 0x110000);
    QVERIFY(font.supportedBlocks().size() <= 34);
}

void HostileFontsTest::giantGlyphsAreRefused()
{
    // Five hundred boxes across the whole plane, one over the other: seconds for the rasteriser at any size.
    SfntBuilder builder;
    builder.setUnitsPerEm(16);
    const int giant = builder.addGlyph(SfntBuilder::boxGlyph(-16000, -16000, 16000, 16000));
    builder.mapCharacter('A', builder.addGlyph(SfntBuilder::compositeGlyph(QVector<int>(500, giant))));
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.setPixelSize(30);
    const FT_GlyphSlot slot = font.loadCharacter('A');
    if (slot) {
        int rows = 0;
        const auto count = [](int, int, const FT_Span*, void* user) { ++*static_cast<int*>(user); };
        QVERIFY(!font.renderOutline(&slot->outline, count, &rows));
        QCOMPARE(rows, 0);
    }
    exerciseFont(font.fileName());
}

void HostileFontsTest::giantAdvancesStayFinite()
{
    SfntBuilder builder;
    builder.setUnitsPerEm(16);
    builder.mapCharacter('A', builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 16, 16), 65535));
    KrvFontFile font(save(builder.build()));
    QVERIFY(font.open(0));
    font.setPixelSize(4000);
    const KrvFontMetrics metrics(&font);
    const QString text(10000, QLatin1Char('A'));
    QVERIFY(metrics.textWidth(text) > 0);
    QVERIFY(metrics.textBox(text + QLatin1Char('\n') + text).width() > 0);
    QImage image;
    PixelSizePreviewRequest request;
    request.text = text;
    QVERIFY(!KrvFontPainter::renderPixelPreview(font.fileName(), request, &image, 0));
}

KERVAL_TEST(HostileFontsTest)
#include "HostileFontsTest.moc"
