#include "helpers/shape/InkOutline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/GlyphMeasures.h"
#include "helpers/shape/HalfWaves.h"
#include "helpers/shape/PixelBlock.h"
#include "helpers/shape/VectorClones.h"

namespace krv {

namespace {

constexpr float kFaintestEdge = 27; // square of half steps of grey: below it is noise

// The corners between pixels that the outline passes, packed, with their waves: few of them do, and what follows costs
// most by the corner.
class PassedCorners
{
public:
    bool hasRoomFor(int columns) const { return m_count + static_cast<std::size_t>(columns) < kMost; }

    // `wave` is that of the row, `across` holds one for each corner.
    void collect(const std::uint8_t* upper, const std::uint8_t* lower, int columns, const HalfWaves& across, float wave)
    {
        constexpr int word = 64;
        constexpr auto block = static_cast<int>(PixelBlock::kCount);
        for (int first = 0; first <= columns; first += word) {
            std::uint64_t passed = 0;
            for (int x = first; x < first + word && x <= columns; x += block) {
                // A corner's four pixels: those of `upper` and `lower` at x - 1 and at x.
                const std::uint64_t here = PixelBlock(lower + x).differing(PixelBlock(upper + x - 1)) |
                                           PixelBlock(upper + x).differing(PixelBlock(lower + x - 1));
                passed |= here << (x - first);
            }
            // Always some at once, of which the last may be void: the processor then seldom guesses wrong how many
            // there are, which would cost more.
            const std::uint64_t atEnd = std::uint64_t{1} << std::min(columns - first, word - 1);
            const std::size_t behind = m_count + static_cast<std::size_t>(__builtin_popcountll(passed));
            for (std::size_t i = m_count; i < behind; i += kTogether) {
                for (std::size_t j = i; j < i + kTogether; ++j) {
                    const int place = first + __builtin_ctzll(passed | atEnd);
                    passed &= passed - 1;
                    std::memcpy(&m_upper[j], upper + place - 1, 2);
                    std::memcpy(&m_lower[j], lower + place - 1, 2);
                    m_across[j] = across[static_cast<std::size_t>(place)];
                    m_down[j] = wave;
                }
            }
            m_count = behind;
        }
    }

    // Adds the corners' shares to the sums and forgets them.
    void addUp(GlyphMeasures& sums, float& slantWeight);

private:
    static constexpr std::size_t kMost = 1024;
    static constexpr std::size_t kTogether = 8;

    template <typename Number>
    using Each = std::array<Number, kMost + kTogether>;

