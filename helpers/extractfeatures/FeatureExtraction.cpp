#include "helpers/extractfeatures/FeatureExtraction.h"

#include <filesystem>
#include <system_error>

#include "helpers/extractfeatures/CatalogueReader.h"
#include "helpers/extractfeatures/FeatureFolderWriter.h"
#include "helpers/extractfeatures/FolderLock.h"

namespace kerval::helpers {

namespace {

// A scan that keeps inserting must not keep the search waiting for ever.
constexpr int kMostAttempts = 3;

} // namespace

bool extractFeatures(const ExtractionOptions& options, std::string& problem)
{
    std::error_code error;
    if (options.createFolder) {
        std::filesystem::create_directories(options.folder, error);
    }
    const std::string before = folderEdition(options.folder);
    FolderLock lock;
    if (!lock.take(options.folder)) {
        problem = "the features folder cannot be written";
        return false;
    }
    const std::string after = folderEdition(options.folder);
    if (!after.empty() && after != before) {
        return true;
    }
    CatalogueReader reader;
    if (!reader.open(options.database, problem)) {
        return false;
    }
    FeatureFolderWriter writer(options.folder);
    for (int attempt = 1;; ++attempt) {
        const std::int64_t version = reader.dataVersion();
        if (!writer.begin(problem)) {
            return false;
        }
        const auto reserve = [&writer](std::size_t fonts) { return writer.reserve(fonts); };
        const auto append = [&writer](const CatalogueFont& font, std::string_view blob) {
            return writer.append(font, blob);
        };
        if (!reader.readAll(reserve, append, problem)) {
            problem = problem.empty() ? "the feature files cannot be written" : problem;
            return false;
        }
        if (reader.dataVersion() == version || attempt == kMostAttempts) {
            return writer.publish(problem);
        }
        writer.abandon();
    }
}

} // namespace kerval::helpers
