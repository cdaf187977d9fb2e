#include "helpers/shape/HalfWaves.h"

#include <algorithm>

namespace krv {

HalfWaves::HalfWaves(int count, float first, float length)
{
    constexpr float pi = 3.14159265F;
    const float step = 1 / length;
    // The cosine as the sine of the angle's rest to a right one, by its power series: the next term is below 1e-9. All
    // places at once are many times as quick as calls of the library.
#pragma omp simd
    for (int i = 0; i < count; ++i) {
        float share = (first + static_cast<float>(i)) * step;
        share = share > 0 ? share : 0;
        share = share < 1 ? share : 1;
        const float angle = pi * (0.5F - share);
        const float square = angle * angle;
        float series = 1.6059044e-10F;
        series = series * square - 2.5052108e-8F;
        series = series * square + 2.7557319e-6F;
        series = series * square - 1.9841270e-4F;
        series = series * square + 8.3333333e-3F;
        series = series * square - 1.6666667e-1F;
        m_cosines[static_cast<std::size_t>(i)] = angle + angle * square * series;
    }
    const auto end = m_cosines.begin() + count;
    std::fill(end, end + std::min<std::ptrdiff_t>(kBlock, m_cosines.end() - end), 0.0F);
}

} // namespace krv
