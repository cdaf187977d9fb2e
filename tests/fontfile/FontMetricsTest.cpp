#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontMetrics.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QTemporaryDir>
#include <QtTest>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace kerval::testing;

class FontMetricsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void verticalMetricsComeFromTheWindowsTableFirst();
    void kerningOfAPairIsPartOfItsAdvance();
    void bearingsAndWidthMakeUpTheAdvance();
    void boxesHoldTheInk();
    void blankGlyphsHaveNoInk();
    void lineBoxSubtractsLeftBearings();
    void linesOfATextBoxAreStacked();
    void inkTextBoxHoldsTheInkOfTheLine();
    void wrapping_data();
    void wrapping();
    void wrappingAtTheExactWidthBreaks();
    void everyLineHoldsAWord();
    void closedFontsMeasureNothing();

private:
    QStringList wrap(const QString& text, int width)
    {
        QStringList lines;
        const auto wrapped = m_metrics->wrapText(text, width);
        for (const WrappedLine* line : wrapped)
            lines.append(line->text);
        qDeleteAll(wrapped);
        return lines;
    }

    std::unique_ptr<KrvFontFile> m_font;
    std::unique_ptr<KrvFontMetrics> m_metrics;
};

void FontMetricsTest::init()
{
    m_font = std::make_unique<KrvFontFile>(debianFont(QStringLiteral("LiberationSans-Regular.ttf")));
    QVERIFY(m_font->open(0));
    QVERIFY(m_font->setPixelSize(50));
    m_metrics = std::make_unique<KrvFontMetrics>(m_font.get());
}

void FontMetricsTest::verticalMetricsComeFromTheWindowsTableFirst()
{
    QVERIFY(m_font->winAscent() > 0);
    QCOMPARE(m_metrics->ascent(), m_font->winAscent());
    QCOMPARE(m_metrics->descent(), m_font->winDescent());
    const auto& size = m_font->face()->size->metrics;
    QCOMPARE(m_metrics->lineSpacing(),
             m_metrics->ascent() + m_metrics->descent() + int((size.descender - size.ascender + size.height) >> 6) + 1);

    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("plain.ttf")), SfntBuilder().build()); // without that table
    KrvFontFile plain(folder.filePath(QStringLiteral("plain.ttf")));
    QVERIFY(plain.open(0));
    plain.setPixelSize(100);
    QCOMPARE(KrvFontMetrics(&plain).ascent(), 80);
    QCOMPARE(KrvFontMetrics(&plain).descent(), 20);
    QCOMPARE(KrvFontMetrics(&plain).lineSpacing(), 80 + 20 + 10 + 1);
}

void FontMetricsTest::kerningOfAPairIsPartOfItsAdvance()
{
    const unsigned int a = m_font->glyphIndex(QLatin1Char('A'));
    const unsigned int v = m_font->glyphIndex(QLatin1Char('V'));
    FT_Vector kerning;
    QCOMPARE(FT_Get_Kerning(m_font->face(), a, v, FT_KERNING_DEFAULT, &kerning), 0);
    QVERIFY(kerning.x < 0);
    QCOMPARE(m_metrics->advance(a, v), m_metrics->advance(a) + int((kerning.x + 32) >> 6));
}

void FontMetricsTest::bearingsAndWidthMakeUpTheAdvance()
{
    for (const char c : {'A', 'j', 'W', '.'}) {
        const unsigned int glyph = m_font->glyphIndex(QLatin1Char(c));
        QCOMPARE(m_metrics->leftBearing(glyph) + m_metrics->glyphWidth(glyph) + m_metrics->rightBearing(glyph),
                 m_metrics->advance(glyph));
        QCOMPARE(m_metrics->leftBearing(QLatin1Char(c)), m_metrics->leftBearing(glyph));
    }
    QCOMPARE(m_metrics->rightBearing(m_font->glyphIndex(QLatin1Char(' '))), 0);
}

void FontMetricsTest::boxesHoldTheInk()
{
    for (const char c : {'H', 'g', 'Q'}) {
        const QRect ink = m_metrics->inkBox(m_font->glyphIndex(QLatin1Char(c)));
        const QRect box = m_metrics->glyphBox(QLatin1Char(c));
        QVERIFY2(box.adjusted(-1, -1, 1, 1).contains(ink), &c);
        QVERIFY(box.height() - ink.height() <= 2);
    }
    const QRect h = m_metrics->inkBox(m_font->glyphIndex(QLatin1Char('H')));
    QCOMPARE(h.bottom(), 0); // the rasteriser's row 0 is the one above the baseline
    QVERIFY(h.top() < -30);
}

void FontMetricsTest::blankGlyphsHaveNoInk()
{
    QCOMPARE(m_metrics->inkBox(m_font->glyphIndex(QLatin1Char(' '))), QRect());
    QVERIFY(m_metrics->glyphBox(0u).isNull());
    QVERIFY(m_metrics->glyphBox(QChar(0xFFFE)).isNull());
}

