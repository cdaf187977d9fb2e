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

// Collects run lengths in quarters of a pixel.
class RunCounter
{
public:
    void add(float length)
    {
        const int bin = static_cast<int>(length * 4);
        ++m_bins[static_cast<std::size_t>(std::min(bin, kBins - 1))];
        ++m_count;
    }

    RunLengths quantiles() const
    {
        RunLengths runs;
        runs.count = m_count;
        if (m_count == 0) {
            return runs;
        }
        runs.low = at(m_count * 0.2F);
        runs.middle = at(m_count * 0.5F);
        runs.high = at(m_count * 0.8F);
        return runs;
    }

private:
    static constexpr int kBins = 4 * 260;

    float at(float rank) const
    {
        float below = 0;
        for (int bin = 0; bin < kBins; ++bin) {
            const auto here = static_cast<float>(m_bins[static_cast<std::size_t>(bin)]);
            if (below + here >= rank && here > 0) {
                return (static_cast<float>(bin) + (rank - below) / here) / 4;
            }
            below += here;
        }
        return 0;
    }

    std::array<int, kBins> m_bins{};
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
    RunCounter across;
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
    RunCounter down;
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

// Cosines of 0, 1 and 2 half waves over the box at the corners between pixels.
std::vector<std::array<float, 3>> halfWaves(int count, float begin, float length)
{
    std::vector<std::array<float, 3>> waves(static_cast<std::size_t>(count) + 1);
    for (std::size_t i = 0; i < waves.size(); ++i) {
        const float t = std::clamp((static_cast<float>(i) - begin) / length, 0.0F, 1.0F);
        const float once = std::cos(kPi * t);
        waves[i] = {1, once, 2 * once * once - 1};
    }
    return waves;
}

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
    const auto across = halfWaves(ink.columns(), ink.boxLeft(), ink.boxWidth());
    const auto down = halfWaves(ink.rows(), ink.boxTop(), ink.boxHeight());
    float perimeter = 0;
    float slantSum = 0;
    float slantWeight = 0;
    std::array<float, 2> sixth{};
    float moments[ChannelCount][3][3] = {};
    const int corners = ink.columns() + 1;
    std::vector<float> buffer(static_cast<std::size_t>(corners) * 3);
    float* __restrict const gradientX = buffer.data();
    float* __restrict const gradientY = gradientX + corners;
    float* __restrict const squares = gradientY + corners;
    for (int y = -1; y < ink.rows(); ++y) {
        const float* upper = ink.row(y);
        const float* lower = ink.row(y + 1);
        float rowMoments[3][ChannelCount] = {};
        // Most pixels have no edge: what finds them out is a loop of its own, which compilers run several pixels at a
        // time.
        for (int i = 0; i < corners; ++i) {
            const float falling = lower[i] - upper[i - 1];
            const float rising = upper[i] - lower[i - 1];
            gradientX[i] = 0.5F * (falling + rising);
            gradientY[i] = 0.5F * (falling - rising);
            squares[i] = gradientX[i] * gradientX[i] + gradientY[i] * gradientY[i];
        }
        for (int i = 0; i < corners; ++i) {
            const float square = squares[i];
            if (square < 1e-4F) {
                continue;
            }
            const float gx = gradientX[i];
            const float gy = gradientY[i];
            const float strength = std::sqrt(square);
            perimeter += strength;
            const float inverse = 1 / square;
            const float cos2 = (gx * gx - gy * gy) * inverse;
            const float sin2 = 2 * gx * gy * inverse;
            const float cos4 = cos2 * cos2 - sin2 * sin2;
            const float sin4 = 2 * cos2 * sin2;
            sixth[0] += strength * (cos4 * cos2 - sin4 * sin2);
            sixth[1] += strength * (sin4 * cos2 + cos4 * sin2);
            const std::array<float, 3>& waves = across[static_cast<std::size_t>(i)];
            const float harmonics[ChannelCount] = {cos2, sin2, cos4, sin4};
            for (int u = 0; u < 3; ++u) {
                const float weight = strength * waves[static_cast<std::size_t>(u)];
                for (int channel = 0; channel < ChannelCount; ++channel) {
                    rowMoments[u][channel] += weight * harmonics[channel];
                }
            }
            if (std::fabs(gy) < 0.7F * std::fabs(gx)) {
                slantSum += strength * gy / gx;
                slantWeight += strength;
            }
        }
        for (int channel = 0; channel < ChannelCount; ++channel) {
            for (int v = 0; v < 3; ++v) {
                for (int u = 0; u < 3; ++u) {
                    moments[channel][v][u] +=
                        rowMoments[u][channel] * down[static_cast<std::size_t>(y + 1)][static_cast<std::size_t>(v)];
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

void measureCosines(const GlyphInk& ink, GlyphMeasures& measures)
{
    constexpr int n = GlyphMeasures::kCosines;
    std::vector<float> basis(static_cast<std::size_t>(ink.columns()) * n);
    for (int x = 0; x < ink.columns(); ++x) {
        const float t = std::clamp((static_cast<float>(x) + 0.5F - ink.boxLeft()) / ink.boxWidth(), 0.0F, 1.0F);
        for (int u = 0; u < n; ++u) {
            basis[static_cast<std::size_t>(x * n + u)] = std::cos(kPi * static_cast<float>(u) * t);
        }
    }
    float area = 0;
    for (int y = 0; y < ink.rows(); ++y) {
        std::array<float, n> sums{};
        const float* row = ink.row(y);
        for (int x = 0; x < ink.columns(); ++x) {
            if (row[x] == 0) {
                continue;
            }
            for (int u = 0; u < n; ++u) {
                sums[static_cast<std::size_t>(u)] += row[x] * basis[static_cast<std::size_t>(x * n + u)];
            }
        }
        area += sums[0];
        const float t = std::clamp((static_cast<float>(y) + 0.5F - ink.boxTop()) / ink.boxHeight(), 0.0F, 1.0F);
        for (int v = 0; v < n; ++v) {
            const float weight = std::cos(kPi * static_cast<float>(v) * t);
            for (int u = 0; u < n; ++u) {
                measures.cosines[static_cast<std::size_t>(v * n + u)] += weight * sums[static_cast<std::size_t>(u)];
            }
        }
    }
    measures.area = area;
    const float box = ink.boxWidth() * ink.boxHeight();
    for (float& cosine : measures.cosines) {
        cosine /= box;
    }
}

// White that the margin cannot reach is enclosed.
void measureHoles(const GlyphInk& ink, GlyphMeasures& measures)
{
    // Around the margin a frame that counts as taken, so that no step has to look for the end of a row.
    const int stride = ink.columns() + 4;
    const int end = stride * (ink.rows() + 4);
    std::vector<std::uint8_t> taken(static_cast<std::size_t>(end), 1);
    for (int y = 0; y < ink.rows() + 2; ++y) {
        const auto begin = taken.begin() + static_cast<std::ptrdiff_t>(y + 1) * stride + 1;
        std::fill(begin, begin + ink.columns() + 2, std::uint8_t{0});
    }
    for (int y = 0; y < ink.rows(); ++y) {
        const float* row = ink.row(y);
        std::uint8_t* target = &taken[static_cast<std::size_t>((y + 2) * stride + 2)];
        for (int x = 0; x < ink.columns(); ++x) {
            target[x] = row[x] >= 0.4F;
        }
    }
    std::vector<int> open(static_cast<std::size_t>(end));
    const auto flood = [&](int start) {
        std::size_t count = 0;
        int size = 0;
        const auto take = [&](int place) {
            if (!taken[static_cast<std::size_t>(place)]) {
                taken[static_cast<std::size_t>(place)] = 1;
                open[count++] = place;
            }
        };
        take(start);
        while (count > 0) {
            const int here = open[--count];
            ++size;
            take(here - stride);
            take(here + stride);
            take(here - 1);
            take(here + 1);
        }
        return size;
    };
    flood(stride + 1);
    const float box = ink.boxWidth() * ink.boxHeight();
    for (int place = 0; place < end; ++place) {
        if (!taken[static_cast<std::size_t>(place)]) {
            const auto size = static_cast<float>(flood(place));
            if (size > 0.002F * box) { // smaller ones are noise of the raster
                measures.holes += size / box;
                ++measures.holeCount;
            }
        }
    }
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
