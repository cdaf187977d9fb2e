#include "helpers/findsimilar/SimilarityMethods.h"

#include <algorithm>
#include <cmath>

#include "helpers/findsimilar/Harmony.h"
#include "helpers/findsimilar/SmartChoice.h"

namespace kerval::helpers {

namespace {

// A face of another class is further away than its few letters show: the class was judged by all of them. Looks this
// near outweigh the judgement step by step: copies and cuts of one design that were judged differently stay neighbours.
constexpr double kOtherClass = 0.2;
constexpr double kNearLooks = 0.2;

// How ordinary a face is moves it by some places, not by hundreds: only so many of the nearest are looked at again.
void keepNearest(std::vector<Match>& matches, int limit)
{
    constexpr std::size_t least = 500;
    constexpr std::size_t perMatch = 4;
    const std::size_t kept = std::max(least, perMatch * static_cast<std::size_t>(std::max(limit, 0)));
    if (kept < matches.size()) {
        std::nth_element(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(kept), matches.end(),
                         [](const Match& a, const Match& b) {
                             return a.deviance != b.deviance ? a.deviance < b.deviance : a.font < b.font;
                         });
        matches.resize(kept);
    }
}

std::vector<Match> similarFaces(const FeatureFolder& folder, const SimilarityQuery& query)
{
    const FaceComparison comparison(folder);
    const std::vector<float> distances = comparison.distancesFrom(query.font, query.marked);
    std::vector<Match> matches;
    matches.reserve(distances.size());
    for (int font = 0; font < folder.count(); ++font) {
        const auto place = static_cast<std::size_t>(font);
        if (font == query.font && (query.marked.empty() || query.marked[place])) {
            matches.push_back({font, -1}); // without any letter too, and before equal copies
        } else if (std::isfinite(distances[place])) {
            matches.push_back({font, distances[place]});
        }
    }
    keepNearest(matches, query.limit);
    const std::string_view kind = folder.className(query.font);
    for (Match& match : matches) {
        if (match.deviance > 0) {
            const double looks = match.deviance * comparison.ordinariness(match.font);
            const bool otherClass = folder.className(match.font) != kind;
            match.deviance = looks + (otherClass ? kOtherClass * std::min(1.0, looks / kNearLooks) : 0);
        }
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
