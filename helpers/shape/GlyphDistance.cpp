#include "helpers/shape/GlyphDistance.h"

#include <cmath>

namespace krv {

namespace {

constexpr int kLanes = 8;

// From bench/similarity: the inverse of each value's spread over the faces of the training families, adjusted by how
// well it tells members of one design from others there, over 61.
constexpr std::array<float, kGlyphValueCount> kWeights = {
    0.04787F, 0.1494F,  0.01903F, 0.02611F, 0.05146F, 0.02764F, 0.09153F, 0.1365F,  0.07949F, 0.1089F, 0.08591F,
    0.1789F,  0.2326F,  0.2776F,  0.4183F,  0.7393F,  0.5078F,  0.5736F,  0.5692F,  0.6396F,  0.9418F, 1.033F,
    0.7873F,  0.9858F,  0.7093F,  0.2366F,  0.2793F,  0.2542F,  0.1946F,  0.1758F,  0.2072F,  0.1731F, 0.08757F,
    0.1495F,  0.07645F, 0.101F,   0.4973F,  0.4214F,  0.509F,   0.2703F,  0.07509F, 0.04573F, 0.239F,  0.3092F,
    0.17F,    0.3635F,  0.2695F,  0.3219F,  0.7216F,  0.6541F,  0.3481F,  0.1918F,  0.3481F,  0.3327F, 0.7583F,
    0.05853F, 0.235F,   0.2149F,  0.223F,   0.2875F,  0.1493F};

// Eight sums side by side: the compiler may not reorder one float sum, but it can run these in vector registers.
template <int Count>
inline float weightedDifferences(const float* one, const float* other)
{
    float sums[kLanes] = {};
    constexpr int whole = Count / kLanes * kLanes;
    for (int i = 0; i < whole; i += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane) {
            sums[lane] += kWeights[static_cast<std::size_t>(i + lane)] * std::fabs(one[i + lane] - other[i + lane]);
        }
    }
    for (int i = whole; i < Count; ++i) {
        sums[i - whole] += kWeights[static_cast<std::size_t>(i)] * std::fabs(one[i] - other[i]);
    }
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

} // namespace

const std::array<float, kGlyphValueCount>& glyphValueWeights()
{
    return kWeights;
}

float glyphDistance(const float* one, const float* other)
{
    return weightedDifferences<kGlyphValueCount>(one, other);
}

float glyphShapeDistance(const float* one, const float* other)
{
    return weightedDifferences<kFirstPlacementValue>(one, other);
}

} // namespace krv
