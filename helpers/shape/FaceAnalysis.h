#pragma once

#include <array>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// All that the catalogue keeps about the looks of one face. The texts and scales are those of the catalogue's columns
// of the same names; docs/similarity.md says how each is measured.
struct FaceAnalysis
{
    std::array<GlyphFeatures, kFeatureLetterCount> features{}; // one for each of kFeatureLetters, all zero when missing

    int hwe = 0;                // stem weight: 100-170 book, 170-250 medium, 250-500 bold
    int hwi = 0;                // width of the small letters' ink, thousandths of the x-height
    int hhe = 0;                // x-height, thousandths of the capitals' height
    int specificWidth = 0;      // below 800 condensed, 800-1800 narrow to wide, above extended
    int specificHeight = 0;     // x-height, quarter thousandths of the em: times the width, the apparent size
    int italicAngle = 0;        // degrees of slant to the right, never negative
    int serifStyle = 0;         // 0-255, 0 unknown; the scale of PANOSE's serif styles
    int styleField = 0;         // 0-255, the Classification value of the face's main class, 0 none
    std::string classification; // otherInfo2: keywords joined by ", ", empty when the evidence is weak

    int smartChoiceAll = 0; // 0-1000
    int smartChoiceBody = 0;
    int smartChoiceHead = 0;

    // Measures an open face. Never throws; a face that cannot be rasterised gives an analysis without features. Changes
    // the face's size, transform, glyph slot and active charmap; the time and memory it takes are bounded for any
    // input.
    static FaceAnalysis analyse(FT_Face face);
};

} // namespace krv
