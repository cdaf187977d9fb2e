#include "helpers/shape/GlyphMeasures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "helpers/shape/GlyphInk.h"

namespace krv {

namespace {

constexpr float kPi = 3.14159265F;
constexpr float kSomeInk = 0.08F;
// Corners between the pixels of a row or column: the working arrays are small and live on the stack.
constexpr std::size_t kCorners = GlyphInk::kMaximalSide + 1;

// Collects run lengths in quarters of a pixel, up to the side of the ink.
class RunCounter
{
public:
    explicit RunCounter(int longest)
        : m_bins(static_cast<std::size_t>(longest) * 4 + 1)
    {
    }

    void add(float length)
    {
        ++m_bins[std::min(static_cast<std::size_t>(length * 4), m_bins.size() - 1)];
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
        for (std::size_t bin = 0; bin < m_bins.size() && wanted < 3; ++bin) {
            const auto here = static_cast<float>(m_bins[bin]);
            while (wanted < 3 && here > 0 && below + here >= ranks[wanted]) {
                *targets[wanted] = (static_cast<float>(bin) + (ranks[wanted] - below) / here) / 4;
                ++wanted;
            }
            below += here;
        }
        return runs;
    }

private:
    std::vector<std::uint16_t> m_bins;
    int m_count = 0;
};

// A run is an unbroken stretch of pixels with any ink; one that never gets dark is the grazed edge of something.
template <typename Visit>
int visitRuns(const float* ink, int length, int step, Visit visit)
{
    int runs = 0;
    int position = 0;
    while (position < length) {
        const float first = ink[static_cast<std::ptrdiff_t>(position) * step];
        if (first < kSomeInk) {
            ++position;
            continue;
        }
        const int begin = position;
        float sum = 0;
        float darkest = 0;
        while (position < length) {
            const float here = ink[static_cast<std::ptrdiff_t>(position) * step];
            if (here < kSomeInk) {
                break;
            }
            sum += here;
            darkest = std::max(darkest, here);
            ++position;
        }
        if (darkest > 0.4F) {
            visit(sum, begin, position);
            ++runs;
        }
    }
    return runs;
}

void measureRows(const GlyphInk& ink, GlyphMeasures& measures)
{
    RunCounter across(ink.columns());
    std::array<int, 3> rowsOfThird{};
    std::array<int, GlyphMeasures::kBands> rowsOfBand{};
    const int edge = std::max(1, static_cast<int>(std::lround(ink.rows() * 0.05F)));
    float footSum = 0;
    float headSum = 0;
    int footRuns = 0;
    int headRuns = 0;
    for (int y = 0; y < ink.rows(); ++y) {
        const bool foot = y >= ink.rows() - 1 - edge && y < ink.rows() - 1;
        const bool head = y <= edge && y > 0;
        float left = ink.boxWidth();
        float right = 0;
        const int runs = visitRuns(ink.row(y), ink.columns(), 1, [&](float length, int begin, int end) {
            across.add(length);
            footSum += foot ? length : 0;
            headSum += head ? length : 0;
            footRuns += foot ? 1 : 0;
            headRuns += head ? 1 : 0;
            const float* row = ink.row(y);
            left = std::min(left, static_cast<float>(begin) + 1 - row[begin] - ink.boxLeft());
            right = std::max(right, static_cast<float>(end) - 1 + row[end - 1] - ink.boxLeft());
        });
        const auto third = static_cast<std::size_t>(y * 3 / ink.rows());
        measures.rowCrossings[third] += static_cast<float>(runs);
        ++rowsOfThird[third];
        if (runs > 0) {
            const auto band = static_cast<std::size_t>(y * GlyphMeasures::kBands / ink.rows());
            measures.leftProfile[band] += std::max(left, 0.0F);
            measures.rightProfile[band] += std::max(ink.boxWidth() - right, 0.0F);
            ++rowsOfBand[band];
        }
    }
    for (std::size_t third = 0; third < rowsOfThird.size(); ++third) {
        measures.rowCrossings[third] /= static_cast<float>(std::max(rowsOfThird[third], 1));
    }
    for (std::size_t band = 0; band < rowsOfBand.size(); ++band) {
        measures.leftProfile[band] /= static_cast<float>(std::max(rowsOfBand[band], 1));
        measures.rightProfile[band] /= static_cast<float>(std::max(rowsOfBand[band], 1));
    }
    measures.across = across.quantiles();
    measures.footRun = footRuns > 0 ? footSum / static_cast<float>(footRuns) : measures.across.middle;
    measures.headRun = headRuns > 0 ? headSum / static_cast<float>(headRuns) : measures.across.middle;
}

void measureColumns(const GlyphInk& ink, GlyphMeasures& measures)
{
    RunCounter down(ink.rows());
    const int step = static_cast<int>(ink.row(1) - ink.row(0));
    int crossings = 0;
    std::array<int, GlyphMeasures::kBands> columnsOfBand{};
    for (int x = 0; x < ink.columns(); ++x) {
        int first = ink.rows();
        int last = 0;
        const int runs = visitRuns(ink.row(0) + x, ink.rows(), step, [&](float length, int begin, int end) {
            down.add(length);
            first = std::min(first, begin);
            last = end;
        });
        crossings += runs;
        if (runs > 0) {
            const auto band = static_cast<std::size_t>(x * GlyphMeasures::kBands / ink.columns());
            measures.topProfile[band] += static_cast<float>(first);
            measures.bottomProfile[band] += static_cast<float>(ink.rows() - last);
            ++columnsOfBand[band];
        }
    }
    for (std::size_t band = 0; band < columnsOfBand.size(); ++band) {
        measures.topProfile[band] /= static_cast<float>(std::max(columnsOfBand[band], 1));
        measures.bottomProfile[band] /= static_cast<float>(std::max(columnsOfBand[band], 1));
    }
    measures.down = down.quantiles();
    measures.columnCrossings = static_cast<float>(crossings) / static_cast<float>(ink.columns());
}

// Cosines of 1 and 2 half waves over the box at the corners between pixels.
struct HalfWaves
{
    HalfWaves(int count, float begin, float length)
    {
        for (std::size_t i = 0; i <= static_cast<std::size_t>(count); ++i) {
            once[i] = std::cos(kPi * std::clamp((static_cast<float>(i) - begin) / length, 0.0F, 1.0F));
            twice[i] = 2 * once[i] * once[i] - 1;
        }
    }