void FontMetricsTest::lineBoxSubtractsLeftBearings()
{
    const QString text = QStringLiteral("Hj");
    const QRect box = m_metrics->lineBox(text);
    const int width = m_metrics->textWidth(text) - m_metrics->leftBearing(QLatin1Char('H')) -
                      m_metrics->leftBearing(QLatin1Char('j'));
    QCOMPARE(box, QRect(QPoint(0, -m_metrics->ascent()), QPoint(width, m_metrics->descent())));
    QCOMPARE(m_metrics->lineBox(QStringLiteral("H")).right(),
             m_metrics->textWidth(QStringLiteral("H")) - m_metrics->leftBearing(QLatin1Char('H')));
    const QString blanks = QStringLiteral("   ");
    QCOMPARE(m_metrics->lineBox(blanks).right(), m_metrics->textWidth(blanks));
    QCOMPARE(m_metrics->textWidth(blanks, 1), m_metrics->textWidth(QStringLiteral(" ")));
}

void FontMetricsTest::linesOfATextBoxAreStacked()
{
    const QRect first = m_metrics->lineBox(QStringLiteral("one"));
    const QRect box = m_metrics->textBox(QStringLiteral("one\r\ntwo three\rx"));
    QCOMPARE(box.top(), first.top());
    QCOMPARE(box.bottom(), first.bottom() + 2 * m_metrics->lineSpacing());
    QCOMPARE(box.right(), m_metrics->lineBox(QStringLiteral("two three")).right());
}

void FontMetricsTest::inkTextBoxHoldsTheInkOfTheLine()
{
    const unsigned int h = m_font->glyphIndex(QLatin1Char('H'));
    const QRect one = m_metrics->inkBox(h);
    QCOMPARE(m_metrics->inkTextBox(QStringLiteral("H")), one.translated(-m_metrics->rightBearing(h), 0));
    const QRect two = m_metrics->inkTextBox(QStringLiteral("HH"));
    QCOMPARE(two.width(), one.width() + m_metrics->advance(h));
    QVERIFY(m_metrics->inkTextBox(QString()).isNull());
}

void FontMetricsTest::wrapping_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("asWideAs"); // the limit is one pixel more than this text; empty: no limit
    QTest::addColumn<QStringList>("lines");
    const QString words = QStringLiteral("one two three");
    QTest::newRow("two fit") << words << "one two"
                             << QStringList{QString::fromUtf8("one two"), QString::fromUtf8("three")};
    QTest::newRow("narrower than any word")
        << words << "o" << QStringList{QString::fromUtf8("one"), QString::fromUtf8("two"), QString::fromUtf8("three")};
    QTest::newRow("blank lines vanish") << "a\n\nb\n  "
                                        << "" << QStringList{QString::fromUtf8("a"), QString::fromUtf8("b")};
    QTest::newRow("leading blanks stay, others at the end go") << "  a  b   "
                                                               << "" << QStringList{QString::fromUtf8("  a  b")};
    QTest::newRow("full stop belongs to the last word") << "one two."
                                                        << "" << QStringList{QString::fromUtf8("one two.")};
    QTest::newRow("so does any punctuation")
        << "(one) \"two\"!? (three)"
        << "(one) \"two\"!?" << QStringList{QString::fromUtf8("(one) \"two\"!?"), QString::fromUtf8("(three)")};
    QTest::newRow("symbols alone are words") << "& + \u2603"
                                             << "" << QStringList{QStringLiteral("& + \u2603")};
    QTest::newRow("punctuation alone is a word") << "!!!"
                                                 << "" << QStringList{QString::fromUtf8("!!!")};
    QTest::newRow("ideographs may be parted")
        << "\u4e00\u4e8c\u4e09"
        << "\u4e00\u4e8c" << QStringList{QString::fromUtf8("\u4e00\u4e8c"), QString::fromUtf8("\u4e09")};
    QTest::newRow("nothing") << ""
                             << "" << QStringList{};
}

void FontMetricsTest::wrapping()
{
    QFETCH(QString, text);
    QFETCH(QString, asWideAs);
    QTEST(wrap(text, asWideAs.isEmpty() ? 100000 : m_metrics->textWidth(asWideAs) + 1), "lines");
}

void FontMetricsTest::wrappingAtTheExactWidthBreaks()
{
    QCOMPARE(wrap(QStringLiteral("one two"), m_metrics->textWidth(QStringLiteral("one two"))),
             (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
}

void FontMetricsTest::everyLineHoldsAWord()
{
    const auto lines = m_metrics->wrapText(QStringLiteral("extraordinarily wide words"), -10);
    QCOMPARE(lines.size(), 3);
    for (const WrappedLine* line : lines)
        QCOMPARE(line->width, m_metrics->textWidth(line->text));
    qDeleteAll(lines);
}

void FontMetricsTest::closedFontsMeasureNothing()
{
    m_font->close();
    QCOMPARE(m_metrics->ascent() + m_metrics->descent() + m_metrics->lineSpacing(), 0);
    QCOMPARE(m_metrics->advance(36) + m_metrics->leftBearing(36u) + m_metrics->textWidth(QStringLiteral("A")), 0);
    QVERIFY(m_metrics->lineBox(QStringLiteral("A")).isNull() && m_metrics->inkBox(36).isNull());
    QVERIFY(m_metrics->wrapText(QStringLiteral("A"), 10).isEmpty());
}

KERVAL_TEST(FontMetricsTest)
#include "FontMetricsTest.moc"
