#include "helpers/extractfeatures/FeatureFolderWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "helpers/extractfeatures/FileSpace.h"

namespace kerval::helpers {

namespace {

constexpr std::string_view kWorkPrefix = ".new-";
constexpr const char* kCannotWrite = "the feature files cannot be written";

template <typename Number>
std::string_view bytesOf(const Number& number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

bool writeAll(int file, const void* bytes, std::size_t size, std::size_t offset)
{
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t count = ::pwrite(file, rest, size, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        rest += count;
        size -= static_cast<std::size_t>(count);
        offset += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

FeatureFolderWriter::FeatureFolderWriter(const std::string& folder)
    : m_folder(folder)
    , m_workFolder(folder + "/" + std::string(kWorkPrefix) + std::to_string(getpid()))
{
    for (const char character : featurefolder::characters) {
        m_outputs.push_back({featurefolder::characterFile(static_cast<unsigned char>(character)), {}, -1});
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
    for (Output& output : m_outputs) {
        if (output.file >= 0) {
            close(output.file);
            output.file = -1;
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(m_workFolder, ignored);
}

bool FeatureFolderWriter::begin(const std::vector<CatalogueFont>& fonts, std::string& problem)
{
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().compare(0, kWorkPrefix.size(), kWorkPrefix) == 0) {
            std::error_code ignored;
            std::filesystem::remove_all(entry->path(), ignored);
        }
    }
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
    for (std::size_t letter = 0; letter < kLetters; ++letter) {
        if (!reserveSpace(m_outputs[letter].file, fonts.size() * featureByteCount)) {
            problem = kCannotWrite;
            return false;
        }
    }
    for (const CatalogueFont& font : fonts) {
        putFont(font);
    }
    return true;
}

void FeatureFolderWriter::putFont(const CatalogueFont& font)
{
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
}

bool FeatureFolderWriter::writeLetter(std::size_t letter, const float* values, std::size_t count,
                                      std::size_t place) const
{
    return writeAll(m_outputs[letter].file, values, count * sizeof(float), place * sizeof(float));
}

bool FeatureFolderWriter::publish(const FeatureBatch::Maximums& maximums, std::string& problem)
{
    put(Maximums, {reinterpret_cast<const char*>(maximums.data()), featureByteCount});
    bool good = true;
    for (std::size_t other = kLetters; other < m_outputs.size(); ++other) {
        const Output& output = m_outputs[other];
        good = writeAll(output.file, output.text.data(), output.text.size(), 0) && good;
    }
    for (Output& output : m_outputs) {
        good = close(output.file) == 0 && good; // some file systems tell of a full disk only now
        output.file = -1;
    }
    if (!good) {
        problem = kCannotWrite;
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
