#include "helpers/shape/GlyphDistance.h"

#include <cmath>

namespace krv {

namespace {

constexpr int kLanes = 8;

// From bench/similarity: the inverse of each value's spread over the faces of the training families, adjusted by how
// well it tells members of one design from others there, over 61.
constexpr std::array<float, kGlyphValueCount> kWeights = {
    0.04457F, 0.1352F,  0.01464F, 0.02261F, 0.05011F, 0.01516F, 0.09484F, 0.1188F,  0.09122F, 0.1101F, 0.0838F,
    0.1304F,  0.2041F,  0.3085F,  0.4258F,  0.6334F,  0.5549F,  0.5395F,  0.5926F,  0.5888F,  0.9547F, 0.8718F,
    0.7609F,  1.013F,   0.7156F,  0.1779F,  0.2986F,  0.2686F,  0.1965F,  0.1948F,  0.188F,   0.1869F, 0.08546F,
    0.164F,   0.07958F, 0.08191F, 0.2839F,  0.2349F,  0.2913F,  0.221F,   0.06691F, 0.03253F, 0.2511F, 0.3588F,
    0.1868F,  0.3811F,  0.2687F,  0.3419F,  0.4403F,  0.4975F,  0.2698F,  0.2062F,  0.3854F,  0.3019F, 0.4728F,
    0.05599F, 0.1676F,  0.1054F,  0.2447F,  0.3821F,  0.1093F};

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
