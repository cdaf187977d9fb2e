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
    struct Output
    {
        std::string name;
        std::string buffer;
        int file = -1;
    };

    Output& output(std::string_view name);
    void put(Output& output, std::string_view bytes);

    std::string m_folder;
    std::string m_workFolder;
    std::vector<Output> m_outputs; // the letters in the order of featurefolder::characters, then the others
    std::array<int, 256> m_letterOf{};
    FeatureVector m_maximums{};
    std::unique_ptr<BackgroundWriter> m_writer;
    bool m_failed = false;
};

} // namespace kerval::helpers
