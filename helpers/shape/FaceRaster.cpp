#include "helpers/shape/FaceRaster.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include FT_OUTLINE_H

namespace krv {

namespace {

constexpr int kMostPoints = 20000;
constexpr long kFarthest = 12L * FaceRaster::kPixelsPerEm * 64; // in 1/64 pixel from the origin
constexpr unsigned long kSymbolPage = 0xF000;
constexpr char kTelling[] = {'a', 'e', 'h', 'n', 'o', 't', 'A', 'E', 'H', 'N', 'O', 'T'};

} // namespace

FaceRaster::FaceRaster(FT_Face face)
    : m_face(face)
{
    FT_Set_Transform(face, nullptr, nullptr);
    if (FT_IS_SCALABLE(face)) {
        m_usable = FT_Set_Pixel_Sizes(face, 0, kPixelsPerEm) == 0;
        m_pixelsPerEm = kPixelsPerEm;
    } else if (FT_HAS_FIXED_SIZES(face)) {
        const auto size = [face](int i) { return face->available_sizes[i].y_ppem; };
        int best = 0;
        for (int i = 1; i < face->num_fixed_sizes; ++i) {
            const bool closer = std::labs(size(i) - 64L * kPixelsPerEm) < std::labs(size(best) - 64L * kPixelsPerEm);
            best = closer ? i : best;
        }
        m_usable = FT_Select_Size(face, best) == 0 && size(best) > 0 && size(best) < 64L * 1024;
        m_pixelsPerEm = static_cast<float>(size(best)) / 64;
    }
    chooseCharmap();
}

// A Unicode map without any letter, as symbol fonts have it, tells less than what typing letters gives in the font's
// own encoding.
void FaceRaster::chooseCharmap()
{
    const auto hasLetters = [this] {
        return std::any_of(std::begin(kTelling), std::end(kTelling),
                           [this](char letter) { return glyphFor(static_cast<unsigned char>(letter)) != 0; });
    };
    const bool unicode = FT_Select_Charmap(m_face, FT_ENCODING_UNICODE) == 0;
    if (unicode && hasLetters()) {
        return;
    }
    for (const FT_Encoding encoding : {FT_ENCODING_MS_SYMBOL, FT_ENCODING_ADOBE_CUSTOM, FT_ENCODING_NONE}) {
        m_symbol = encoding == FT_ENCODING_MS_SYMBOL;
        if (FT_Select_Charmap(m_face, encoding) == 0 && hasLetters()) {
            return;
        }
    }
    m_symbol = false;
    if (unicode) {
        FT_Select_Charmap(m_face, FT_ENCODING_UNICODE);
    } else if (m_face->num_charmaps > 0) {
        FT_Set_Charmap(m_face, m_face->charmaps[0]);
    }
}

unsigned FaceRaster::glyphFor(unsigned long character) const
{
    unsigned glyph = FT_Get_Char_Index(m_face, character);
    if (glyph == 0 && m_symbol) {
        glyph = FT_Get_Char_Index(m_face, kSymbolPage | character);
    }
    return glyph;
}

bool FaceRaster::load(unsigned glyph)
{
    const int flags = FT_IS_SCALABLE(m_face) ? FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP : FT_LOAD_DEFAULT;
    if (!m_usable || glyph == 0 || FT_Load_Glyph(m_face, glyph, flags) != 0) {
        return false;
    }
    if (m_face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return m_face->glyph->format == FT_GLYPH_FORMAT_BITMAP;
    }
    const FT_Outline& outline = m_face->glyph->outline;
    if (outline.n_points <= 0 || outline.n_points > kMostPoints) {
        return false;
    }
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    return box.xMin > -kFarthest && box.yMin > -kFarthest && box.xMax < kFarthest && box.yMax < kFarthest;
}

bool FaceRaster::draw(unsigned glyph, GlyphCoverage& coverage, GlyphPlacement& placement)
{
    if (!load(glyph) || FT_Render_Glyph(m_face->glyph, FT_RENDER_MODE_NORMAL) != 0) {
        return false;
    }
    const FT_GlyphSlot slot = m_face->glyph;
    placement.left = static_cast<float>(slot->bitmap_left);
    placement.top = static_cast<float>(slot->bitmap_top);
    placement.advance = static_cast<float>(slot->advance.x) / 64;
    return convert(slot->bitmap, coverage);
}

bool FaceRaster::convert(const FT_Bitmap& bitmap, GlyphCoverage& coverage)
{
    const auto width = static_cast<int>(bitmap.width);
    const auto height = static_cast<int>(bitmap.rows);
    if (width <= 0 || height <= 0 || !bitmap.buffer) {
        return false;
    }
    const std::uint8_t* first = bitmap.buffer;
    if (bitmap.pitch < 0) {
        first -= static_cast<std::ptrdiff_t>(bitmap.pitch) * (height - 1);
    }
    if (bitmap.pixel_mode == FT_PIXEL_MODE_GRAY) {
        coverage = {first, width, height, bitmap.pitch};
        return true;
    }
    if (bitmap.pixel_mode != FT_PIXEL_MODE_MONO && bitmap.pixel_mode != FT_PIXEL_MODE_BGRA) {
        return false;
    }
    m_pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* line = first + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
        std::uint8_t* target = &m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)];
        for (int x = 0; x < width; ++x) {
            if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO) {
                target[x] = (line[x >> 3] >> (7 - (x & 7))) & 1 ? 255 : 0;
            } else {
                target[x] = line[4 * x + 3];
            }
        }
    }
    coverage = {m_pixels.data(), width, height, width};
    return true;
}

float FaceRaster::topOf(unsigned glyph)
{
    if (!load(glyph)) {
        return 0;
    }
    return static_cast<float>(m_face->glyph->metrics.horiBearingY) / 64;
}

} // namespace krv
