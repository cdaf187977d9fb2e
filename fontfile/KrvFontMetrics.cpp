#include "fontfile/KrvFontMetrics.h"

#include "fontfile/InkBounds.h"
#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvGlyphLayout.h"
#include "fontfile/TextWords.h"

#include <QStringList>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace {

// Far beyond any picture that is drawn, and small enough that a few of them add up within an int.
constexpr int maxMetric = 1 << 20;
constexpr int maxSum = 1 << 29;

int bounded(qint64 pixels, int limit = maxMetric)
{
    return int(qBound<qint64>(-limit, pixels, limit));
}

int wholePixels(FT_Pos value)
{
    return bounded(value >> 6);
}

void collectInk(int y, int count, const FT_Span* spans, void* user)
{
    static_cast<InkBounds*>(user)->add(y, count, spans);
}

} // namespace

KrvFontMetrics::KrvFontMetrics(KrvFontFile* font)
    : m_font(font)
{
    static const int registered = [] {
        qRegisterMetaTypeStreamOperators<MetricsCorrection>("KrvFontMetrics::MetricsCorrection");
        return qRegisterMetaType<MetricsCorrection>("KrvFontMetrics::MetricsCorrection");
    }();
    Q_UNUSED(registered)
}

int KrvFontMetrics::ascent() const
{
    const FT_Face face = m_font->face();
    if (!face)
        return 0;
    if (m_font->hasMetricsCorrection())
        return qRound(
            qBound(-double(maxMetric), m_font->pixelSize() * m_font->metricsCorrection().c2, double(maxMetric)));
    const int winAscent = m_font->winAscent();
    return winAscent ? bounded(winAscent) : wholePixels(face->size->metrics.ascender);
}

int KrvFontMetrics::descent() const
{
    const FT_Face face = m_font->face();
    if (!face)
        return 0;
    if (m_font->hasMetricsCorrection())
        return m_font->pixelSize() - ascent();
    const int winDescent = m_font->winDescent();
    return winDescent ? bounded(winDescent) : wholePixels(-face->size->metrics.descender);
}

int KrvFontMetrics::lineSpacing() const
{
    const FT_Face face = m_font->face();
    if (!face)
        return 0;
    const FT_Size_Metrics& size = face->size->metrics;
    const int lineGap = wholePixels(size.descender - size.ascender + size.height);
    return ascent() + descent() + lineGap + 1;
}

int KrvFontMetrics::advance(unsigned int glyph, unsigned int nextGlyph) const
{
    const FT_Face face = m_font->face();
    if (!face)
        return 0;
    int pixels = m_font->hintedAdvance(glyph);
    FT_Vector kerning;
    if (nextGlyph != 0 && FT_Get_Kerning(face, glyph, nextGlyph, FT_KERNING_DEFAULT, &kerning) == 0)
        pixels += bounded((qint64(kerning.x) + 32) >> 6);
    return pixels;
}

int KrvFontMetrics::leftBearing(unsigned int glyph) const
{
    const FT_GlyphSlot slot = m_font->loadGlyph(glyph);
    return slot ? wholePixels(slot->metrics.horiBearingX) : 0;
}

int KrvFontMetrics::leftBearing(QChar c) const
{
    return leftBearing(m_font->glyphIndex(c));
}

int KrvFontMetrics::glyphWidth(unsigned int glyph) const
{
    const FT_GlyphSlot slot = m_font->loadGlyph(glyph);
    return slot ? wholePixels(slot->metrics.width) : 0;
}

int KrvFontMetrics::rightBearing(unsigned int glyph) const
{
    const int width = glyphWidth(glyph);
    return width < 1 ? 0 : advance(glyph) - leftBearing(glyph) - width;
}

QRect KrvFontMetrics::glyphBox(unsigned int glyph) const
{
    const FT_GlyphSlot slot = glyph ? m_font->loadGlyph(glyph) : nullptr;
    if (!slot)
        return QRect();
    const FT_Glyph_Metrics& metrics = slot->metrics;
    return QRect(QPoint(wholePixels(metrics.horiBearingX), 1 - wholePixels(metrics.horiBearingY)),
                 QSize(wholePixels(metrics.width) + 1, wholePixels(metrics.height) + 1));
}

QRect KrvFontMetrics::glyphBox(QChar c) const
{
    return glyphBox(m_font->glyphIndex(c));
}

QRect KrvFontMetrics::inkBox(unsigned int glyph) const
{
    InkBounds ink;
    const FT_GlyphSlot slot = m_font->loadGlyph(glyph, true);
    if (slot && slot->format == FT_GLYPH_FORMAT_OUTLINE)
        m_font->renderOutline(&slot->outline, collectInk, &ink);
    return ink.rect();
}

int KrvFontMetrics::textWidth(const QString& text, int length) const
{
    KrvGlyphLayout layout(m_font);
    layout.setText(length < 0 ? text : text.left(length));
    return layout.textWidth(0, layout.text().size());
}

QRect KrvFontMetrics::lineBox(const QString& line) const
{
    if (!m_font->isOpen())
        return QRect();
    KrvGlyphLayout layout(m_font);
    layout.setText(line);
    int width = layout.textWidth(0, line.size());
    const auto glyphs = layout.glyphs();
    if (!glyphs.isEmpty())
        width -= leftBearing(glyphs.first());
    if (glyphs.size() > 1)
        width -= leftBearing(glyphs.last());
    return QRect(QPoint(0, -ascent()), QPoint(width, descent()));
}

QRect KrvFontMetrics::textBox(const QString& text) const
{
    if (!m_font->isOpen())
        return QRect();
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const qint64 spacing = lineSpacing();
    QRect box;
    qint64 i = 0;
    for (const QString& line : lines.split(QLatin1Char('\n')))
        box |= lineBox(line).translated(0, bounded(spacing * i++, maxSum));
    return box;
}

QRect KrvFontMetrics::inkTextBox(const QString& line) const
{
    KrvGlyphLayout layout(m_font);
    layout.setText(line);
    const auto glyphs = layout.glyphs();
    const auto advances = layout.advances();
    QRect box;
    qint64 pen = 0;
    for (int i = 0; i < glyphs.size(); ++i) {
        box |= inkBox(glyphs[i]).translated(bounded(pen, maxSum), 0);
        pen += advances[i];
    }
    if (!glyphs.isEmpty())
        box.translate(-rightBearing(glyphs.last()), 0);
    return box;
}

QList<WrappedLine*> KrvFontMetrics::wrapText(const QString& text, int maxWidth) const
{
    QList<WrappedLine*> lines;
    if (!m_font->isOpen())
        return lines;
    for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
        KrvGlyphLayout layout(m_font);
        layout.setText(paragraph);
        int start = 0;
        int end = 0;
        const auto emitLine = [&] {
            lines.append(new WrappedLine{paragraph.mid(start, end - start), layout.textWidth(start, end - start)});
        };
        for (const TextWord& word : wordsOf(paragraph)) {
            const int wordEnd = word.start + word.length;
            if (end > start && layout.textWidth(start, wordEnd - start) >= maxWidth) {
                emitLine();
                start = word.start;
            }
            end = wordEnd;
        }
        if (end > start)
            emitLine();
    }
    return lines;
}
