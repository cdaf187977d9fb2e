#include "fontfile/Indexed8PaintDevice.h"
#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontPainter.h"
#include "fontfile/PainterPaintDevice.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/support/testregistry.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

using namespace kerval::testing;

namespace {

QImage blankBoard(int width, int height)
{
    QImage board(width, height, QImage::Format_Indexed8);
    board.setColorTable(KrvFontPainter::colorTable(0xFF000000));
    board.fill(0);
    return board;
}

QRect inkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelIndex(x, y) != 0)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

} // namespace

class FontPainterTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void colourTableIsTheColourInEveryOpacity();
    void spansFillSaturateAndStayInside();
    void savedPositionsComeBack();
    void imagesAddUp();
    void drawnRectangleIsTheInk();
    void firstInkStartsAtTheOrigin();
    void alignment_data();
    void alignment();
    void severalLinesAreStackedAndAligned();
    void painterDrawsWhatTheIndexedDeviceDraws();
    void charactersSitInTheirCells();

private:
    QRect draw(QImage* board, int flags, const QString& text)
    {
        QPainter inactive;
        KrvFontPainter::Indexed8PaintDevice device(board);
        QRect drawn;
        KrvFontPainter(&inactive, m_font.get()).drawText(device, board->rect(), flags, text, &drawn);
        return drawn;
    }

    std::unique_ptr<KrvFontFile> m_font;
};

void FontPainterTest::init()
{
    m_font = std::make_unique<KrvFontFile>(debianFont(QStringLiteral("LiberationSans-Regular.ttf")));
    QVERIFY(m_font->open(0));
    QVERIFY(m_font->setPixelSize(40));
}

void FontPainterTest::colourTableIsTheColourInEveryOpacity()
{
    const auto table = KrvFontPainter::colorTable(qRgba(10, 20, 30, 40));
    QCOMPARE(table.size(), 256);
    QCOMPARE(table.at(0), qRgba(10, 20, 30, 0));
    QCOMPARE(table.at(200), qRgba(10, 20, 30, 200));
}

void FontPainterTest::spansFillSaturateAndStayInside()
{
    QImage board = blankBoard(10, 4);
    KrvFontPainter::Indexed8PaintDevice device(&board);
    device.drawSpan(2, 1, 3, 100);
    device.drawSpan(4, 1, 2, 7);
    QCOMPARE(board.pixelIndex(1, 1), 0);
    QCOMPARE(board.pixelIndex(2, 1), 100);
    QCOMPARE(board.pixelIndex(4, 1), 255); // covered twice
    QCOMPARE(board.pixelIndex(5, 1), 7);
    QCOMPARE(board.color(100), qRgba(0, 0, 0, 100));

    device.translate(-2, 2);
    device.drawSpan(0, 0, 5, 50); // two pixels to the left of the image
    QCOMPARE(inkOf(board.copy(0, 2, 10, 1)), QRect(0, 0, 3, 1));
    device.drawSpan(0, 5, 5, 50);
    device.drawSpan(0, -9, 5, 50);
    device.drawSpan(0, 0, 0, 50);
    device.translate(1 << 30, 0);
    device.drawSpan(5, 0, 5, 50);
    QCOMPARE(inkOf(board), QRect(0, 1, 6, 2));

    QImage narrow = blankBoard(10, 1); // of twelve bytes a row
    KrvFontPainter::Indexed8PaintDevice narrowDevice(&narrow);
    narrowDevice.translate(-8, 0);
    narrowDevice.drawSpan(8, 0, 4, 9);
    QCOMPARE(inkOf(narrow), QRect(0, 0, 4, 1));
    narrowDevice.drawSpan(9, 0, 4, 9); // longer than a row from where it starts
    QCOMPARE(inkOf(narrow), QRect(0, 0, 4, 1));
}

void FontPainterTest::savedPositionsComeBack()
{
    QImage board = blankBoard(8, 8);
    KrvFontPainter::Indexed8PaintDevice device(&board);
    device.save();
    device.translate(QPoint(3, 2));
    device.save();
    device.translate(1, 1);
    device.restore();
    device.drawSpan(0, 0, 1, 255);
    device.restore();
    device.drawSpan(0, 0, 1, 255);
    QCOMPARE(board.pixelIndex(3, 2), 255);
    QCOMPARE(board.pixelIndex(0, 0), 255);
}

void FontPainterTest::imagesAddUp()
{
    QImage board = blankBoard(6, 6);
    QImage stamp = blankBoard(4, 4);
    stamp.fill(150);
    KrvFontPainter::Indexed8PaintDevice device(&board);
    device.translate(1, 1);
    device.drawImage(QPoint(-3, -3), stamp);
    QCOMPARE(inkOf(board), QRect(0, 0, 2, 2));
    device.drawImage(QPoint(-1, -1), stamp);
    QCOMPARE(board.pixelIndex(1, 1), 255);
    QCOMPARE(board.pixelIndex(3, 3), 150);
}

void FontPainterTest::drawnRectangleIsTheInk()
{
    QImage board = blankBoard(400, 80);
    const QRect drawn = draw(&board, Qt::AlignTop | Qt::AlignLeft, QStringLiteral("Quartz fjord"));
    QCOMPARE(drawn, inkOf(board));
    QImage blank = blankBoard(400, 80);
    QVERIFY(draw(&blank, 0, QStringLiteral("   ")).isNull());
    QVERIFY(draw(&blank, 0, QString()).isNull());
}

