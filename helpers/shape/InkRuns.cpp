#include "helpers/shape/InkRuns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/GlyphMeasures.h"
#include "helpers/shape/InkBits.h"
#include "helpers/shape/PixelBlock.h"
#include "helpers/shape/WhiteRegions.h"

namespace krv {

namespace {

constexpr int kSomeInk = 21; // a twelfth
constexpr int kDark = 102;   // two fifths
constexpr unsigned kBlack = 255;

// Collects run lengths in quarters of a pixel, up to the side of the ink.
class RunCounter
{
public:
    explicit RunCounter(int longest)
        : m_last(static_cast<std::size_t>(longest) * 4)
    {
        std::fill_n(m_bins.begin(), m_last + 1, std::uint16_t{0});
    }

    void add(int sum)
    {
        ++m_bins[static_cast<unsigned>(sum) * 4 / kBlack];
        ++m_count;
    }

    RunLengths quantiles() const
    {
        RunLengths runs;
        runs.count = m_count;
        if (m_count == 0) {
            return runs;
        }
        const auto count = static_cast<float>(m_count);
        float* const targets[] = {&runs.low, &runs.middle, &runs.high};
        const float ranks[] = {count * 0.2F, count * 0.5F, count * 0.8F};
        std::size_t wanted = 0;
        float below = 0;
        for (std::size_t bin = 0; bin <= m_last && wanted < 3; ++bin) {
            if (m_bins[bin] == 0) {
                continue;
            }
            const auto here = static_cast<float>(m_bins[bin]);
            while (wanted < 3 && below + here >= ranks[wanted]) {
                *targets[wanted] = (static_cast<float>(bin) + (ranks[wanted] - below) / here) / 4;
                ++wanted;
            }
            below += here;
        }
        return runs;
    }

private:
    std::array<std::uint16_t, 4 * InkGrid::kMaximalSide + 1> m_bins;
    std::size_t m_last;
    int m_count = 0;
};

// Sum of a stretch of pixels; the row's margin may be read.
int sumOf(const std::uint8_t* pixels, int count)
{
    constexpr auto step = static_cast<int>(PixelBlock::kCount);
    int sum = PixelBlock(pixels).sumOfFirst(count); // few strokes are wider
    while (count > step) {
        count -= step;
        pixels += step;
        sum += PixelBlock(pixels).sumOfFirst(count);
    }
    return sum;
}

template <typename Visit>
int visitRuns(const std::uint8_t* row, int length, const InkBits& some, const InkBits& dark, Visit visit)
{
    int runs = 0;
    int end = 0;
    for (int begin = some.nextSet(0); begin < length; begin = some.nextSet(end)) {
        end = some.nextClear(begin);
        if (dark.nextSet(begin) < end) {
            visit(sumOf(row + begin, end - begin), begin, end);
            ++runs;
        }
    }
    return runs;
}

// Mean of the runs at the very top or bottom.
struct EdgeRuns
{
    void add(int length)
    {
        sum += length;
        ++count;
    }
    float mean(float otherwise) const
    {
        return count > 0 ? static_cast<float>(sum) * InkGrid::kUnit / static_cast<float>(count) : otherwise;
    }

    int sum = 0;
    int count = 0;
};

template <typename Number, std::size_t Size>
void divide(std::array<float, Size>& sums, const std::array<Number, Size>& counts)
{
    for (std::size_t i = 0; i < Size; ++i) {
        sums[i] /= static_cast<float>(std::max(counts[i], 1));
    }
}

void measureRows(const GlyphInk& ink, GlyphMeasures& measures)
{
    const InkGrid& grid = ink.grid();
    const int columns = grid.columns();
    const int rows = grid.rows();
    RunCounter across(columns);
    WhiteRegions white(columns);
    std::array<int, 3> rowsOfThird{};
    std::array<int, GlyphMeasures::kBands> rowsOfBand{};
    const int edge = std::max(1, static_cast<int>(std::lround(rows * 0.05F)));
    EdgeRuns foot;
    EdgeRuns head;
    InkBits some;
    InkBits dark;
    std::size_t third = 0;
    std::size_t band = 0;
    for (int y = 0; y < rows; ++y) {
        const std::uint8_t* row = grid.row(y);
        InkBits::set(row, columns, kSomeInk, some, kDark, dark);
        white.addRow(dark);
        const bool atFoot = y >= rows - 1 - edge && y < rows - 1;
        const bool atHead = y <= edge && y > 0;
        int first = -1;
        int behind = 0;
        const int runs = visitRuns(row, columns, some, dark, [&](int length, int begin, int end) {
            across.add(length);
            if (atFoot) {
                foot.add(length);
            }
            if (atHead) {
                head.add(length);
            }
            first = first < 0 ? begin : first;
            behind = end;
        });
        while (y * 3 >= static_cast<int>(third + 1) * rows) {
            ++third;
        }
        measures.rowCrossings[third] += static_cast<float>(runs);
        ++rowsOfThird[third];
        if (runs > 0) {
            while (y * GlyphMeasures::kBands >= static_cast<int>(band + 1) * rows) {
                ++band;
            }
            const float left = static_cast<float>(first) + 1 - row[first] * InkGrid::kUnit - ink.boxLeft();
            const float right = static_cast<float>(behind) - 1 + row[behind - 1] * InkGrid::kUnit - ink.boxLeft();
            measures.leftProfile[band] += std::max(left, 0.0F);
            measures.rightProfile[band] += std::max(ink.boxWidth() - right, 0.0F);
            ++rowsOfBand[band];
        }
    }
    divide(measures.rowCrossings, rowsOfThird);
    divide(measures.leftProfile, rowsOfBand);
    divide(measures.rightProfile, rowsOfBand);
    measures.across = across.quantiles();
    measures.footRun = foot.mean(measures.across.middle);
    measures.headRun = head.mean(measures.across.middle);

    const float box = ink.boxWidth() * ink.boxHeight();
    for (const int hole : white.enclosed()) {
        const auto size = static_cast<float>(hole);
        if (size > 0.002F * box) { // smaller ones are noise of the raster
            measures.holes += size / box;
            ++measures.holeCount;
        }
    }
}

void measureColumns(const InkGrid& turned, GlyphMeasures& measures)
{
    const int columns = turned.rows();
    const int rows = turned.columns();
    RunCounter down(rows);
    int crossings = 0;
    std::array<int, GlyphMeasures::kBands> columnsOfBand{};
    InkBits some;
    InkBits dark;
    std::size_t band = 0;
    for (int x = 0; x < columns; ++x) {
        InkBits::set(turned.row(x), rows, kSomeInk, some, kDark, dark);
        int first = rows;
        int last = 0;
        const int runs = visitRuns(turned.row(x), rows, some, dark, [&](int length, int begin, int end) {
            down.add(length);
            first = std::min(first, begin);
            last = end;
        });
        crossings += runs;
        if (runs > 0) {
            while (x * GlyphMeasures::kBands >= static_cast<int>(band + 1) * columns) {
                ++band;
            }
            measures.topProfile[band] += static_cast<float>(first);
            measures.bottomProfile[band] += static_cast<float>(rows - last);
            ++columnsOfBand[band];
        }
    }
    divide(measures.topProfile, columnsOfBand);
    divide(measures.bottomProfile, columnsOfBand);
    measures.down = down.quantiles();
    measures.columnCrossings = static_cast<float>(crossings) / static_cast<float>(columns);
}

} // namespace

void measureRuns(const GlyphInk& ink, const InkGrid& turned, GlyphMeasures& measures)
{
    measureRows(ink, measures);
    measureColumns(turned, measures);
}

} // namespace krv
