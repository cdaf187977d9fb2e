#include "helpers/shape/Ordinariness.h"

#include <algorithm>
#include <cmath>

#include "helpers/shape/GlyphDistance.h"

namespace krv {

namespace {

// From the training families of bench/similarity: what text faces usually are away from the ordinary ones, and the
// power that helps to tell alike designs there. A face that is nearly the ordinary one must not move without bound.
constexpr float kUsualDistance = 0.4F;
constexpr float kPower = 0.45F;
constexpr float kNearest = 0.1F;

} // namespace

void Ordinariness::add(int letter, const float* values)
{
    std::array<float, kGlyphValueCount> ordinary;
    for (int face = 0; face < kOrdinaryFaces; ++face) {
        std::transform(std::begin(kOrdinaryLetters[face][letter]), std::end(kOrdinaryLetters[face][letter]),
                       ordinary.begin(), [](short thousandths) { return static_cast<float>(thousandths) * 0.001F; });
        m_sums[face] += glyphDistance(ordinary.data(), values);
    }
    ++m_letters;
}

float Ordinariness::factor() const
{
    if (m_letters == 0) {
        return 1;
    }
    // The geometric mean: a face is ordinary when it is near to one of the two.
    float product = 1;
    for (const float sum : m_sums) {
        product *= std::max(kNearest, sum / static_cast<float>(m_letters)) / kUsualDistance;
    }
    return std::pow(product, -kPower / kOrdinaryFaces);
}

} // namespace krv
