#include "helpers/findsimilar/FaceComparison.h"

#include <algorithm>
#include <cmath>

#include "helpers/common/SharedWork.h"
#include "helpers/shape/GlyphDistance.h"
#include "helpers/shape/Ordinariness.h"

namespace kerval::helpers {

namespace {

// A face that lacks some of the letters is a little less sure to be alike.
constexpr float kMissingPenalty = 0.15F;

constexpr int kShare = 2500; // faces that a thread takes at a time; of two such shares on it saves what it costs

bool isPresent(const float* vector)
{
    // The first two values are zero together only for a missing letter, but a foreign set need not be ours.
    return vector[0] != 0 || vector[1] != 0 ||
           std::any_of(vector + 2, vector + krv::kGlyphValueCount, [](float value) { return value != 0; });
}

} // namespace

std::vector<float> FaceComparison::distancesFrom(int font, const std::vector<char>& marked) const
{
    std::vector<float> distances(static_cast<std::size_t>(m_folder.count()), kIncomparable);
    shareWork(m_folder.count(), kShare, [&](int begin, int end, int) { scan(font, marked, begin, end, distances); });
    return distances;
}

float FaceComparison::distance(int one, int other) const
{
    float sum = 0;
    int common = 0;
    int wanted = 0;
    for (int letter = 0; letter < m_folder.letterCount(); ++letter) {
        const float* mine = m_folder.vector(letter, one);
        const float* its = m_folder.vector(letter, other);
        if (isPresent(mine)) {
            ++wanted;
            if (isPresent(its)) {
                sum += krv::glyphDistance(mine, its);
                ++common;
            }
        }
    }
    if (common == 0) {
        return kIncomparable;
    }
    return sum / static_cast<float>(common) * (1 + kMissingPenalty * static_cast<float>(wanted - common));
}

float FaceComparison::ordinariness(int font) const
{
    krv::Ordinariness ordinariness;
    for (int letter = 0; letter < m_folder.letterCount(); ++letter) {
        const float* vector = m_folder.vector(letter, font);
        if (isPresent(vector)) {
            ordinariness.add(krv::featureLetterIndex(m_folder.character(letter)), vector);
        }
    }
    return ordinariness.factor();
}

void FaceComparison::scan(int font, const std::vector<char>& marked, int begin, int end,
                          std::vector<float>& distances) const
{
    std::vector<int> letters;
    for (int letter = 0; letter < m_folder.letterCount(); ++letter) {
        if (isPresent(m_folder.vector(letter, font))) {
            letters.push_back(letter);
        }
    }
    const auto count = static_cast<std::size_t>(end - begin);
    std::vector<float> sums(count, 0.0F);
    std::vector<int> common(count, 0);
    for (const int letter : letters) { // one file at a time, from its start to its end
        const float* base = m_folder.vector(letter, font);
        for (int other = begin; other < end; ++other) {
            if (!marked.empty() && !marked[static_cast<std::size_t>(other)]) {
                continue;
            }
            const float* vector = m_folder.vector(letter, other);
            if (isPresent(vector)) {
                sums[static_cast<std::size_t>(other - begin)] += krv::glyphDistance(base, vector);
                ++common[static_cast<std::size_t>(other - begin)];
            }
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (common[i] > 0) {
            const auto missing = static_cast<float>(static_cast<int>(letters.size()) - common[i]);
            distances[static_cast<std::size_t>(begin) + i] =
                sums[i] / static_cast<float>(common[i]) * (1 + kMissingPenalty * missing);
        }
    }
}

std::vector<Match> bestMatches(std::vector<Match> matches, int limit)
{
    matches.erase(std::remove_if(matches.begin(), matches.end(),
                                 [](const Match& match) { return !std::isfinite(match.deviance); }),
                  matches.end());
    const auto wanted = std::min(matches.size(), static_cast<std::size_t>(std::max(limit, 0)));
    const auto better = [](const Match& a, const Match& b) {
        return a.deviance != b.deviance ? a.deviance < b.deviance : a.font < b.font;
    };
    std::partial_sort(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(wanted), matches.end(), better);
    matches.resize(wanted);
    return matches;
}

} // namespace kerval::helpers
