#pragma once

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// The ordinary text face with serifs and the one without: the median of each value over the plain text faces that
// bench/similarity/fit looks at, in thousandths.
constexpr int kOrdinaryFaces = 2;
extern const short kOrdinaryLetters[kOrdinaryFaces][kFeatureLetterCount][kGlyphValueCount];

// How ordinary a face looks by some of its letters. An ordinary face is near to everything, and near to what it has
// nothing to do with; one that shares what is out of the ordinary with another is more alike than its distance says.
class Ordinariness
{
public:
    // One of the 62 letters; 61 values, not all zero.
    void add(int letter, const float* values);
    // What distances to the face are multiplied by: above 1 for ordinary faces, 1 without letters.
    float factor() const;

private:
    float m_sums[kOrdinaryFaces] = {};
    int m_letters = 0;
};

} // namespace krv
