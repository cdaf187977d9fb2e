#include "fontfile/GlyphWorkLimit.h"

#include <QVarLengthArray>
#include <QtEndian>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

#include <cmath>

namespace {

using namespace std::chrono_literals;

constexpr int maxComposedGlyphs = 1024; // real composites stay below 20
constexpr int maxDepth = 32;
constexpr unsigned long maxCompositeBytes = 64 * 1024;
constexpr double cellsOfABand = 512;         // what the rasteriser's pool holds before it splits the picture
constexpr double maxSegments = 4e6;          // some 0.1 s; ornaments a thousand pixels high need less
constexpr auto allowanceForEachCall = 250us; // ten times what real glyphs take
constexpr auto budget = 8s;                  // a line of giant letters on a busy machine takes two

bool readTable(FT_Face face, FT_ULong tag, unsigned long offset, uchar* out, unsigned long length)
{
    FT_ULong wanted = length;
    return FT_Load_Sfnt_Table(face, tag, FT_Long(offset), out, &wanted) == 0;
}

unsigned long tableSize(FT_Face face, FT_ULong tag)
{
    FT_ULong length = 0;
    return FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) == 0 ? length : 0;
}

// Bits of a component's flags, from the description of the 'glyf' table.
enum ComponentFlag
{
    WordArguments = 0x1,
    OneScale = 0x8,
    MoreComponents = 0x20,
    TwoScales = 0x40,
    Matrix = 0x80
};

} // namespace

GlyphWorkLimit::Timed::Timed(GlyphWorkLimit& limit)
    : m_limit(limit)
    , m_start(std::chrono::steady_clock::now())
{
}

GlyphWorkLimit::Timed::~Timed()
{
    const auto taken = std::chrono::steady_clock::now() - m_start;
    if (taken > allowanceForEachCall)
        m_limit.m_spent += taken - allowanceForEachCall;
}

bool GlyphWorkLimit::mayLoad(FT_Face face, unsigned int glyph)
{
    if (m_spent >= budget)
        return false;
    if (m_outlines == Outlines::NotLookedAt)
        m_outlines = locateGlyphs(face) ? Outlines::Found : Outlines::None;
    return m_outlines == Outlines::None || composedGlyphs(face, glyph, 0) < maxComposedGlyphs;
}

bool GlyphWorkLimit::mayRender(const FT_Outline_& outline) const
{
    if (m_spent >= budget)
        return false;
    // The rasteriser goes through the whole outline again for each band of the picture. The length of the control
    // polygon along the axes is about the number of cells that the edges pass through, which makes the bands; a curve
    // is split into straight pieces as the square root of its size.
    double cells = 0;
    double pieces = 0;
    for (int i = 1; i < outline.n_points; ++i) {
        const FT_Vector& from = outline.points[i - 1];
        const FT_Vector& to = outline.points[i];
        const double length = (std::abs(double(to.x) - double(from.x)) + std::abs(double(to.y) - double(from.y))) / 64;
        cells += length;
        pieces += 1 + 2 * std::sqrt(length);
    }
    return pieces * (1 + cells / cellsOfABand) <= maxSegments;
}

bool GlyphWorkLimit::locateGlyphs(FT_Face face)
{
    if (!FT_IS_SFNT(face))
        return false;
    m_glyphDataSize = tableSize(face, TTAG_glyf);
    m_offsetsSize = tableSize(face, TTAG_loca);
    const auto* head = static_cast<const TT_Header*>(FT_Get_Sfnt_Table(face, FT_SFNT_HEAD));
    if (!m_glyphDataSize || !m_offsetsSize || !head)
        return false;
    m_longOffsets = head->Index_To_Loc_Format != 0;
    return true;
}

int GlyphWorkLimit::composedGlyphs(FT_Face face, unsigned int glyph, int depth)
{
    const auto known = m_composed.constFind(glyph);
    if (known != m_composed.cend())
        return *known;
    if (depth > maxDepth)
        return maxComposedGlyphs;

    // Where the glyph's data lies, read as FreeType reads it: offsets beyond the table or in the wrong order are
    // mended.
    const unsigned long width = m_longOffsets ? 4 : 2;
    uchar raw[8] = {};
    if ((glyph + 2ul) * width > m_offsetsSize || !readTable(face, TTAG_loca, glyph * width, raw, 2 * width))
        return m_composed[glyph] = 1;
    const unsigned long start = m_longOffsets ? qFromBigEndian<quint32>(raw) : 2ul * qFromBigEndian<quint16>(raw);
    const unsigned long end = m_longOffsets ? qFromBigEndian<quint32>(raw + 4) : 2ul * qFromBigEndian<quint16>(raw + 2);
    if (start >= m_glyphDataSize)
        return m_composed[glyph] = 1;
    const unsigned long limit = end >= start ? qMin(end, m_glyphDataSize) : m_glyphDataSize;
    constexpr unsigned long headerSize = 10;
    uchar header[2] = {};
    if (limit - start < headerSize || !readTable(face, TTAG_glyf, start, header, 2) ||
        qFromBigEndian<qint16>(header) >= 0)
        return m_composed[glyph] = 1;

    const unsigned long size = qMin(limit - start - headerSize, maxCompositeBytes);
    QVarLengthArray<uchar, 512> data(static_cast<int>(size));
    if (!readTable(face, TTAG_glyf, start + headerSize, data.data(), size))
        return m_composed[glyph] = 1;

    m_composed[glyph] = maxComposedGlyphs; // what a part that leads back here finds
    int count = 1;
    unsigned long at = 0;
    bool more = true;
    while (more && at + 4 <= size) {
        const uint flags = qFromBigEndian<quint16>(data.constData() + at);
        const uint part = qFromBigEndian<quint16>(data.constData() + at + 2);
        at += 4 + (flags & WordArguments ? 4u : 2u);
        at += flags & OneScale ? 2u : flags & TwoScales ? 4u : flags & Matrix ? 8u : 0u;
        count = qMin(maxComposedGlyphs, count + composedGlyphs(face, part, depth + 1));
        more = flags & MoreComponents && count < maxComposedGlyphs;
    }
    m_composed[glyph] = count;
    return count;
}
