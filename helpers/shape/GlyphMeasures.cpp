#include "helpers/shape/GlyphMeasures.h"

#include <algorithm>
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

constexpr std::size_t kAcross = GlyphMeasures::kCosinesAcross;
static_assert(kAcross == 4);
using Line = std::array<float, InkGrid::kMaximalSide>;

// For each row the sums of the pixels by cosines of 0 to 3 half waves. Many rows at once by going through the columns;
// of these several at once, because the sums have to be fetched and put back each time.
KRV_VECTOR_CLONES
void addUpRows(const InkGrid& turned, const HalfWaves& one, std::array<Line, kAcross>& sums)
{
    constexpr std::size_t together = 4;
    const auto rows = static_cast<std::size_t>(turned.columns());
    const auto columns = static_cast<std::size_t>(turned.rows());
    for (Line& line : sums) {
        std::fill_n(line.begin(), rows, 0.0F);
    }
    std::array<Line, together> pixels;
    // Behind the last column all is white and the waves are 0.
    for (std::size_t first = 0; first < columns; first += together) {
        std::array<std::array<float, together>, kAcross> waves;
        for (std::size_t i = 0; i < together; ++i) {
            const float wave = one[first + i];
            waves[1][i] = wave;
            waves[2][i] = 2 * wave * wave - 1;
            waves[3][i] = 2 * wave * waves[2][i] - wave;
            const std::uint8_t* column = turned.row(static_cast<int>(first + i));
            for (std::size_t y = 0; y < rows; ++y) {
                pixels[i][y] = column[y];
            }
        }
#pragma omp simd
        for (std::size_t y = 0; y < rows; ++y) {
            const float a = pixels[0][y];
            const float b = pixels[1][y];
            const float c = pixels[2][y];
            const float d = pixels[3][y];
            sums[0][y] += a + b + c + d;
            sums[1][y] += a * waves[1][0] + b * waves[1][1] + c * waves[1][2] + d * waves[1][3];
            sums[2][y] += a * waves[2][0] + b * waves[2][1] + c * waves[2][2] + d * waves[2][3];
            sums[3][y] += a * waves[3][0] + b * waves[3][1] + c * waves[3][2] + d * waves[3][3];
        }
    }
}

KRV_VECTOR_CLONES
void measureCosines(const GlyphInk& ink, const InkGrid& turned, GlyphMeasures& measures)
{
    const InkGrid& grid = ink.grid();
    const auto rows = static_cast<std::size_t>(grid.rows());
    std::array<Line, kAcross> sums;
    addUpRows(turned, HalfWaves(grid.columns(), 0.5F - ink.boxLeft(), ink.boxWidth()), sums);
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
        for (std::size_t u = 0; u < kAcross; ++u) {
            float sum = 0;
#pragma omp simd reduction(+ : sum)
            for (std::size_t y = 0; y < rows; ++y) {
                sum += here[y] * sums[u][y];
            }
            measures.cosines[v * kAcross + u] = sum * unit;
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
    const InkGrid turned = ink.grid().transposed();
    measureRuns(ink, turned, measures);
    measureOutline(ink, measures);
    measureCosines(ink, turned, measures);
    return measures;
}

} // namespace krv
