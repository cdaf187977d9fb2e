#pragma once

#include <array>
#include <cstddef>

namespace krv {

class GlyphInk;

// Quantiles of the black runs along the rows or down the columns, in pixels.
struct RunLengths
{
    float low = 0; // a fifth of the runs are shorter
    float middle = 0;
    float high = 0; // a fifth are longer
    int count = 0;
};

// What is measured on the ink of one glyph before it is normalised: the common ground of the glyph's values and of the
// measures of its face. Lengths and areas in pixels of the ink's grid.
struct GlyphMeasures
{
    static constexpr int kHarmonics = 3;
    static constexpr std::size_t kCosinesAcross = 4;
    static constexpr std::size_t kCosinesDown = 6;
    static constexpr int kBands = 4;

    // One moment of the outline's direction: the share of outline whose angle, taken `harmonic` times, points along the
    // cosine or the sine, weighted by a cosine of `u` half waves across and `v` half waves down the box.
    struct FieldMoment
    {
        bool sine;
        int harmonic; // 2 or 4
        int u;
        int v;
    };
    static constexpr int kFieldMoments = 13;
    static const std::array<FieldMoment, kFieldMoments> fieldMoments;

    float area = 0;
    float perimeter = 0;
    RunLengths across; // along the rows: the stems
    RunLengths down;   // along the columns: bars and the thin parts of bows
    // Directions of the outline: strength-weighted mean of cos and sin of 2, 4 and 6 times the edge's angle.
    std::array<float, 2 * kHarmonics> directions{};
    std::array<float, kFieldMoments> field{};
    float slant = 0; // mean tangent of the near-vertical edges, positive leaning right
    // Cosine transform of the ink stretched to the unit square, row by row; the first is the share of ink.
    std::array<float, kCosinesDown * kCosinesAcross> cosines{};
    // Distance from the box's sides to the ink, mean over a quarter of the height (or width) each.
    std::array<float, kBands> leftProfile{};
    std::array<float, kBands> rightProfile{};
    std::array<float, kBands> topProfile{};
    std::array<float, kBands> bottomProfile{};
    // Mean number of strokes crossed by the rows of each third, and by the columns.
    std::array<float, 3> rowCrossings{};
    float columnCrossings = 0;
    float holes = 0; // enclosed white, as a share of the box
    int holeCount = 0;
    float footRun = 0; // mean black run at the very bottom, and at the top
    float headRun = 0;

    static GlyphMeasures of(const GlyphInk& ink);
};

} // namespace krv
