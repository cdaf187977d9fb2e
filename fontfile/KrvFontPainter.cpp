#include "fontfile/KrvFontPainter.h"

#include "fontfile/InkBounds.h"
#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvGlyphLayout.h"
#include "fontfile/PainterPaintDevice.h"

#include <QPainter>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <memory>
#include <vector>

namespace {

struct SpanContext
{
    InkBounds* ink; // may be null
    KrvFontPainter::PaintDeviceWrapper* device;
    QPoint offset;
};

void drawSpans(int y, int count, const FT_Span* spans, void* user)
{
    const auto& context = *static_cast<const SpanContext*>(user);
    if (context.ink)
        context.ink->add(y, count, spans);
    for (int i = 0; i < count; ++i) {
        const FT_Span& span = spans[i];
        if (span.len != 0)
            context.device->drawSpan(span.x + context.offset.x(), context.offset.y() - y, span.len, span.coverage);
    }
}

int withDefaults(int flags)
{
    if (!(flags & (Qt::AlignTop | Qt::AlignBottom | Qt::AlignVCenter)))
        flags |= Qt::AlignTop;
    if (!(flags & (Qt::AlignLeft | Qt::AlignRight | Qt::AlignHCenter)))
        flags |= Qt::AlignLeft;
    return flags;
}

std::vector<std::unique_ptr<WrappedLine>> wrapped(const KrvFontMetrics& metrics, const QString& text, int width)
{
    std::vector<std::unique_ptr<WrappedLine>> lines;
    for (WrappedLine* line : metrics.wrapText(text, width))
        lines.emplace_back(line);
    return lines;
}

} // namespace

KrvFontPainter::KrvFontPainter(QPainter* painter, KrvFontFile* font)
    : m_font(font)
    , m_painter(painter)
{
}

void KrvFontPainter::drawLine(PaintDeviceWrapper& device, const QPoint& baselineOrigin, const QString& text,
                              QRect* drawnRect)
{
    if (!m_font->isOpen())
        return;
    device.save();
    device.translate(baselineOrigin);
    KrvGlyphLayout layout(m_font);
    layout.setText(text);
    const auto glyphs = layout.glyphs();
    const auto advances = layout.advances();
    const auto offsets = layout.offsets();

    QRect drawn;
    int pen = 0;
    int firstBearing = 0;
    for (int i = 0; i < glyphs.size(); ++i) {
        if (i == 0) {
            firstBearing = KrvFontMetrics(m_font).leftBearing(glyphs[0]);
            device.translate(-firstBearing, 0);
        }
        const FT_GlyphSlot slot = m_font->loadGlyph(glyphs[i]);
        if (!slot)
            continue;
        InkBounds ink;
        if (slot->outline.n_points > 0 && slot->outline.n_contours > 0) {
            SpanContext context{drawnRect ? &ink : nullptr, &device, offsets[i]};
            if (!m_font->renderOutline(&slot->outline, drawSpans, &context))
                break;
        }
        device.translate(advances[i], 0);
        // The first ink is recorded without the pen: leading blanks do not move the rectangle.
        const QRect inked = ink.rect();
        if (drawn.isNull())
            drawn = inked;
        else if (!inked.isNull())
            drawn |= inked.translated(pen, 0);
        pen = int(qMin<qint64>(qint64(pen) + advances[i], 1 << 29));
    }
    if (drawnRect)
        *drawnRect = drawn.translated(-firstBearing, 0).translated(baselineOrigin);
    device.restore();
}

