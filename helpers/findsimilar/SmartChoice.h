#pragma once

#include <vector>

#include "helpers/findsimilar/SimilarityMethods.h"

namespace kerval::helpers {

// The catalogue's best faces for a use by their smart-choice scores, spread over different designs. The deviance is
// what a face lacks of the full score, in thousandths, plus the fallback of further cuts. Faces without a score take no
// part.
std::vector<Match> smartChoice(const FeatureFolder& folder, SimilarityMethod method, const SimilarityQuery& query);

} // namespace kerval::helpers
