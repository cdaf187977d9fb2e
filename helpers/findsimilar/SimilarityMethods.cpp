#include "helpers/findsimilar/SimilarityMethods.h"

#include <algorithm>

#include "helpers/findsimilar/Harmony.h"
#include "helpers/findsimilar/SmartChoice.h"

namespace kerval::helpers {

namespace {

// A face of another class is further away than its few letters show: the class was judged by all of them. Looks this
// near outweigh the judgement step by step: copies and cuts of one design that were judged differently stay neighbours.
constexpr double kOtherClass = 0.2;
constexpr float kNearLooks = 0.2F;

std::vector<Match> similarFaces(const FeatureFolder& folder, const SimilarityQuery& query)
{
    const std::vector<float> distances = FaceComparison(folder).distancesFrom(query.font, query.marked);
    const std::string_view kind = folder.className(query.font);
    std::vector<Match> matches;
    matches.reserve(distances.size());
    for (int font = 0; font < folder.count(); ++font) {
        const float looks = distances[static_cast<std::size_t>(font)];
        const double other = folder.className(font) == kind ? 0 : kOtherClass * std::min(1.0F, looks / kNearLooks);
        matches.push_back({font, looks + other});
    }
    // Equal copies of the face are at 0 as well, and the face itself still comes first. It is at 0 without any letter.
    const auto self = static_cast<std::size_t>(query.font);
    if (query.marked.empty() || query.marked[self]) {
        matches[self].deviance = -1;
    }
    matches = bestMatches(std::move(matches), query.limit);
    if (!matches.empty() && matches.front().deviance < 0) {
        matches.front().deviance = 0;
    }
    return matches;
}

} // namespace

std::vector<Match> findMatches(const FeatureFolder& folder, SimilarityMethod method, const SimilarityQuery& query)
{
    switch (method) {
    case SimilarityMethod::Similar:
        return similarFaces(folder, query);
    case SimilarityMethod::SameFamily:
    case SimilarityMethod::Contrast:
    case SimilarityMethod::Body:
    case SimilarityMethod::Headline:
        return Harmony(folder).matches(method, query);
    case SimilarityMethod::SmartAll:
    case SimilarityMethod::SmartBody:
    case SimilarityMethod::SmartHeadline:
        return smartChoice(folder, method, query);
    }
    return {};
}

} // namespace kerval::helpers
