#include "fontfile/KrvGlyphLayout.h"

#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvShaperData.h"
#include "fontfile/KrvShapingFont.h"

#include <QTextBoundaryFinder>

namespace {

constexpr qint64 maxWidth = 1 << 30;

} // namespace

KrvGlyphLayout::KrvGlyphLayout(KrvFontFile* font, QObject* parent)
    : QObject(parent)
    , m_font(font)
{
}

KrvGlyphLayout::~KrvGlyphLayout() = default;

void KrvGlyphLayout::setText(const QString& text)
{
    m_text = text;
    KrvShapingFont* shapingFont = text.isEmpty() ? nullptr : m_font->shapingFont();
    m_shaper = shapingFont ? shapingFont->shape(text) : nullptr;
}

QString KrvGlyphLayout::text() const
{
    return m_text;
}

int KrvGlyphLayout::glyphCount() const
{
    return m_shaper ? m_shaper->glyphs.size() : 0;
}

KrvGlyphLayout::Buffer<quint32> KrvGlyphLayout::glyphs() const
{
    return m_shaper ? m_shaper->glyphs : Buffer<quint32>();
}

KrvGlyphLayout::Buffer<quint16> KrvGlyphLayout::attributes() const
{
    return m_shaper ? m_shaper->attributes : Buffer<quint16>();
}

KrvGlyphLayout::Buffer<qint32> KrvGlyphLayout::advances() const
{
    return m_shaper ? m_shaper->advances : Buffer<qint32>();
}

KrvGlyphLayout::Buffer<QPoint> KrvGlyphLayout::offsets() const
{
    return m_shaper ? m_shaper->offsets : Buffer<QPoint>();
}

KrvGlyphLayout::Buffer<quint32> KrvGlyphLayout::logClusters() const
{
    return m_shaper ? m_shaper->logClusters : Buffer<quint32>();
}

QVector<KrvGlyphLayout::CharAttributes> KrvGlyphLayout::charAttributes() const
{
    if (!m_shaper)
        return {};
    QVector<CharAttributes> attributes(m_text.size());
    const auto mark = [&](QTextBoundaryFinder::BoundaryType type, bool CharAttributes::*flag) {
        QTextBoundaryFinder finder(type, m_text);
        for (int at = 0; at >= 0 && at < attributes.size(); at = finder.toNextBoundary())
            attributes[at].*flag = true;
    };
    mark(QTextBoundaryFinder::Line, &CharAttributes::lineBreak);
    mark(QTextBoundaryFinder::Grapheme, &CharAttributes::charStop);
    mark(QTextBoundaryFinder::Word, &CharAttributes::wordBoundary);
    for (int i = 0; i < attributes.size(); ++i)
        attributes[i].whiteSpace = m_text.at(i).isSpace();
    return attributes;
}

int KrvGlyphLayout::textWidth(int from, int length) const
{
    if (!m_shaper || length <= 0)
        return 0;
    const auto penBefore = [this](int unit) {
        const auto& clusters = m_shaper->logClusters;
        return m_shaper->pens[unit < clusters.size() ? int(clusters[unit]) : m_shaper->glyphs.size()];
    };
    const int start = qBound(0, from, m_text.size());
    const int end = int(qBound<qint64>(start, qint64(from) + length, m_text.size()));
    return int(qBound(-maxWidth, penBefore(end) - penBefore(start), maxWidth));
}
