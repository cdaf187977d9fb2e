#pragma once

#include <array>
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
    // Values that are no numbers become 0, unknown keys are skipped, missing letters stay all zero.
    bool append(const CatalogueFont& font, std::string_view blob);
    bool publish(std::string& problem);
    void abandon(); // begin() may follow

private:
    // The letters of so many fonts are collected and written together: as much as stays in the processor's cache.
    static constexpr std::size_t kBatchFonts = 256;
    static constexpr std::size_t kLetters = featurefolder::characters.size();

    // Every letter has room for a batch's fonts and a little more: its distance from the next is no whole number of
    // pages, as that would crowd all of them into the same lines of the processor's cache.
    struct Batch
    {
        static constexpr std::size_t kLetterValues = (kBatchFonts + 1) * featureValueCount;

        float* place(std::size_t letter) { return &values[letter * kLetterValues + fonts * featureValueCount]; }

        std::vector<float> values = std::vector<float>(kLetters * kLetterValues);
        std::size_t fonts = 0;
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

    void addLetter(std::size_t letter, std::string_view bytes);
    void put(Other other, std::string_view bytes) { m_outputs[other].text.append(bytes); }
    void writeBatch();

    std::string m_folder;
    std::string m_workFolder;
    std::vector<Output> m_outputs; // the letters in the order of featurefolder::characters, then the others
    std::array<int, 256> m_letterOf{};
    FeatureVector m_maximums{};
    std::array<Batch, 2> m_batches; // one is filled while the other is written
    std::size_t m_filling = 0;
    std::unique_ptr<BackgroundWriter> m_writer;
    bool m_failed = false;
};

} // namespace kerval::helpers
