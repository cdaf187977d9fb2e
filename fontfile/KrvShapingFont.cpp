#include "fontfile/KrvShapingFont.h"

#include "fontfile/KrvFontFilePrivate.h"
#include "fontfile/KrvShaperData.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <hb.h>

#include <cstdlib>

namespace {

// A font's substitutions may turn a character into thousands of glyphs; real ones stay below four.
constexpr unsigned int maxGlyphsForEachUnit = 16;
constexpr int maxAdvance = 1 << 20;

KrvFontFilePrivate& ownerOf(void* fontData)
{
    return *static_cast<KrvFontFilePrivate*>(fontData);
}

hb_blob_t* loadTable(hb_face_t*, hb_tag_t tag, void* userData)
{
    const auto face = static_cast<FT_Face>(userData);
    FT_ULong length = 0;
    if (!FT_IS_SFNT(face) || FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) != 0 || length == 0)
        return nullptr;
    auto* data = static_cast<FT_Byte*>(std::malloc(length));
    if (!data)
        return nullptr;
    if (FT_Load_Sfnt_Table(face, tag, 0, data, &length) != 0) {
        std::free(data);
        return nullptr;
    }
    return hb_blob_create(reinterpret_cast<const char*>(data), uint(length), HB_MEMORY_MODE_WRITABLE, data, std::free);
}

hb_bool_t nominalGlyph(hb_font_t*, void* data, hb_codepoint_t unicode, hb_codepoint_t* glyph, void*)
{
    *glyph = FT_Get_Char_Index(ownerOf(data).face(), unicode);
    return *glyph != 0;
}

hb_position_t horizontalAdvance(hb_font_t*, void* data, hb_codepoint_t glyph, void*)
{
    return ownerOf(data).hintedAdvance(glyph) * 64;
}

// Marks stay where the font draws them unless its tables place them: with extents the shaper would move the marks of
// fonts without such tables by a rule of its own.
hb_bool_t glyphExtents(hb_font_t*, void*, hb_codepoint_t, hb_glyph_extents_t* extents, void*)
{
    *extents = {};
    return false;
}

hb_bool_t contourPoint(hb_font_t*, void* data, hb_codepoint_t glyph, unsigned int point, hb_position_t* x,
                       hb_position_t* y, void*)
{
    const FT_GlyphSlot slot = ownerOf(data).loadUncached(glyph, FT_LOAD_DEFAULT);
    if (!slot || slot->format != FT_GLYPH_FORMAT_OUTLINE || point >= uint(slot->outline.n_points))
        return false;
    *x = hb_position_t(slot->outline.points[point].x);
    *y = hb_position_t(slot->outline.points[point].y);
    return true;
}

hb_font_funcs_t* fontFunctions()
{
    static hb_font_funcs_t* const functions = [] {
        hb_font_funcs_t* made = hb_font_funcs_create();
        hb_font_funcs_set_nominal_glyph_func(made, nominalGlyph, nullptr, nullptr);
        hb_font_funcs_set_glyph_h_advance_func(made, horizontalAdvance, nullptr, nullptr);
        hb_font_funcs_set_glyph_extents_func(made, glyphExtents, nullptr, nullptr);
        hb_font_funcs_set_glyph_contour_point_func(made, contourPoint, nullptr, nullptr);
        hb_font_funcs_make_immutable(made);
        return made;
    }();
    return functions;
}

} // namespace

KrvShapingFont::KrvShapingFont(KrvFontFilePrivate* owner)
    : m_owner(owner)
    , m_face(hb_face_create_for_tables(loadTable, owner->face(), nullptr))
    , m_buffer(hb_buffer_create())
{
    hb_face_set_upem(m_face, owner->face()->units_per_EM);
    hb_face_set_glyph_count(m_face, uint(owner->face()->num_glyphs));
    m_font = hb_font_create(m_face);
    hb_font_set_funcs(m_font, fontFunctions(), owner, nullptr);
    // A lone surrogate is a character the font does not have, not another one in its place.
    hb_buffer_set_replacement_codepoint(m_buffer, 0xFFFF);
    updateSize();
}

