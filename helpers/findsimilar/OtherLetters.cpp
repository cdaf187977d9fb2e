#include "helpers/findsimilar/OtherLetters.h"

#include <utility>

#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/common/SharedWork.h"
#include "helpers/shape/GlyphDistance.h"

namespace kerval::helpers {

namespace {

constexpr int kShare = 20; // faces; fewer are not worth a second thread

bool readVector(const RecordFile& file, int font, FeatureVector& vector)
{
    return file.read(static_cast<std::size_t>(font) * featureByteCount, vector.data(), featureByteCount);
}

} // namespace

OtherLetters::OtherLetters(const FeatureFolder& folder, int font)
{
    for (const char character : featurefolder::characters) {
        Letter letter;
        if (!folder.hasLetter(character) && folder.openRecords(character, letter.file) &&
            readVector(letter.file, font, letter.vector) && krv::isMeasured(letter.vector)) {
            m_letters.push_back(std::move(letter));
        }
    }
    if (!folder.isCurrent()) {
        m_letters.clear(); // of a newer extraction, in which the places are others
    }
}

std::vector<float> OtherLetters::distances(const std::vector<int>& fonts) const
{
    std::vector<float> distances(fonts.size());
    shareWork(static_cast<int>(fonts.size()), kShare, [&](int begin, int end, int) {
        for (auto i = static_cast<std::size_t>(begin); i < static_cast<std::size_t>(end); ++i) {
            distances[i] = distance(fonts[i]);
        }
    });
    return distances;
}

float OtherLetters::distance(int font) const
{
    float sum = 0;
    int common = 0;
    FeatureVector vector;
    for (const Letter& letter : m_letters) {
        if (readVector(letter.file, font, vector) && krv::isMeasured(vector)) {
            sum += krv::glyphDistance(letter.vector.data(), vector.data());
            ++common;
        }
    }
    return common > 0 ? sum / static_cast<float>(common) : FaceComparison::kIncomparable;
}

} // namespace kerval::helpers
