#pragma once

#include <cstdint>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// Draws letters of a face at the size the features use. Sets the face's size, transform and charmap for its own use.
// Hostile outlines are refused before they cost time: too many points, or far larger than the em.
class FaceRaster
{
public:
    // At this size the capitals are some 56 pixels high and a hairline is two pixels wide.
    static constexpr int kPixelsPerEm = 80;

    explicit FaceRaster(FT_Face face);

    bool isUsable() const { return m_usable; }
    float pixelsPerEm() const { return m_pixelsPerEm; }

    // The glyph that typing the character gives: by Unicode, else by the face's symbol or own encoding; 0 when none.
    unsigned glyphFor(unsigned long character) const;

    // The coverage stays valid until the next call; the placement's capital height is left alone.
    bool draw(unsigned glyph, GlyphCoverage& coverage, GlyphPlacement& placement);
    // Top of the glyph over the baseline in pixels without drawing it; 0 when there is none.
    float topOf(unsigned glyph);

private:
    void chooseCharmap();
    bool load(unsigned glyph);
    bool convert(const FT_Bitmap& bitmap, GlyphCoverage& coverage);

    FT_Face m_face;
    float m_pixelsPerEm = 0;
    bool m_usable = false;
    bool m_symbol = false;
    std::vector<std::uint8_t> m_pixels; // of strikes that are not 8-bit grey
};

} // namespace krv
