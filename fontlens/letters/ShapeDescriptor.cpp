#include "fontlens/letters/ShapeDescriptor.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kerval::letters {

namespace {

constexpr int side = 11;           // half waves along each axis, of which the triangle of low ones is kept
constexpr double halfWindow = 2.3; // standard deviations; the box of most letters lies within 2
constexpr double pi = 3.14159265358979323846;

// Cosines of all waves at the pixels of one axis, zero outside of the window.
std::vector<float> cosines(int count, double begin, double length)
{
    std::vector<float> result(std::size_t(count) * side);
    for (int i = 0; i < count; ++i) {
        const double at = (i + 0.5 - begin) / length;
        if (at < 0 || at > 1)
            continue;
        for (int wave = 0; wave < side; ++wave) {
            const double norm = wave == 0 ? 1 : std::sqrt(2.0);
            result[std::size_t(i) * side + std::size_t(wave)] = float(norm * std::cos(pi * wave * at));
        }
    }
    return result;
}

} // namespace

bool ShapeDescriptor::of(const Coverage& coverage, double unit, double blur, ShapeDescriptor& result)
{
    double sum = 0, sumX = 0, sumY = 0, sumXX = 0, sumYY = 0;
    for (int y = 0; y < coverage.height; ++y) {
        double line = 0;
        for (int x = 0; x < coverage.width; ++x) {
            const double ink = double(coverage.row(y)[x]);
            line += ink;
            sumX += ink * x;
            sumXX += ink * x * x;
        }
        sum += line;
        sumY += line * y;
        sumYY += line * y * y;
    }
    if (!(sum > 0.5))
        return false;
    const double meanX = sumX / sum;
    const double meanY = sumY / sum;
    const double floor = 1.0 / 12;
    const double width = std::sqrt(std::max(floor, sumXX / sum - meanX * meanX - blur * blur));
    const double height = std::sqrt(std::max(floor, sumYY / sum - meanY * meanY - blur * blur));
    result.logWidth = float(std::log(width * unit));
    result.logHeight = float(std::log(height * unit));

    const double spanX = 2 * halfWindow * width;
    const double spanY = 2 * halfWindow * height;
    const std::vector<float> across = cosines(coverage.width, meanX + 0.5 - spanX / 2, spanX);
    const std::vector<float> down = cosines(coverage.height, meanY + 0.5 - spanY / 2, spanY);
    std::array<std::array<float, side>, side> sums{};
    for (int y = 0; y < coverage.height; ++y) {
        std::array<float, side> line{};
        for (int x = 0; x < coverage.width; ++x) {
            const float ink = coverage.row(y)[x];
            if (ink == 0)
                continue;
            const float* waveAcross = &across[std::size_t(x) * side];
            for (std::size_t u = 0; u < side; ++u)
                line[u] += ink * waveAcross[u];
        }
        const float* waveDown = &down[std::size_t(y) * side];
        for (std::size_t v = 0; v < side; ++v) {
            for (std::size_t u = 0; u < side; ++u)
                sums[v][u] += waveDown[v] * line[u];
        }
    }
    const double area = spanX * spanY;
    std::size_t at = 0;
    result.coefficients = {};
    for (std::size_t degree = 0; degree < 2 * side && at < waves; ++degree) {
        for (std::size_t u = 0; u <= degree && at < waves; ++u) {
            const std::size_t v = degree - u;
            if (u >= side || v >= side)
                continue;
            const double value = double(quantum) * double(sums[v][u]) / area;
            result.coefficients[at++] = std::int8_t(std::clamp<long>(std::lround(value), -127, 127));
        }
    }
    return true;
}

} // namespace kerval::letters
