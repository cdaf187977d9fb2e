#pragma once

#include <vector>

#include "helpers/findsimilar/FaceComparison.h"
#include "helpers/findsimilar/SimilarityMethods.h"

namespace kerval::helpers {

// Keeps a list of suggestions from being ten cuts of one design: the further cuts of a superfamily, and faces that look
// like one already taken, fall back behind other designs by `fallback` for each that is before them.
std::vector<Match> spreadOverDesigns(const FeatureFolder& folder, std::vector<Match> matches, int limit,
                                     double fallback);

} // namespace kerval::helpers
