#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/extractfeatures/CatalogueReader.h"
#include "helpers/extractfeatures/FeatureBatch.h"

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

    // Makes the files, with room for the letters of these fonts, which the caller adds.
    bool begin(const std::vector<CatalogueFont>& fonts, std::string& problem);
    // Writes values of a letter, as place in featurefolder::characters, to a place counted in values. May be called by
    // several threads at once.
    bool writeLetter(std::size_t letter, const float* values, std::size_t count, std::size_t place) const;
    bool publish(const FeatureBatch::Maximums& maximums, std::string& problem);
    void abandon(); // begin() may follow

private:
    static constexpr std::size_t kLetters = FeatureBatch::kLetters;

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
    void putFont(const CatalogueFont& font);

    std::string m_folder;
    std::string m_workFolder;
    std::vector<Output> m_outputs; // the letters in the order of featurefolder::characters, then the others
};

} // namespace kerval::helpers