    std::array<float, kCorners> once;
    std::array<float, kCorners> twice;
};

// The corners of one row that the outline passes, packed: few of them do, and what follows costs most by the corner.
struct PassedCorners
{
    void collect(const float* upper, const float* lower, int columns)
    {
        count = 0;
        for (std::size_t x = 0; x <= static_cast<std::size_t>(columns); ++x) {
            // The left of the four pixels is one column before the corner: row() has a margin for it.
            const float falling = lower[x] - upper[static_cast<std::ptrdiff_t>(x) - 1];
            const float rising = upper[x] - lower[static_cast<std::ptrdiff_t>(x) - 1];
            place[count] = x;
            gx[count] = 0.5F * (falling + rising);
            gy[count] = 0.5F * (falling - rising);
            count += falling * falling + rising * rising > 2e-4F ? 1 : 0;
        }
    }

    std::size_t count = 0;
    std::array<std::size_t, kCorners> place;
    std::array<float, kCorners> gx;
    std::array<float, kCorners> gy;
};

// The gradient between four pixels points across the outline; its length adds up to the outline's length.
void measureEdges(const GlyphInk& ink, GlyphMeasures& measures)
{
    enum Channel
    {
        Cos2,
        Sin2,
        Cos4,
        Sin4,
        ChannelCount
    };
    const HalfWaves across(ink.columns(), ink.boxLeft(), ink.boxWidth());
    const HalfWaves down(ink.rows(), ink.boxTop(), ink.boxHeight());
    PassedCorners corners;
    float perimeter = 0;
    float slantSum = 0;
    float slantWeight = 0;
    std::array<float, 2> sixth{};
    float moments[ChannelCount][3][3] = {}; // channel, half waves down, half waves across
    for (int y = -1; y < ink.rows(); ++y) {
        corners.collect(ink.row(y), ink.row(y + 1), ink.columns());
        float sums[ChannelCount][3] = {};
        for (std::size_t i = 0; i < corners.count; ++i) {
            const float gx = corners.gx[i];
            const float gy = corners.gy[i];
            const float square = gx * gx + gy * gy;
            const float strength = std::sqrt(square);
            const float cos2 = (gx * gx - gy * gy) / square;
            const float sin2 = 2 * gx * gy / square;
            const float cos4 = cos2 * cos2 - sin2 * sin2;
            const float sin4 = 2 * cos2 * sin2;
            perimeter += strength;
            sixth[0] += strength * (cos4 * cos2 - sin4 * sin2);
            sixth[1] += strength * (sin4 * cos2 + cos4 * sin2);
            const float once = strength * across.once[corners.place[i]];
            const float channels[ChannelCount] = {cos2, sin2, cos4, sin4};
            for (int channel = 0; channel < ChannelCount; ++channel) {
                sums[channel][0] += strength * channels[channel];
                sums[channel][1] += once * channels[channel];
            }
            sums[Sin2][2] += strength * across.twice[corners.place[i]] * sin2;
            if (std::fabs(gy) < 0.7F * std::fabs(gx)) {
                slantSum += strength * gy / gx;
                slantWeight += strength;
            }
        }
        const auto corner = static_cast<std::size_t>(y + 1);
        const float waves[] = {1, down.once[corner], down.twice[corner]};
        for (int channel = 0; channel < ChannelCount; ++channel) {
            for (int v = 0; v < 3; ++v) {
                for (int u = 0; u < 3; ++u) {
                    moments[channel][v][u] += sums[channel][u] * waves[v];
                }
            }
        }
    }
    measures.perimeter = perimeter;
    const float unit = perimeter > 0 ? 1 / perimeter : 0;
    measures.directions = {moments[Cos2][0][0] * unit,
                           moments[Sin2][0][0] * unit,
                           moments[Cos4][0][0] * unit,
                           moments[Sin4][0][0] * unit,
                           sixth[0] * unit,
                           sixth[1] * unit};
    for (std::size_t i = 0; i < measures.field.size(); ++i) {
        const GlyphMeasures::FieldMoment& moment = GlyphMeasures::fieldMoments[i];
        const int channel = (moment.harmonic == 4 ? Cos4 : Cos2) + (moment.sine ? 1 : 0);
        measures.field[i] = moments[channel][moment.v][moment.u] * unit;
    }
    measures.slant = slantWeight > 0 ? slantSum / slantWeight : 0;
}

// Cosines of 0, 1, 2 ... times the angle by their recurrence.
template <std::size_t Count>
std::array<float, Count> cosinesOf(float angle)
{
    std::array<float, Count> cosines{1, std::cos(angle)};
    for (std::size_t k = 2; k < Count; ++k) {
        cosines[k] = 2 * cosines[1] * cosines[k - 1] - cosines[k - 2];
    }
    return cosines;
}

void measureCosines(const GlyphInk& ink, GlyphMeasures& measures)
{
    constexpr std::size_t across = GlyphMeasures::kCosinesAcross;
    std::array<std::array<float, across>, kCorners> basis;
    const auto columns = static_cast<std::size_t>(ink.columns());
    for (std::size_t x = 0; x < columns; ++x) {
        basis[x] = cosinesOf<across>(
            kPi * std::clamp((static_cast<float>(x) + 0.5F - ink.boxLeft()) / ink.boxWidth(), 0.0F, 1.0F));
    }
    float area = 0;
    for (int y = 0; y < ink.rows(); ++y) {
        std::array<float, across> sums{};
        const float* row = ink.row(y);
        for (std::size_t x = 0; x < columns; ++x) {
            for (std::size_t u = 0; u < across; ++u) {
                sums[u] += row[x] * basis[x][u];
            }
        }
        area += sums[0];
        const auto down = cosinesOf<GlyphMeasures::kCosinesDown>(
            kPi * std::clamp((static_cast<float>(y) + 0.5F - ink.boxTop()) / ink.boxHeight(), 0.0F, 1.0F));
        for (std::size_t v = 0; v < down.size(); ++v) {
            for (std::size_t u = 0; u < across; ++u) {
                measures.cosines[v * across + u] += down[v] * sums[u];
            }
        }
    }
    measures.area = area;
    const float box = ink.boxWidth() * ink.boxHeight();
    for (float& cosine : measures.cosines) {
        cosine /= box;
    }
}

// White stretches of the rows, joined where those of neighbouring rows touch. The margin of one pixel around the grid
// is white, so what it cannot reach is enclosed.
class WhiteRegions
{
public:
    WhiteRegions()
    {
        m_parents.reserve(kCorners);
        m_sizes.reserve(kCorners);
        m_above.reserve(kFewStretches);
        m_current.reserve(kFewStretches);
    }

