#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"

namespace kerval::helpers {

// The features of fonts that follow each other, turned from fonts of letters into letters of fonts. They are written in
// pieces: as much of each letter as the kernel keeps in one piece, so that it has no pages to fetch a second time for
// their other half. For one thread.
class FeatureBatch
{
public:
    static constexpr std::size_t kLetters = featurefolder::characters.size();
    using Maximums = std::array<std::int32_t, featureValueCount>; // the bits of values

    // Writes values of a letter, as place in featurefolder::characters, to a place counted in values.
    using Write = std::function<bool(std::size_t letter, const float* values, std::size_t count, std::size_t place)>;

    explicit FeatureBatch(Write write);

    // The next to be appended is this one of all fonts; what has been appended must be flushed.
    void startAt(std::size_t font);
    // Values that are no numbers become 0, unknown keys are skipped, missing letters stay all zero. False when a piece
    // cannot be written.
    bool append(std::string_view blob);
    bool flush();

    // Of all that has been appended, and at least 0.
    const Maximums& maximums() const { return m_maximums; }

private:
    static constexpr std::size_t kPiece = 65536 / sizeof(float);
    // No whole number of pages, as that would crowd all letters into the same lines of the processor's cache.
    static constexpr std::size_t kDistance = kPiece + 80;
    static_assert(kDistance >= kPiece + featureValueCount);

    float* begin(std::size_t letter) { return &m_values[letter * kDistance]; }
    bool writeOut(std::size_t count); // so many values of each letter; moves the rest up

    Write m_write;
    std::array<int, 256> m_letterOf{};
    std::vector<float> m_values = std::vector<float>(kLetters * kDistance);
    std::size_t m_used = 0;  // of each letter
    std::size_t m_place = 0; // where they go
    Maximums m_maximums{};
};

} // namespace kerval::helpers
