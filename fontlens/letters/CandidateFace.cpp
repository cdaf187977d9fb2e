#include "fontlens/letters/CandidateFace.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace kerval::letters {

namespace {

constexpr int mostPoints = 20000;
constexpr long farthest = 6L * GlyphOutline::unitsPerEm;
constexpr FT_ULong symbolPage = 0xF000;

} // namespace

CandidateFace::CandidateFace(const QString& file, int faceIndex)
    : m_file(file)
{
    if (!m_file.open(faceIndex) || !FT_IS_SCALABLE(m_file.face()))
        return;
    const FT_Face face = m_file.face();
    if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0) {
        m_symbol = FT_Select_Charmap(face, FT_ENCODING_MS_SYMBOL) == 0;
        if (!m_symbol && face->num_charmaps > 0)
            FT_Set_Charmap(face, face->charmaps[0]);
    }
    FT_Set_Transform(face, nullptr, nullptr);
    m_open = FT_Set_Pixel_Sizes(face, 0, GlyphOutline::unitsPerEm / 64) == 0;
}

GlyphOutline CandidateFace::outline(QChar character)
{
    if (!m_open)
        return {};
    const FT_Face face = m_file.face();
    FT_UInt glyph = FT_Get_Char_Index(face, character.unicode());
    if (glyph == 0 && m_symbol)
        glyph = FT_Get_Char_Index(face, symbolPage | character.unicode());
    if (glyph == 0 || !m_limit.mayLoad(face, glyph))
        return {};
    const GlyphWorkLimit::Timed timed(m_limit);
    if (FT_Load_Glyph(face, glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    const FT_Outline& outline = face->glyph->outline;
    if (outline.n_points <= 0 || outline.n_points > mostPoints || outline.n_contours <= 0 ||
        !m_limit.mayRender(outline))
        return {};
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    if (box.xMin < -farthest || box.yMin < -farthest || box.xMax > farthest || box.yMax > farthest ||
        box.xMax <= box.xMin || box.yMax <= box.yMin)
        return {};
    return GlyphOutline(outline);
}

} // namespace kerval::letters
