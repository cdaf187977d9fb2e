#pragma once

#include <vector>

#include "helpers/common/FeatureBlob.h"
#include "helpers/findsimilar/FaceComparison.h"
#include "helpers/findsimilar/FeatureFolder.h"
#include "helpers/findsimilar/RecordFile.h"

namespace kerval::helpers {

// What the letters that a query does not go through say about a few faces: only these faces' records are read.
class OtherLetters
{
public:
    // The letters of a face; those that cannot be read, and those it lacks, have no say.
    OtherLetters(const FeatureFolder& folder, int font);

    // The mean distance over the letters that both have for each of these faces; kIncomparable without any.
    std::vector<float> distances(const std::vector<int>& fonts) const;

private:
    struct Letter
    {
        RecordFile file;
        FeatureVector vector; // of the face that is asked about
    };

    float distance(int font) const;

    std::vector<Letter> m_letters;
};

} // namespace kerval::helpers
