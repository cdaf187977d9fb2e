#pragma once

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// How much each of the 61 values counts in comparisons of two drawings of the same letter. A value's weight is the
// inverse of what it varies by between independent cuts of one design, see docs/similarity.md.
const std::array<float, kGlyphValueCount>& glyphValueWeights();

// Sum of the weighted squares of the differences; 61 values at both places. The placement values are the last ones, so
// a letter from a picture is compared by `glyphShapeDistance`.
float glyphDistance(const float* one, const float* other);
float glyphShapeDistance(const float* one, const float* other);

} // namespace krv