KrvShapingFont::~KrvShapingFont()
{
    hb_buffer_destroy(m_buffer);
    hb_font_destroy(m_font);
    hb_face_destroy(m_face);
}

void KrvShapingFont::updateSize()
{
    const FT_Face face = m_owner->face();
    const FT_Size_Metrics& size = face->size->metrics;
    const auto scale = [face](FT_Fixed factor) { return int(FT_MulFix(face->units_per_EM, factor)); };
    hb_font_set_scale(m_font, scale(size.x_scale), scale(size.y_scale));
    hb_font_set_ppem(m_font, size.x_ppem, size.y_ppem);
    forgetTexts();
}

void KrvShapingFont::forgetTexts()
{
    m_lastText.clear();
    m_lastShaped.reset();
}

std::shared_ptr<const KrvShaperData> KrvShapingFont::shape(const QString& text)
{
    if (!m_lastShaped || m_lastText != text) {
        m_lastShaped = shapeAnew(text);
        m_lastText = text;
    }
    return m_lastShaped;
}

std::shared_ptr<const KrvShaperData> KrvShapingFont::shapeAnew(const QString& text)
{
    hb_buffer_clear_contents(m_buffer);
    hb_buffer_set_direction(m_buffer, HB_DIRECTION_LTR);
    hb_buffer_set_script(m_buffer, HB_SCRIPT_COMMON);
    hb_buffer_add_utf16(m_buffer, text.utf16(), text.size(), 0, text.size());
    // Only OpenType: other shapers run programs that the font brings, and leak when these are damaged.
    static const char* const shapers[] = {"ot", nullptr};
    hb_shape_full(m_font, m_buffer, nullptr, 0, shapers);

    unsigned int count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(m_buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(m_buffer, &count);
    if (!hb_buffer_allocation_successful(m_buffer) || count / maxGlyphsForEachUnit > uint(text.size()))
        return nullptr;

    auto shaped = std::make_shared<KrvShaperData>();
    const int glyphCount = int(count);
    shaped->glyphs.resize(glyphCount);
    shaped->attributes.resize(glyphCount);
    shaped->advances.resize(glyphCount);
    shaped->offsets.resize(glyphCount);
    shaped->pens.resize(glyphCount + 1);
    shaped->logClusters.resize(text.size());
    const auto toPixels = [](hb_position_t value) { return qBound(-maxAdvance, value >> 6, maxAdvance); };
    qint64 pen = 0;
    int unit = 0;
    quint32 clusterGlyph = 0;
    for (int i = 0; i < glyphCount; ++i) {
        const bool startsCluster = i == 0 || infos[i].cluster != infos[i - 1].cluster;
        if (startsCluster) {
            while (unit < int(infos[i].cluster))
                shaped->logClusters[unit++] = clusterGlyph;
            clusterGlyph = quint32(i);
        }
        shaped->glyphs[i] = infos[i].codepoint;
        shaped->attributes[i] = quint16((startsCluster ? KrvGlyphLayout::ClusterStart : 0) |
                                        (hb_glyph_info_get_glyph_flags(&infos[i]) & HB_GLYPH_FLAG_UNSAFE_TO_BREAK
                                             ? KrvGlyphLayout::UnsafeToBreak
                                             : 0));
        shaped->advances[i] = toPixels(positions[i].x_advance);
        shaped->offsets[i] = QPoint(toPixels(positions[i].x_offset), toPixels(-positions[i].y_offset));
        shaped->pens[i] = pen;
        pen += shaped->advances[i];
    }
    shaped->pens[glyphCount] = pen;
    while (unit < text.size())
        shaped->logClusters[unit++] = clusterGlyph;
    return shaped;
}
