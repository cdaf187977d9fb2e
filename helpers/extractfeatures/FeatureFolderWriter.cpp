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

namespace kerval::helpers {

namespace {

constexpr std::string_view kWorkPrefix = ".new-";

template <typename Number>
std::string_view bytesOf(const Number& number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

// Without a branch for each value, so that the compiler can take several at once.
bool isFinite(const float* values)
{
    constexpr std::uint32_t exponent = 0x7F800000;
    std::array<std::uint32_t, featureValueCount> bits;
    std::memcpy(bits.data(), values, featureByteCount);
    std::uint32_t odd = 0;
    for (const std::uint32_t value : bits) {
        odd |= (value & exponent) == exponent ? 1U : 0U;
    }
    return odd == 0;
}

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
        batch.fonts = 0;
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

void FeatureFolderWriter::addLetter(std::size_t letter, std::string_view bytes)
{
    float* values = m_batches[m_filling].place(letter);
    std::memcpy(values, bytes.data(), featureByteCount);
    if (!isFinite(values)) {
        std::transform(values, values + featureValueCount, values,
                       [](float value) { return std::isfinite(value) ? value : 0; });
    }
    for (std::size_t i = 0; i < featureValueCount; ++i) {
        m_maximums[i] = m_maximums[i] > values[i] ? m_maximums[i] : values[i];
    }
}

bool FeatureFolderWriter::append(const CatalogueFont& font, std::string_view blob)
{
    std::bitset<kLetters> seen;
    FeatureBlobReader reader(blob);
    unsigned char key = 0;
    std::string_view bytes;
    while (reader.next(key, bytes)) {
        const int letter = m_letterOf[key];
        if (letter >= 0 && !seen[static_cast<std::size_t>(letter)]) {
            seen[static_cast<std::size_t>(letter)] = true;
            addLetter(static_cast<std::size_t>(letter), bytes);
        }
    }
    Batch& batch = m_batches[m_filling];
    for (std::size_t letter = 0; letter < kLetters && !seen.all(); ++letter) {
        if (!seen[letter]) {
            std::fill_n(batch.place(letter), featureValueCount, 0.0F);
        }
    }
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
    if (++batch.fonts == kBatchFonts) {
        writeBatch();
    }
    return !m_failed;
}

void FeatureFolderWriter::writeBatch()
{
    m_failed = !m_writer->start([this, written = m_filling] {
        Batch& batch = m_batches[written];
        const std::size_t size = batch.fonts * featureByteCount;
        batch.fonts = 0; // from here on place() gives the begin of what is written
        for (std::size_t letter = 0; letter < kLetters; ++letter) {
            if (!writeAll(m_outputs[letter].file, batch.place(letter), size)) {
                return false;
            }
        }
        return true;
    }) || m_failed;
    m_filling = 1 - m_filling;
}

bool FeatureFolderWriter::publish(std::string& problem)
{
    writeBatch();
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
