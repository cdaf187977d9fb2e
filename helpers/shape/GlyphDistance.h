#pragma once

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// How much each of the 61 values counts in comparisons of two drawings of the same letter, see docs/similarity.md.
const std::array<float, kGlyphValueCount>& glyphValueWeights();

// Sum of the weighted differences; 61 values at both places. About 0.1 between independent cuts of one design, 0.3
// between weights of a family, 1 between faces that have nothing in common. Differences and not their squares: one odd
// value, such as a letter of another construction, then does not outweigh all the others.
float glyphDistance(const float* one, const float* other);
// Without the placement values, for letters from a picture.
float glyphShapeDistance(const float* one, const float* other);

} // namespace krv
