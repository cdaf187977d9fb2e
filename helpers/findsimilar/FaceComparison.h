#pragma once

#include <limits>
#include <vector>

#include "helpers/findsimilar/FeatureFolder.h"

namespace kerval::helpers {

struct Match
{
    int font = 0; // index in the folder
    double deviance = 0;
};

// How far every face of a folder is from one of them, by the letters the folder was opened with. A letter that either
// face lacks is left out; a face that has none of the other's letters is at no distance at all (infinity).
class FaceComparison
{
public:
    static constexpr float kIncomparable = std::numeric_limits<float>::infinity();

    explicit FaceComparison(const FeatureFolder& folder)
        : m_folder(folder)
    {
    }

    // For all faces, or for those with a mark; the others are incomparable.
    std::vector<float> distancesFrom(int font, const std::vector<char>& marked = {}) const;
    float distance(int one, int other) const;
    // By the same letters; what the distances to the face are to be multiplied by.
    float ordinariness(int font) const;

private:
    void scan(int font, const std::vector<char>& marked, int begin, int end, std::vector<float>& distances) const;

    const FeatureFolder& m_folder;
};

// The best `limit` of them, best first; equal ones in the folder's order. Incomparable ones are dropped.
std::vector<Match> bestMatches(std::vector<Match> matches, int limit);

} // namespace kerval::helpers
