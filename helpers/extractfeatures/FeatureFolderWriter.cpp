#include "helpers/extractfeatures/FeatureFolderWriter.h"

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "helpers/extractfeatures/FileSpace.h"
#include "helpers/shape/VectorClones.h"

namespace kerval::helpers {

namespace {

constexpr std::string_view kWorkPrefix = ".new-";

template <typename Number>
std::string_view bytesOf(const Number& number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

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

bool writeAll(int file, const void* bytes, std::size_t size)
{
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = ::write(file, rest, size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        rest += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

FeatureFolderWriter::FeatureFolderWriter(const std::string& folder)
    : m_folder(folder)
    , m_workFolder(folder + "/" + std::string(kWorkPrefix) + std::to_string(getpid()))
{
    m_letterOf.fill(-1);
    int place = 0;
    for (const char character : featurefolder::characters) {
        const auto code = static_cast<unsigned char>(character);
        m_letterOf[code] = place++;
        m_outputs.push_back({featurefolder::characterFile(code), {}, -1});
    }
    for (const std::string_view name :
         {featurefolder::maximumsFile, featurefolder::hwiFile, featurefolder::hweFile, featurefolder::hheFile,
          featurefolder::serifFile, featurefolder::scoresFile, featurefolder::infoFile, featurefolder::idsFile}) {
        m_outputs.push_back({std::string(name), {}, -1});
    }
}

FeatureFolderWriter::~FeatureFolderWriter()
{
    abandon();
}

void FeatureFolderWriter::abandon()
{
    m_writer.reset(); // before its files are closed
    for (Output& output : m_outputs) {
        if (output.file >= 0) {
            close(output.file);
            output.file = -1;
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_workFolder, ignored);
}

bool FeatureFolderWriter::begin(std::string& problem)
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().compare(0, kWorkPrefix.size(), kWorkPrefix) == 0) {
            std::error_code ignored;
            std::filesystem::remove_all(entry->path(), ignored);
        }
    }
    m_failed = false;
    m_maximums.fill(0);
    for (Batch& batch : m_batches) {
        batch.used = 0;
    }
    m_writer = std::make_unique<BackgroundWriter>();
    if (!std::filesystem::create_directory(m_workFolder, error)) {
        problem = "the folder cannot be written: " + error.message();
        return false;
    }
    for (Output& output : m_outputs) {
        output.text.clear();
        output.file = ::open((m_workFolder + "/" + output.name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (output.file < 0) {
            problem = output.name + " cannot be written: " + std::strerror(errno);
            return false;
        }
    }
    return true;
}

bool FeatureFolderWriter::reserve(std::size_t fonts)
{
    for (std::size_t letter = 0; letter < kLetters; ++letter) {
        m_failed = !reserveSpace(m_outputs[letter].file, fonts * featureByteCount) || m_failed;
    }
    return !m_failed;
}

bool FeatureFolderWriter::append(const CatalogueFont& font, std::string_view blob)
{
    Batch& batch = m_batches[m_filling];
    std::bitset<kLetters> seen;
    Extremes extremes;
    FeatureBlobReader reader(blob);
    unsigned char key = 0;
    std::string_view bytes;
    while (reader.next(key, bytes)) {
        const int letter = m_letterOf[key];
        if (letter >= 0 && !seen[static_cast<std::size_t>(letter)]) {
            seen[static_cast<std::size_t>(letter)] = true;
            extremes.copyLetter(bytes.data(), batch.place(static_cast<std::size_t>(letter)));
        }
    }
    for (std::size_t letter = 0; letter < kLetters && !seen.all(); ++letter) {
        if (!seen[letter]) {
            std::fill_n(batch.place(letter), featureValueCount, 0.0F);
        }
    }
    if (!extremes.areFinite()) {
        extremes = {};
        for (std::size_t letter = 0; letter < kLetters; ++letter) {
            FeatureVector values;
            std::transform(batch.place(letter), batch.place(letter) + featureValueCount, values.begin(),
                           [](float value) { return std::isfinite(value) ? value : 0; });
            extremes.copyLetter(reinterpret_cast<const char*>(values.data()), batch.place(letter));
        }
    }
    extremes.raise(m_maximums);
    const char serif = font.serif ? 1 : 0;
    put(Serif, {&serif, 1});
    put(Hwi, bytesOf(font.hwi));
    put(Hwe, bytesOf(font.hwe));
    put(Hhe, bytesOf(font.hhe));
    put(Scores, bytesOf(font.scores));
    put(Info, font.postScriptName);
    put(Info, featurefolder::infoSeparator);
    put(Info, font.className);
    put(Info, "\n");
    put(Ids, bytesOf(font.id));
    batch.used += featureValueCount;
    if (batch.used >= Batch::kWhole) {
        writeBatch(Batch::kWhole);
    }
    return !m_failed;
}

void FeatureFolderWriter::writeBatch(std::size_t count)
{
    m_failed = !m_writer->finish() || m_failed;
    Batch& full = m_batches[m_filling];
    Batch& next = m_batches[1 - m_filling];
    next.used = full.used - count;
    for (std::size_t letter = 0; letter < kLetters; ++letter) {
        std::copy_n(full.begin(letter) + count, next.used, next.begin(letter));
    }
    m_writer->start([this, &full, count] {
        for (std::size_t letter = 0; letter < kLetters; ++letter) {
            if (!writeAll(m_outputs[letter].file, full.begin(letter), count * sizeof(float))) {
                return false;
            }
        }
        return true;
    });
    m_filling = 1 - m_filling;
}

bool FeatureFolderWriter::publish(std::string& problem)
{
    writeBatch(m_batches[m_filling].used);
    put(Maximums, {reinterpret_cast<const char*>(m_maximums.data()), featureByteCount});
    for (std::size_t other = kLetters; other < m_outputs.size(); ++other) {
        const Output& output = m_outputs[other];
        m_failed = !writeAll(output.file, output.text.data(), output.text.size()) || m_failed;
    }
    m_failed = !m_writer->finish() || m_failed;
    for (Output& output : m_outputs) {
        m_failed = close(output.file) != 0 || m_failed; // some file systems tell of a full disk only now
        output.file = -1;
    }
    if (m_failed) {
        problem = "the feature files cannot be written";
        return false;
    }
    const std::string ids = m_folder + "/" + std::string(featurefolder::idsFile);
    if (std::remove(ids.c_str()) != 0 && errno != ENOENT) {
        problem = "the old files cannot be replaced: " + std::string(std::strerror(errno));
        return false;
    }
    for (const Output& output : m_outputs) { // "ids.bin" is the last of them
        const std::string from = m_workFolder + "/" + output.name;
        const std::string to = m_folder + "/" + output.name;
        // Some file systems write a file out when it is renamed over another; in the free name it stays in memory.
        std::remove(to.c_str());
        if (std::rename(from.c_str(), to.c_str()) != 0) {
            problem = output.name + " cannot be put in place: " + std::strerror(errno);
            return false;
        }
    }
    return true;
}

} // namespace kerval::helpers
