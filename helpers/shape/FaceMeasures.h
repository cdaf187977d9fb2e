#pragma once

#include <array>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "helpers/shape/GlyphFeatures.h"
#include "helpers/shape/GlyphMeasures.h"

namespace krv {

// One letter as drawn; lengths in pixels at FaceShape::pixelsPerEm.
struct LetterShape
{
    bool present = false;
    unsigned glyph = 0;
    GlyphMeasures measures;
    float left = 0;
    float bottom = 0; // over the baseline
    float width = 0;
    float height = 0;
    float advance = 0;
};

// The letters of a face and the heights they share.
struct FaceShape
{
    std::array<LetterShape, kFeatureLetterCount> letters;
    float pixelsPerEm = 1;
    float capitalHeight = 0; // > 0 once there is any letter
    float xHeight = 0;
    int present = 0;

    const LetterShape& letter(char character) const;
    // Median of a length over those of the letters that are present; 0 when none is.
    template <typename Length>
    float median(const char* characters, Length length) const;
};

// The record's numbers, see FaceAnalysis for their scales.
struct FaceMeasures
{
    int hwe = 0;
    int hwi = 0;
    int hhe = 0;
    int specificWidth = 0;
    int specificHeight = 0;
    int italicAngle = 0;

    float stem = 0;     // share of the x-height
    float contrast = 1; // stem against the thin strokes

    static FaceMeasures of(FT_Face face, const FaceShape& shape);
};

} // namespace krv
