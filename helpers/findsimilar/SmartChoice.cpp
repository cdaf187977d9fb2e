#include "helpers/findsimilar/SmartChoice.h"

#include <algorithm>
#include <cmath>

#include "helpers/findsimilar/DesignSpread.h"

namespace kerval::helpers {

namespace {

constexpr double kFullScore = 1000;
constexpr double kFurtherCut = 0.3;

double nearness(double value, double middle, double reach)
{
    return std::max(0.0, 1 - std::fabs(value - middle) / reach);
}

// For a set without scores, from what every set holds: the middle weights and proportions for text, weight for
// headlines.
double measuredScore(const FeatureFolder& folder, SimilarityMethod method, int font)
{
    const double proportion = nearness(folder.hhe(font), 690, 250);
    const double body = 0.6 * nearness(folder.hwe(font), 140, 120) + 0.4 * proportion;
    const double head = 0.7 * std::min(1.0, folder.hwe(font) / 350.0) + 0.3 * proportion;
    const double score = method == SimilarityMethod::SmartBody       ? body
                         : method == SimilarityMethod::SmartHeadline ? head
                                                                     : (body + head) / 2;
    return kFullScore * score;
}

} // namespace

std::vector<Match> smartChoice(const FeatureFolder& folder, SimilarityMethod method, const SimilarityQuery& query)
{
    const int use = method == SimilarityMethod::SmartBody ? 1 : method == SimilarityMethod::SmartHeadline ? 2 : 0;
    std::vector<Match> matches;
    for (int font = 0; font < folder.count(); ++font) {
        if (!query.marked.empty() && !query.marked[static_cast<std::size_t>(font)]) {
            continue;
        }
        const std::int32_t* scores = folder.scores(font);
        const double score = scores ? scores[use] : measuredScore(folder, method, font);
        if (score > 0) {
            matches.push_back({font, 1 - std::min(score, kFullScore) / kFullScore});
        }
    }
    return spreadOverDesigns(folder, std::move(matches), query.limit, kFurtherCut);
}

} // namespace kerval::helpers
