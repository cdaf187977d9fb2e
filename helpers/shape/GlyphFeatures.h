#pragma once

#include <array>
#include <cstdint>

namespace krv {

class GlyphInk;
struct GlyphMeasures;

// The 62 letters and digits that every face is measured by, in the order of the catalogue's feature rows.
constexpr int kFeatureLetterCount = 62;
extern const char kFeatureLetters[kFeatureLetterCount + 1];
int featureLetterIndex(int character); // -1 when it is none of them

constexpr int kGlyphValueCount = 61;
// The values from this one on place the glyph in its face (bearings, height against the capitals). A letter cut out of
// a picture has no face around it: there they are zero and must be left out of comparisons.
constexpr int kFirstPlacementValue = 56;

// Places of values that others than the distance ask for.
enum GlyphValue
{
    kAspectValue = 0,
    kStrokeContrastValue = 3,
    kSlantValue = 12,
    kHeightValue = 56
};

// What one glyph looks like, see docs/similarity.md for each value. All zero: no glyph, or one without ink; such a
// letter takes no part in comparisons. Measured glyphs never hold NaN or infinity and have at least one value != 0.
using GlyphFeatures = std::array<float, kGlyphValueCount>;

bool isMeasured(const GlyphFeatures& features);

// 8-bit ink coverage (255 is ink), top row first. Margins around the ink do not matter, nor does the size in pixels
// as long as the ink is some 12 pixels high or more.
struct GlyphCoverage
{
    const std::uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0; // bytes from one row to the next
};

// Where the glyph stands in its face, in pixels of the coverage it is measured from.
struct GlyphPlacement
{
    float left = 0;          // origin to the coverage's first column
    float top = 0;           // baseline up to the coverage's first row
    float advance = 0;       //
    float capitalHeight = 0; // of the face; > 0
};

// Measures a glyph; false (and all zero) when there is no ink. The placement may be null.
bool measureGlyph(const GlyphCoverage& coverage, const GlyphPlacement* placement, GlyphFeatures& features);

// The second half of measureGlyph(), for callers that need the measures too; the ink must not be empty.
void fillGlyphFeatures(const GlyphInk& ink, const GlyphMeasures& measures, const GlyphPlacement* placement,
                       GlyphFeatures& features);

} // namespace krv
