#include "helpers/extractfeatures/FeatureExtraction.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

#include "helpers/common/SharedWork.h"
#include "helpers/extractfeatures/CatalogueReader.h"
#include "helpers/extractfeatures/FeatureBatch.h"
#include "helpers/extractfeatures/FeatureFolderWriter.h"
#include "helpers/extractfeatures/FolderLock.h"

namespace kerval::helpers {

namespace {

// A scan that keeps inserting must not keep the search waiting for ever.
constexpr int kMostAttempts = 3;

// Two threads read shares of the fonts, each over a connection of its own, and write them to where they belong.
constexpr int kShare = 4096;

class Worker
{
public:
    explicit Worker(const FeatureFolderWriter& writer)
        : m_batch([&writer](std::size_t letter, const float* values, std::size_t count, std::size_t place) {
            return writer.writeLetter(letter, values, count, place);
        })
    {
    }

    bool open(const std::string& database) { return m_reader.open(database, m_problem); }

    bool work(const std::vector<CatalogueFont>& fonts, std::size_t begin, std::size_t end)
    {
        m_batch.startAt(begin);
        const auto append = [this](std::string_view blob) { return m_batch.append(blob); };
        return m_reader.readFeatures(fonts, begin, end, append, m_problem) && m_batch.flush();
    }

    CatalogueReader& reader() { return m_reader; }
    const FeatureBatch::Maximums& maximums() const { return m_batch.maximums(); }
    // Empty when a file could not be written.
    const std::string& problem() const { return m_problem; }

private:
    CatalogueReader m_reader;
    FeatureBatch m_batch;
    std::string m_problem;
};

enum class Outcome
{
    Written,
    Changed, // the catalogue, meanwhile
    Failed
};

// Everything but putting the set in place.
Outcome writeSet(const std::string& database, FeatureFolderWriter& writer, FeatureBatch::Maximums& maximums,
                 std::string& problem)
{
    std::array<Worker, kWorkers> workers{Worker(writer), Worker(writer)};
    for (Worker& worker : workers) {
        if (!worker.open(database)) {
            problem = worker.problem();
            return Outcome::Failed;
        }
    }
    CatalogueReader& reader = workers[0].reader();
    const std::int64_t version = reader.dataVersion();
    std::vector<CatalogueFont> fonts;
    if (!reader.readFonts(fonts, problem) || !writer.begin(fonts, problem)) {
        return Outcome::Failed;
    }
    std::atomic<bool> good{true};
    shareWork(static_cast<int>(fonts.size()), kShare, [&](int begin, int end, int worker) {
        if (good && !workers[static_cast<std::size_t>(worker)].work(fonts, static_cast<std::size_t>(begin),
                                                                    static_cast<std::size_t>(end))) {
            good = false;
        }
    });
    maximums.fill(0);
    for (Worker& worker : workers) {
        problem = problem.empty() ? worker.problem() : problem;
        std::transform(maximums.begin(), maximums.end(), worker.maximums().begin(), maximums.begin(),
                       [](std::int32_t one, std::int32_t other) { return std::max(one, other); });
    }
    if (!good) {
        problem = problem.empty() ? "the feature files cannot be written" : problem;
        return Outcome::Failed;
    }
    reader.release();
    return reader.dataVersion() == version ? Outcome::Written : Outcome::Changed;
}

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
    FeatureFolderWriter writer(options.folder);
    for (int attempt = 1;; ++attempt) {
        FeatureBatch::Maximums maximums;
        const Outcome outcome = writeSet(options.database, writer, maximums, problem);
        if (outcome == Outcome::Failed) {
            return false;
        }
        if (outcome == Outcome::Written || attempt == kMostAttempts) {
            return writer.publish(maximums, problem);
        }
        writer.abandon();
    }
}

} // namespace kerval::helpers
