#include "helpers/extractfeatures/FeatureBatch.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstring>
#include <utility>

#include "helpers/shape/VectorClones.h"

namespace kerval::helpers {

namespace {

// The largest of each of a font's values, and the largest without signs, by their bits: positive numbers are in the
// same order as the integers that these are, all negative ones below, infinity and what is no number above.
class Extremes
{
public:
    // Takes eight values at a time, the last of them together with some that were taken before.
    KRV_VECTOR_CLONES
    void copyLetter(const char* from, float* to)
    {
        for (std::size_t block = 0; block < m_values.size(); ++block) {
            const std::size_t first = placeOf(block);
            Eight bits;
            std::memcpy(&bits, from + first * sizeof(float), sizeof bits);
            std::memcpy(to + first, &bits, sizeof bits);
            // Where the next font's come: there are too many places for the processor to foresee them.
            __builtin_prefetch(to + featureValueCount + first, 1);
            m_values[block] = bits > m_values[block] ? bits : m_values[block];
            const Eight magnitudes = bits & 0x7FFFFFFF;
            m_magnitudes[block] = magnitudes > m_magnitudes[block] ? magnitudes : m_magnitudes[block];
        }
    }

    bool areFinite() const
    {
        constexpr std::int32_t infinity = 0x7F800000;
        bool finite = true;
        for (const Eight& magnitudes : m_magnitudes) {
            for (std::size_t i = 0; i < kTogether; ++i) {
                finite = finite && magnitudes[i] < infinity;
            }
        }
        return finite;
    }

    template <typename Bits>
    void raise(Bits& maximums) const
    {
        for (std::size_t i = 0; i < featureValueCount; ++i) {
            const std::size_t block = i / kTogether;
            maximums[i] = std::max(maximums[i], m_values[block][i - placeOf(block)]);
        }
    }

private:
    static constexpr std::size_t kTogether = 8;
    using Eight = std::int32_t __attribute__((vector_size(kTogether * sizeof(std::int32_t))));
    using Blocks = std::array<Eight, (featureValueCount + kTogether - 1) / kTogether>;

    static std::size_t placeOf(std::size_t block) { return std::min(block * kTogether, featureValueCount - kTogether); }

    Blocks m_values{};
    Blocks m_magnitudes{};
};

} // namespace

FeatureBatch::FeatureBatch(Write write)
    : m_write(std::move(write))
{
    m_letterOf.fill(-1);
    int place = 0;
    for (const char character : featurefolder::characters) {
        m_letterOf[static_cast<unsigned char>(character)] = place++;
    }
}

void FeatureBatch::startAt(std::size_t font)
{
    m_place = font * featureValueCount;
}

bool FeatureBatch::append(std::string_view blob)
{
    std::bitset<kLetters> seen;
    Extremes extremes;
    FeatureBlobReader reader(blob);
    unsigned char key = 0;
    std::string_view bytes;
    while (reader.next(key, bytes)) {
        const int letter = m_letterOf[key];
        if (letter >= 0 && !seen[static_cast<std::size_t>(letter)]) {
            seen[static_cast<std::size_t>(letter)] = true;
            extremes.copyLetter(bytes.data(), begin(static_cast<std::size_t>(letter)) + m_used);
        }
    }
    for (std::size_t letter = 0; letter < kLetters && !seen.all(); ++letter) {
        if (!seen[letter]) {
            std::fill_n(begin(letter) + m_used, featureValueCount, 0.0F);
        }
    }
    if (!extremes.areFinite()) {
        extremes = {};
        for (std::size_t letter = 0; letter < kLetters; ++letter) {
            float* place = begin(letter) + m_used;
            FeatureVector values;
            std::transform(place, place + featureValueCount, values.begin(),
                           [](float value) { return std::isfinite(value) ? value : 0; });
            extremes.copyLetter(reinterpret_cast<const char*>(values.data()), place);
        }
    }
    extremes.raise(m_maximums);
    m_used += featureValueCount;
    const std::size_t toPieceEnd = kPiece - m_place % kPiece;
    return m_used < toPieceEnd || writeOut(toPieceEnd);
}

bool FeatureBatch::flush()
{
    return writeOut(m_used);
}

bool FeatureBatch::writeOut(std::size_t count)
{
    for (std::size_t letter = 0; letter < kLetters; ++letter) {
        float* values = begin(letter);
        if (!m_write(letter, values, count, m_place)) {
            return false;
        }
        std::copy(values + count, values + m_used, values);
    }
    m_place += count;
    m_used -= count;
    return true;
}

} // namespace kerval::helpers