    void startRow()
    {
        m_above.swap(m_current);
        m_current.clear();
        m_next = 0;
    }

    void add(int begin, int end)
    {
        int region = static_cast<int>(m_parents.size());
        m_parents.push_back(region);
        m_sizes.push_back(end - begin);
        while (m_next < m_above.size() && m_above[m_next].end <= begin) {
            ++m_next;
        }
        for (std::size_t i = m_next; i < m_above.size() && m_above[i].begin < end; ++i) {
            const int other = root(m_above[i].region);
            region = root(region);
            if (other != region) {
                m_parents[static_cast<std::size_t>(region)] = other;
                m_sizes[static_cast<std::size_t>(other)] += m_sizes[static_cast<std::size_t>(region)];
            }
        }
        m_current.push_back({begin, end, region});
    }

    void count(float box, GlyphMeasures& measures)
    {
        const int outside = m_parents.empty() ? -1 : root(0); // the first stretch is the upper margin
        for (int region = 0; region < static_cast<int>(m_parents.size()); ++region) {
            const auto size = static_cast<float>(m_sizes[static_cast<std::size_t>(region)]);
            // Smaller ones are noise of the raster.
            if (root(region) == region && region != outside && size > 0.002F * box) {
                measures.holes += size / box;
                ++measures.holeCount;
            }
        }
    }

private:
    static constexpr std::size_t kFewStretches = 16;