void KrvFontPainter::drawText(PaintDeviceWrapper& device, const QRect& rect, int flags, const QString& text,
                              QRect* drawnRect)
{
    QString paragraphs = text;
    paragraphs.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const KrvFontMetrics metrics(m_font);
    const auto lines = wrapped(metrics, paragraphs, rect.width());
    flags = withDefaults(flags);
    const int ascent = metrics.ascent();
    const int descent = metrics.descent();

    if (lines.size() == 1) {
        const int lineWidth = lines.front()->width;
        int y = rect.top();
        if (flags & Qt::AlignTop)
            y += ascent;
        else if (flags & Qt::AlignVCenter)
            y += rect.height() / 2 + (ascent - descent) / 2;
        else
            y += rect.bottom() - rect.top() - descent;
        // Added to the left edge, which a left-aligned line thus counts twice; callers' rectangles begin at 0.
        int offset = rect.left();
        if (flags & Qt::AlignRight)
            offset = rect.right() - lineWidth - rect.left() + 1;
        else if (flags & Qt::AlignHCenter)
            offset = rect.width() / 2 - lineWidth / 2;
        drawLine(device, QPoint(rect.left() + offset, y), lines.front()->text, drawnRect);
        return;
    }

    const int spacing = metrics.lineSpacing();
    const qint64 height = qint64(ascent) + descent + (qint64(lines.size()) - 1) * spacing;
    qint64 y = 0;
    if (flags & Qt::AlignTop)
        y = rect.top() + ascent;
    else if (flags & Qt::AlignVCenter)
        y = ascent + (rect.height() - height) / 2;
    else
        y = rect.height() - height + ascent;
    QRect drawn;
    for (const auto& line : lines) {
        int x = rect.left();
        if (flags & Qt::AlignRight)
            x = rect.width() - line->width;
        else if (flags & Qt::AlignHCenter)
            x = rect.width() / 2 - line->width / 2;
        QRect lineDrawn;
        drawLine(device, QPoint(x, int(qBound<qint64>(-(1 << 29), y, 1 << 29))), line->text,
                 drawnRect ? &lineDrawn : nullptr);
        drawn |= lineDrawn;
        y += spacing;
    }
    if (drawnRect)
        *drawnRect = drawn;
}

void KrvFontPainter::drawText(const QRect& rect, int flags, const QString& text, QRect* drawnRect)
{
    if (!m_font->isOpen())
        return;
    PainterPaintDevice device(m_painter);
    drawText(device, rect, flags, text, drawnRect);
}

void KrvFontPainter::drawCharacter(const QRect& rect, int flags, QChar ch)
{
    drawGlyph(rect, flags, m_font->glyphIndex(ch));
}

void KrvFontPainter::drawGlyph(const QRect& rect, int flags, unsigned int glyph)
{
    m_painter->save();
    m_painter->setClipRect(rect, Qt::ReplaceClip);
    m_painter->translate(rect.topLeft());
    flags = withDefaults(flags);
    const KrvFontMetrics metrics(m_font);
    const QRect box = metrics.glyphBox(glyph);
    int y = 0;
    if (flags & Qt::AlignTop)
        y = metrics.ascent();
    else if (flags & Qt::AlignVCenter)
        y = box.height() / 2 + rect.height() / 2;
    else
        y = rect.height() + metrics.descent(); // below the cell; the clip cuts it
    int x = rect.left();
    if (flags & Qt::AlignRight)
        x = rect.width() + box.left() - box.right();
    else if (flags & Qt::AlignHCenter)
        x = rect.width() / 2 - box.width() / 2;
    drawGlyphAt(QPoint(x - metrics.leftBearing(glyph), y), glyph);
    m_painter->restore();
}

void KrvFontPainter::drawCharacterAt(const QPoint& baselineOrigin, QChar ch)
{
    drawGlyphAt(baselineOrigin, m_font->glyphIndex(ch));
}

void KrvFontPainter::drawGlyphAt(const QPoint& baselineOrigin, unsigned int glyph)
{
    m_painter->save();
    m_painter->translate(baselineOrigin);
    PainterPaintDevice device(m_painter);
    drawOutline(device, glyph);
    m_painter->restore();
}

void KrvFontPainter::drawOutline(PaintDeviceWrapper& device, unsigned int glyph)
{
    const FT_GlyphSlot slot = glyph ? m_font->loadGlyph(glyph) : nullptr;
    if (!slot || slot->format != FT_GLYPH_FORMAT_OUTLINE)
        return;
    SpanContext context{nullptr, &device, QPoint()};
    m_font->renderOutline(&slot->outline, drawSpans, &context);
}
