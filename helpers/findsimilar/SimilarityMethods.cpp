#include "helpers/findsimilar/SimilarityMethods.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "helpers/findsimilar/Harmony.h"
#include "helpers/findsimilar/OtherLetters.h"
#include "helpers/findsimilar/SmartChoice.h"

namespace kerval::helpers {

namespace {

// A face of another class is further away than its few letters show: the class was judged by all of them. Looks this
// near outweigh the judgement step by step: copies and cuts of one design that were judged differently stay neighbours.
constexpr double kOtherClass = 0.2;
constexpr double kNearLooks = 0.2;

// How ordinary a face is moves it by some places, not by hundreds: only so many of the nearest are looked at again.
int lookedAtFor(int limit)
{
    constexpr int least = 200;
    constexpr int perMatch = 2;
    return std::max(least, std::min(limit, std::numeric_limits<int>::max() / perMatch) * perMatch);
}

// These letters together stand for the face as a whole; a query for others is about just those letters.
constexpr std::string_view kFaceLetters = "htlaf";
// The rest of the face is looked at in so many of the nearest: what comes first changes no more with more of them.
constexpr std::size_t kWholeFaces = 100;

bool isAboutWholeFaces(const FeatureFolder& folder)
{
    return std::all_of(kFaceLetters.begin(), kFaceLetters.end(),
                       [&](char character) { return folder.hasLetter(character); });
}

// Makes the deviance of the nearest the geometric mean of what the letters asked for and all the others say: neither
// can be outweighed by one odd letter, and what looks the same stays at 0.
void lookAtWholeFaces(const FeatureFolder& folder, int font, std::vector<Match>& matches)
{
    const std::size_t count = std::min(kWholeFaces, matches.size());
    std::vector<int> fonts;
    for (std::size_t i = 0; i < count; ++i) {
        fonts.push_back(matches[i].font);
    }
    const std::vector<float> others = OtherLetters(folder, font).distances(fonts);
    for (std::size_t i = 0; i < count; ++i) {
        if (matches[i].deviance > 0 && others[i] != FaceComparison::kIncomparable) {
            matches[i].deviance = std::sqrt(matches[i].deviance * static_cast<double>(others[i]));
        }
    }
}

// Weighs the looks by how ordinary the other face is, and adds what another class counts.
void judgeFaces(const FeatureFolder& folder, int font, std::vector<Match>& matches)
{
    const FaceComparison comparison(folder);
    const std::string_view kind = folder.className(font);
    for (Match& match : matches) {
        if (match.deviance > 0) {
            const double looks = match.deviance * comparison.ordinariness(match.font);
            const bool otherClass = folder.className(match.font) != kind;
            match.deviance = looks + (otherClass ? kOtherClass * std::min(1.0, looks / kNearLooks) : 0);
        }
    }
}

std::vector<Match> similarFaces(const FeatureFolder& folder, const SimilarityQuery& query)
{
    const std::vector<float> distances = FaceComparison(folder).distancesFrom(query.font, query.marked);
    std::vector<Match> matches;
    matches.reserve(distances.size());
    for (int font = 0; font < folder.count(); ++font) {
        matches.push_back({font, distances[static_cast<std::size_t>(font)]});
    }
    // Equal copies of the face are at 0 as well, and the face itself still comes first. It is at 0 without any letter.
    const auto self = static_cast<std::size_t>(query.font);
    if (query.marked.empty() || query.marked[self]) {
        matches[self].deviance = -1;
    }
    matches = bestMatches(std::move(matches), lookedAtFor(query.limit));
    if (isAboutWholeFaces(folder)) {
        lookAtWholeFaces(folder, query.font, matches);
    }
    judgeFaces(folder, query.font, matches);
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
