#include "helpers/shape/GlyphDistance.h"

namespace krv {

namespace {

constexpr int kLanes = 8;

// Eight sums side by side: the compiler may not reorder one float sum, but it can run these in vector registers.
inline float weightedSquares(const float* one, const float* other, int count)
{
    const float* weights = glyphValueWeights().data();
    float sums[kLanes] = {};
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane) {
            const float difference = one[i + lane] - other[i + lane];
            sums[lane] += weights[i + lane] * difference * difference;
        }
    }
    for (; i < count; ++i) {
        const float difference = one[i] - other[i];
        sums[0] += weights[i] * difference * difference;
    }
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

} // namespace

const std::array<float, kGlyphValueCount>& glyphValueWeights()
{
    static const std::array<float, kGlyphValueCount> weights = [] {
        std::array<float, kGlyphValueCount> ones{};
        ones.fill(1);
        return ones;
    }();
    return weights;
}

float glyphDistance(const float* one, const float* other)
{
    return weightedSquares(one, other, kGlyphValueCount);
}

float glyphShapeDistance(const float* one, const float* other)
{
    return weightedSquares(one, other, kFirstPlacementValue);
}

} // namespace krv
