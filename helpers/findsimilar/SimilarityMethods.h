#pragma once

#include <vector>

#include "helpers/findsimilar/FaceComparison.h"
#include "helpers/findsimilar/FeatureFolder.h"
#include "helpers/findsimilar/SimilarityOptions.h"

namespace kerval::helpers {

struct SimilarityQuery
{
    int font = 0;             // index of the face that is asked about
    int limit = 0;            // most matches wanted
    std::vector<char> marked; // one mark for each face that may be a match; empty: all may
};

// The faces of a method, best first. See docs/similarity.md for what each method looks for.
std::vector<Match> findMatches(const FeatureFolder& folder, SimilarityMethod method, const SimilarityQuery& query);

} // namespace kerval::helpers