    struct Stretch
    {
        int begin;
        int end;
        int region;
    };

    int root(int region)
    {
        while (m_parents[static_cast<std::size_t>(region)] != region) {
            int& parent = m_parents[static_cast<std::size_t>(region)];
            parent = m_parents[static_cast<std::size_t>(parent)];
            region = parent;
        }
        return region;
    }

    std::vector<int> m_parents;
    std::vector<int> m_sizes;
    std::vector<Stretch> m_above;
    std::vector<Stretch> m_current;
    std::size_t m_next = 0;
};

void measureHoles(const GlyphInk& ink, GlyphMeasures& measures)
{
    constexpr float dark = 0.4F;
    WhiteRegions regions;
    for (int y = -1; y <= ink.rows(); ++y) {
        const float* row = ink.row(y);
        regions.startRow();
        int begin = -1;
        for (int x = 0; x < ink.columns(); ++x) {
            if (row[x] >= dark) {
                if (x > begin) {
                    regions.add(begin, x);
                }
                begin = x + 1;
            }
        }
        regions.add(begin, ink.columns() + 1);
    }
    regions.count(ink.boxWidth() * ink.boxHeight(), measures);
}

} // namespace

// Of the possible ones those that tell designs apart best.
const std::array<GlyphMeasures::FieldMoment, GlyphMeasures::kFieldMoments> GlyphMeasures::fieldMoments = {{
    {false, 2, 0, 1},
    {false, 2, 1, 1},
    {false, 2, 0, 2},
    {true, 2, 1, 0},
    {true, 2, 2, 0},
    {true, 2, 0, 1},
    {true, 2, 0, 2},
    {true, 2, 1, 2},
    {false, 4, 0, 1},
    {false, 4, 1, 1},
    {true, 4, 1, 0},
    {true, 4, 0, 1},
    {true, 4, 1, 1},
}};

GlyphMeasures GlyphMeasures::of(const GlyphInk& ink)
{
    GlyphMeasures measures;
    measureRows(ink, measures);
    measureColumns(ink, measures);
    measureEdges(ink, measures);
    measureCosines(ink, measures);
    measureHoles(ink, measures);
    return measures;
}

} // namespace krv
