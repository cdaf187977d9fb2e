#include "helpers/shape/GlyphMeasures.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/HalfWaves.h"
#include "helpers/shape/InkOutline.h"
#include "helpers/shape/InkRuns.h"
#include "helpers/shape/VectorClones.h"

namespace krv {

namespace {

KRV_VECTOR_CLONES
void measureCosines(const GlyphInk& ink, GlyphMeasures& measures)
{
    constexpr std::size_t across = GlyphMeasures::kCosinesAcross;
    static_assert(across == 4);
    using Line = std::array<float, InkGrid::kMaximalSide>;
    const InkGrid& grid = ink.grid();
    // Whole blocks of pixels: the margin is white and the waves behind the last column are 0.
    const std::size_t columns =
        (static_cast<std::size_t>(grid.columns()) + HalfWaves::kBlock - 1) / HalfWaves::kBlock * HalfWaves::kBlock;
    const HalfWaves one(grid.columns(), 0.5F - ink.boxLeft(), ink.boxWidth());
    Line two;
    Line three;
    for (std::size_t x = 0; x < columns; ++x) {
        two[x] = 2 * one[x] * one[x] - 1;
        three[x] = 2 * one[x] * two[x] - one[x];
    }
    const auto rows = static_cast<std::size_t>(grid.rows());
    std::array<Line, across> sums; // of each row
    Line pixels;
    for (std::size_t y = 0; y < rows; ++y) {
        const std::uint8_t* row = grid.row(static_cast<int>(y));
        for (std::size_t x = 0; x < columns; ++x) {
            pixels[x] = row[x];
        }
        float none = 0;
        float once = 0;
        float twice = 0;
        float thrice = 0;
#pragma omp simd reduction(+ : none, once, twice, thrice)
        for (std::size_t x = 0; x < columns; ++x) {
            const float pixel = pixels[x];
            none += pixel;
            once += pixel * one[x];
            twice += pixel * two[x];
            thrice += pixel * three[x];
        }
        sums[0][y] = none;
        sums[1][y] = once;
        sums[2][y] = twice;
        sums[3][y] = thrice;
    }
    // Down the rows cosines of 0, 1, 2 ... times the angle by their recurrence.
    const HalfWaves down(grid.rows(), 0.5F - ink.boxTop(), ink.boxHeight());
    Line here;
    Line before; // of one time less
    for (std::size_t y = 0; y < rows; ++y) {
        here[y] = 1;
        before[y] = down[y];
    }
    const float unit = InkGrid::kUnit / (ink.boxWidth() * ink.boxHeight());
    for (std::size_t v = 0; v < GlyphMeasures::kCosinesDown; ++v) {
        for (std::size_t u = 0; u < across; ++u) {
            float sum = 0;
#pragma omp simd reduction(+ : sum)
            for (std::size_t y = 0; y < rows; ++y) {
                sum += here[y] * sums[u][y];
            }
            measures.cosines[v * across + u] = sum * unit;
        }
        for (std::size_t y = 0; y < rows; ++y) {
            const float next = 2 * down[y] * here[y] - before[y];
            before[y] = here[y];
            here[y] = next;
        }
    }
    measures.area = measures.cosines[0] * ink.boxWidth() * ink.boxHeight();
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
