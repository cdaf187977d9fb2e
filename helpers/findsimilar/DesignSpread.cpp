#include "helpers/findsimilar/DesignSpread.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>

#include "helpers/findsimilar/DesignName.h"

namespace kerval::helpers {

namespace {

// Looks are compared among the first this many only: it costs the square of their number.
constexpr int kLookedAt = 120;
constexpr float kLooksTheSame = 0.1F;

void fallBackByName(const FeatureFolder& folder, std::vector<Match>& matches, double fallback)
{
    std::unordered_map<std::string, int> cuts;
    for (Match& match : matches) {
        const std::string superfamily = DesignName::of(folder.postScriptName(match.font)).superfamily;
        if (!superfamily.empty()) {
            match.deviance += fallback * cuts[superfamily]++;
        }
    }
}

void fallBackByLooks(const FeatureFolder& folder, std::vector<Match>& matches, double fallback)
{
    const FaceComparison comparison(folder);
    std::vector<int> taken;
    const auto count = std::min(matches.size(), static_cast<std::size_t>(kLookedAt));
    for (std::size_t i = 0; i < count; ++i) {
        const auto alike = std::count_if(taken.begin(), taken.end(), [&](int other) {
            return comparison.distance(matches[i].font, other) < kLooksTheSame;
        });
        if (alike > 0) {
            matches[i].deviance += fallback * static_cast<double>(alike);
        } else {
            taken.push_back(matches[i].font);
        }
    }
}

} // namespace

std::vector<Match> spreadOverDesigns(const FeatureFolder& folder, std::vector<Match> matches, int limit,
                                     double fallback)
{
    const int all = static_cast<int>(matches.size());
    matches = bestMatches(std::move(matches), all);
    fallBackByName(folder, matches, fallback);
    matches = bestMatches(std::move(matches), all);
    fallBackByLooks(folder, matches, fallback);
    return bestMatches(std::move(matches), limit);
}

} // namespace kerval::helpers
