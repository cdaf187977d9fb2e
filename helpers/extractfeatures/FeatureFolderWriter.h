#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/extractfeatures/BackgroundWriter.h"
#include "helpers/extractfeatures/CatalogueReader.h"

namespace kerval::helpers {

// Writes a set of feature files beside the folder's own and puts them in place together: "ids.bin", whose presence
// makes the folder ready, goes away first and comes back last, so nobody finds half a set. The caller holds the
// folder's lock. What an interrupted run has left is cleared by the next one. The files are not forced to the disk:
// they can be made again, and after a power cut the reader notices sizes that do not agree.
class FeatureFolderWriter
{
public:
    explicit FeatureFolderWriter(const std::string& folder);
    ~FeatureFolderWriter();
    FeatureFolderWriter(const FeatureFolderWriter&) = delete;
    FeatureFolderWriter& operator=(const FeatureFolderWriter&) = delete;

    bool begin(std::string& problem);
    bool reserve(std::size_t fonts); // of which append() will be told; false when the disk has no room for them
    // Values that are no numbers become 0, unknown keys are skipped, missing letters stay all zero.
    bool append(const CatalogueFont& font, std::string_view blob);
    bool publish(std::string& problem);
    void abandon(); // begin() may follow

private:
    static constexpr std::size_t kLetters = featurefolder::characters.size();

    // Values of fonts that are written together: as much of each letter as the kernel keeps in one piece, so that it
    // has no pages to fetch a second time for their other half. What the last font has beyond that begins the next
    // batch.
    struct Batch
    {
        static constexpr std::size_t kWhole = 65536 / sizeof(float);
        // No whole number of pages, as that would crowd all letters into the same lines of the processor's cache.
        static constexpr std::size_t kDistance = kWhole + 80;
        static_assert(kDistance >= kWhole + featureValueCount);

        float* begin(std::size_t letter) { return &values[letter * kDistance]; }
        float* place(std::size_t letter) { return begin(letter) + used; }

        std::vector<float> values = std::vector<float>(kLetters * kDistance);
        std::size_t used = 0; // of each letter
    };

    // The files beside those of the letters; small enough to be kept until the end. In the order in which they are put
    // in place.
    enum Other : std::size_t
    {
        Maximums = kLetters,
        Hwi,
        Hwe,
        Hhe,
        Serif,
        Scores,
        Info,
        Ids
    };

    struct Output
    {
        std::string name;
        std::string text; // of the others
        int file = -1;
    };

    void put(Other other, std::string_view bytes) { m_outputs[other].text.append(bytes); }
    void writeBatch(std::size_t count); // of values of each letter

    std::string m_folder;
    std::string m_workFolder;
    std::vector<Output> m_outputs; // the letters in the order of featurefolder::characters, then the others
    std::array<int, 256> m_letterOf{};
    std::array<std::int32_t, featureValueCount> m_maximums{}; // the bits of values
    std::array<Batch, 2> m_batches;                           // one is filled while the other is written
    std::size_t m_filling = 0;
    std::unique_ptr<BackgroundWriter> m_writer;
    bool m_failed = false;
};

} // namespace kerval::helpers