    std::size_t m_count = 0;
    Each<std::uint16_t> m_upper; // two pixels each, the left one in the low byte
    Each<std::uint16_t> m_lower;
    Each<float> m_x; // of the gradient, in half steps of grey
    Each<float> m_y;
    Each<float> m_across;
    Each<float> m_down;
};

KRV_VECTOR_CLONES
void PassedCorners::addUp(GlyphMeasures& sums, float& slantWeight)
{
    // By itself: a loop over small numbers and large ones takes too many of the large ones at a time.
    for (std::size_t i = 0; i < m_count; ++i) {
        const int falling = (m_lower[i] >> 8) - (m_upper[i] & 0xFF);
        const int rising = (m_upper[i] >> 8) - (m_lower[i] & 0xFF);
        m_x[i] = static_cast<float>(falling + rising);
        m_y[i] = static_cast<float>(falling - rising);
    }
    float length = 0;
    float slant = 0;
    float steepLength = 0;
    float cos2Sum = 0, cos2Down = 0, cos2Both = 0, cos2Down2 = 0;
    float sin2Sum = 0, sin2Across = 0, sin2Across2 = 0, sin2Down = 0, sin2Down2 = 0, sin2AcrossDown2 = 0;
    float cos4Sum = 0, cos4Down = 0, cos4Both = 0;
    float sin4Sum = 0, sin4Across = 0, sin4Down = 0, sin4Both = 0;
    float cos6Sum = 0, sin6Sum = 0;
#pragma omp simd reduction(+ : length, slant, steepLength, cos2Sum, cos2Down, cos2Both, cos2Down2, sin2Sum,           \
                               sin2Across, sin2Across2, sin2Down, sin2Down2, sin2AcrossDown2, cos4Sum, cos4Down,       \
                               cos4Both, sin4Sum, sin4Across, sin4Down, sin4Both, cos6Sum, sin6Sum)
    for (std::size_t i = 0; i < m_count; ++i) {
        const float x = m_x[i];
        const float y = m_y[i];
        const float square = x * x + y * y;
        const float strength = square > kFaintestEdge ? std::sqrt(square) : 0.0F;
        const float inverse = 1 / std::max(square, 1.0F);
        const float cos2 = (x * x - y * y) * inverse;
        const float sin2 = 2 * x * y * inverse;
        const float cos4 = cos2 * cos2 - sin2 * sin2;
        const float sin4 = 2 * cos2 * sin2;
        const float across = m_across[i];
        const float down = m_down[i];
        const float across2 = 2 * across * across - 1;
        const float down2 = 2 * down * down - 1;
        const float strongCos2 = strength * cos2;
        const float strongSin2 = strength * sin2;
        const float strongCos4 = strength * cos4;
        const float strongSin4 = strength * sin4;
        length += strength;
        cos2Sum += strongCos2;
        cos2Down += strongCos2 * down;
        cos2Both += strongCos2 * down * across;
        cos2Down2 += strongCos2 * down2;
        sin2Sum += strongSin2;
        sin2Across += strongSin2 * across;
        sin2Across2 += strongSin2 * across2;
        sin2Down += strongSin2 * down;
        sin2Down2 += strongSin2 * down2;
        sin2AcrossDown2 += strongSin2 * across * down2;
        cos4Sum += strongCos4;
        cos4Down += strongCos4 * down;
        cos4Both += strongCos4 * down * across;
        sin4Sum += strongSin4;
        sin4Across += strongSin4 * across;
        sin4Down += strongSin4 * down;
        sin4Both += strongSin4 * down * across;
        cos6Sum += strongCos4 * cos2 - strongSin4 * sin2;
        sin6Sum += strongSin4 * cos2 + strongCos4 * sin2;
        const float steepStrength = std::fabs(y) < 0.7F * std::fabs(x) ? strength : 0.0F;
        steepLength += steepStrength;
        slant += steepStrength * x * y / std::max(x * x, 1.0F); // x is a whole number
    }
    m_count = 0;
    const float directions[] = {cos2Sum, sin2Sum, cos4Sum, sin4Sum, cos6Sum, sin6Sum};
    for (std::size_t i = 0; i < sums.directions.size(); ++i) {
        sums.directions[i] += directions[i];
    }
    // In the order of GlyphMeasures::fieldMoments.
    const float field[] = {cos2Down,        cos2Both, cos2Down2, sin2Across, sin2Across2, sin2Down, sin2Down2,
                           sin2AcrossDown2, cos4Down, cos4Both,  sin4Across, sin4Down,    sin4Both};
    for (std::size_t i = 0; i < sums.field.size(); ++i) {
        sums.field[i] += field[i];
    }
    sums.perimeter += length;
    sums.slant += slant;
    slantWeight += steepLength;
}

} // namespace

KRV_VECTOR_CLONES
void measureOutline(const GlyphInk& ink, GlyphMeasures& measures)
{
    const InkGrid& grid = ink.grid();
    const HalfWaves across(grid.columns() + 1, -ink.boxLeft(), ink.boxWidth());
    const HalfWaves down(grid.rows() + 1, -ink.boxTop(), ink.boxHeight());
    PassedCorners corners;
    float slantWeight = 0;
    for (int y = -1; y < grid.rows(); ++y) {
        if (!corners.hasRoomFor(grid.columns())) {
            corners.addUp(measures, slantWeight);
        }
        corners.collect(grid.row(y), grid.row(y + 1), grid.columns(), across, down[static_cast<std::size_t>(y + 1)]);
    }
    corners.addUp(measures, slantWeight);
    const float unit = measures.perimeter > 0 ? 1 / measures.perimeter : 0;
    for (float& direction : measures.directions) {
        direction *= unit;
    }
    for (float& moment : measures.field) {
        moment *= unit;
    }
    measures.slant = slantWeight > 0 ? measures.slant / slantWeight : 0;
    measures.perimeter *= InkGrid::kUnit / 2;
}

} // namespace krv
