#include "helpers/shape/GlyphMeasures.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/HalfWaves.h"
#include "helpers/shape/InkOutline.h"
#include "helpers/shape/InkRuns.h"

namespace krv {

namespace {

void measureCosines(const GlyphInk& ink, GlyphMeasures& measures)
{
    constexpr std::size_t across = GlyphMeasures::kCosinesAcross;
    static_assert(across == 4);
    const InkGrid& grid = ink.grid();
    // Whole blocks of pixels: the margin is white and the waves behind the last column are 0.
    const std::size_t columns =
        (static_cast<std::size_t>(grid.columns()) + HalfWaves::kBlock - 1) / HalfWaves::kBlock * HalfWaves::kBlock;
    const HalfWaves one(grid.columns(), 0.5F - ink.boxLeft(), ink.boxWidth());
    std::array<float, InkGrid::kMaximalSide> two;
    std::array<float, InkGrid::kMaximalSide> three;
    for (std::size_t x = 0; x < columns; ++x) {
        two[x] = 2 * one[x] * one[x] - 1;
        three[x] = 2 * one[x] * two[x] - one[x];
    }
    const HalfWaves down(grid.rows(), 0.5F - ink.boxTop(), ink.boxHeight());
    float area = 0;
    for (int y = 0; y < grid.rows(); ++y) {
        const std::uint8_t* row = grid.row(y);
        float none = 0;
        float once = 0;
        float twice = 0;
        float thrice = 0;
#pragma omp simd reduction(+ : none, once, twice, thrice)
        for (std::size_t x = 0; x < columns; ++x) {
            const float pixel = row[x];
            none += pixel;
            once += pixel * one[x];
            twice += pixel * two[x];
            thrice += pixel * three[x];
        }
        const float sums[across] = {none, once, twice, thrice};
        area += none;
        // Cosines of 0, 1, 2 ... times the angle by their recurrence.
        const float wave = down[static_cast<std::size_t>(y)];
        float before = wave; // of -1 times
        float here = 1;
        for (std::size_t v = 0; v < GlyphMeasures::kCosinesDown; ++v) {
            for (std::size_t u = 0; u < across; ++u) {
                measures.cosines[v * across + u] += here * sums[u];
            }
            const float next = 2 * wave * here - before;
            before = here;
            here = next;
        }
    }
    measures.area = area * InkGrid::kUnit;
    const float unit = InkGrid::kUnit / (ink.boxWidth() * ink.boxHeight());
    for (float& cosine : measures.cosines) {
        cosine *= unit;
    }
}

} // namespace

GlyphMeasures GlyphMeasures::of(const GlyphInk& ink)
{
    GlyphMeasures measures;
    measureRuns(ink, measures);
    measureOutline(ink, measures);
    measureCosines(ink, measures);
    return measures;
}

} // namespace krv