void FontPainterTest::firstInkStartsAtTheOrigin()
{
    QImage board = blankBoard(100, 80);
    QCOMPARE(draw(&board, 0, QStringLiteral("H")).left(), 0);
    // Leading blanks move the ink but not the rectangle that is reported for it.
    QImage blanks = blankBoard(100, 80);
    const QRect drawn = draw(&blanks, 0, QStringLiteral("  H"));
    QVERIFY(inkOf(blanks).left() > 15);
    QVERIFY(drawn.left() < 10);
    QCOMPARE(drawn.width(), inkOf(blanks).width());
}

void FontPainterTest::alignment_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QPoint>("origin"); // of the baseline, (-1: at the start, 0: centred, 1: at the end)
    QTest::newRow("default is top left") << 0 << QPoint(-1, -1);
    QTest::newRow("right") << int(Qt::AlignRight) << QPoint(1, -1);
    QTest::newRow("centre") << int(Qt::AlignCenter) << QPoint(0, 0);
    QTest::newRow("bottom") << int(Qt::AlignBottom) << QPoint(-1, 1);
    QTest::newRow("right wins over centre") << int(Qt::AlignRight | Qt::AlignHCenter) << QPoint(1, -1);
}

void FontPainterTest::alignment()
{
    QFETCH(int, flags);
    QFETCH(QPoint, origin);
    const KrvFontMetrics metrics(m_font.get());
    const QString text = QStringLiteral("Hill");
    const QRect board(0, 0, 301, 201);
    const int width = metrics.textWidth(text);
    const int x = origin.x() < 0 ? 0 : origin.x() == 0 ? 150 - width / 2 : 301 - width;
    const int y = origin.y() < 0    ? metrics.ascent()
                  : origin.y() == 0 ? 100 + (metrics.ascent() - metrics.descent()) / 2
                                    : 200 - metrics.descent();
    QImage image = blankBoard(board.width(), board.height());
    const QRect drawn = draw(&image, flags, text);
    QCOMPARE(drawn.left(), x);
    QCOMPARE(drawn.bottom(), y);
    QCOMPARE(drawn, inkOf(image));
}

void FontPainterTest::severalLinesAreStackedAndAligned()
{
    const KrvFontMetrics metrics(m_font.get());
    const QString text = QStringLiteral("Hill\r\nH");
    const int height = metrics.ascent() + metrics.descent() + metrics.lineSpacing();
    QImage top = blankBoard(300, 300);
    const QRect drawn = draw(&top, Qt::AlignRight, text);
    QCOMPARE(drawn, inkOf(top));
    QCOMPARE(drawn.bottom(), metrics.ascent() + metrics.lineSpacing());
    QCOMPARE(drawn.left(), 300 - metrics.textWidth(QStringLiteral("Hill")));
    QImage bottom = blankBoard(300, 300);
    QCOMPARE(draw(&bottom, Qt::AlignBottom, text).bottom(), 300 - metrics.descent());
    QImage centre = blankBoard(300, 300);
    QCOMPARE(draw(&centre, Qt::AlignVCenter | Qt::AlignHCenter, text).bottom(),
             metrics.ascent() + (300 - height) / 2 + metrics.lineSpacing());
}

void FontPainterTest::painterDrawsWhatTheIndexedDeviceDraws()
{
    QImage indexed = blankBoard(200, 60);
    draw(&indexed, 0, QStringLiteral("Wafer"));
    QImage painted(200, 60, QImage::Format_ARGB32_Premultiplied);
    painted.fill(Qt::white);
    QPainter painter(&painted);
    painter.setPen(Qt::red);
    QRect drawn;
    KrvFontPainter(&painter, m_font.get()).drawText(painted.rect(), 0, QStringLiteral("Wafer"), &drawn);
    painter.end();
    QCOMPARE(drawn, inkOf(indexed));
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 200; ++x) {
            const int expected = 255 - indexed.pixelIndex(x, y);
            // Overlapping spans saturate in the one and blend in the other.
            if (expected != 0)
                QVERIFY(qAbs(qGreen(painted.pixel(x, y)) - expected) <= 2);
        }
    }
}

void FontPainterTest::charactersSitInTheirCells()
{
    const KrvFontMetrics metrics(m_font.get());
    QImage page(120, 80, QImage::Format_Grayscale8);
    page.fill(Qt::white);
    QPainter painter(&page);
    KrvFontPainter fontPainter(&painter, m_font.get());
    const QRect cell(0, 10, 60, 60);
    fontPainter.drawCharacter(cell, Qt::AlignCenter, QLatin1Char('M'));
    fontPainter.drawCharacterAt(QPoint(80, 50), QLatin1Char('i'));
    fontPainter.drawCharacter(cell, 0, QChar(0xFFFE)); // the font has none: nothing
    painter.end();
    QRect left;
    QRect right;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (qGray(page.pixel(x, y)) != 255)
                (x < 60 ? left : right) |= QRect(x, y, 1, 1);
        }
    }
    const QRect box = metrics.glyphBox(QLatin1Char('M'));
    QVERIFY(qAbs(left.center().x() - cell.center().x()) <= 1);
    QCOMPARE(left.bottom(), 10 + box.height() / 2 + 30);
    QCOMPARE(right.bottom(), 50);
    QCOMPARE(right.left(), 80 + metrics.inkBox(m_font->glyphIndex(QLatin1Char('i'))).left());
}

KERVAL_TEST(FontPainterTest)
#include "FontPainterTest.moc"
