#include "helpers/findsimilar/FeatureFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"

namespace kerval::helpers {

namespace {

constexpr int kMostOpenings = 5;
constexpr std::size_t kMostFonts = 10 * 1000 * 1000;

} // namespace

FeatureFolder::State FeatureFolder::open(const std::string& folder, std::string_view characters)
{
    m_folder = folder;
    State state = State::Missing;
    for (int attempt = 0; attempt < kMostOpenings; ++attempt) {
        state = openOnce(characters);
        // The writer takes "ids.bin" away before it touches the rest: the same file under the name now means that all
        // of the files opened since belong to it.
        if (isCurrent()) {
            return state;
        }
    }
    return State::Missing;
}

FeatureFolder::State FeatureFolder::openOnce(std::string_view characters)
{
    m_letters.clear();
    m_characters.clear();
    m_count = 0;
    if (!m_ids.open(m_folder + "/" + std::string(featurefolder::idsFile), true)) {
        return State::Missing;
    }
    if (m_ids.size() % sizeof(std::int32_t) != 0 || m_ids.size() / sizeof(std::int32_t) > kMostFonts) {
        return State::Damaged;
    }
    m_count = static_cast<int>(m_ids.size() / sizeof(std::int32_t));
    bool good =
        openSized(m_hwi, featurefolder::hwiFile, 4, false) && openSized(m_hwe, featurefolder::hweFile, 4, false) &&
        openSized(m_hhe, featurefolder::hheFile, 4, false) && openSized(m_serif, featurefolder::serifFile, 1, false);
    for (const char character : characters) {
        if (good && featurefolder::characters.find(character) != std::string_view::npos && !hasLetter(character)) {
            MappedFile file;
            good = openSized(file, featurefolder::characterFile(static_cast<unsigned char>(character)),
                             featureByteCount, false);
            m_letters.push_back(std::move(file));
            m_characters += character;
        }
    }
    if (good) {
        good = m_info.open(m_folder + "/" + std::string(featurefolder::infoFile), false);
        findLines();
        if (!openSized(m_scores, featurefolder::scoresFile, 12, false)) {
            m_scores.close();
        }
    }
    return good ? State::Ready : State::Damaged;
}

bool FeatureFolder::isCurrent() const
{
    return !m_ids.identity().empty() &&
           fileIdentity(m_folder + "/" + std::string(featurefolder::idsFile)) == m_ids.identity();
}

bool FeatureFolder::openRecords(char character, RecordFile& file) const
{
    return file.open(m_folder + "/" + featurefolder::characterFile(static_cast<unsigned char>(character)),
                     featureByteCount * static_cast<std::size_t>(m_count));
}

bool FeatureFolder::openSized(MappedFile& file, std::string_view name, std::size_t entrySize, bool whole)
{
    return file.open(m_folder + "/" + std::string(name), whole) &&
           file.size() == entrySize * static_cast<std::size_t>(m_count);
}

// Sets without names are complete too: their lines are missing or empty.
void FeatureFolder::findLines()
{
    const char* begin = static_cast<const char*>(m_info.data());
    const char* end = begin + m_info.size();
    m_lines.assign(static_cast<std::size_t>(m_count) + 1, end);
    for (std::size_t i = 0; i < m_lines.size() && begin != end; ++i) {
        m_lines[i] = begin;
        const void* lineEnd = std::memchr(begin, '\n', static_cast<std::size_t>(end - begin));
        begin = lineEnd ? static_cast<const char*>(lineEnd) + 1 : end;
    }
}

std::string_view FeatureFolder::line(int font) const
{
    const char* begin = m_lines[static_cast<std::size_t>(font)];
    const char* end = m_lines[static_cast<std::size_t>(font) + 1];
    if (begin != end && end[-1] == '\n') {
        --end;
    }
    return {begin, static_cast<std::size_t>(end - begin)};
}

std::string_view FeatureFolder::postScriptName(int font) const
{
    const std::string_view text = line(font);
    return text.substr(0, text.find(featurefolder::infoSeparator));
}

std::string_view FeatureFolder::className(int font) const
{
    const std::string_view text = line(font);
    const std::size_t separator = text.find(featurefolder::infoSeparator);
    return separator == std::string_view::npos ? std::string_view() : text.substr(separator + 2);
}

void FeatureFolder::invalidate() const
{
    if (isCurrent()) {
        std::remove((m_folder + "/" + std::string(featurefolder::idsFile)).c_str());
    }
}

int FeatureFolder::indexOf(int id) const
{
    const std::int32_t* end = ids() + m_count;
    const std::int32_t* found = m_count > 0 ? std::find(ids(), end, id) : end;
    return found == end ? -1 : static_cast<int>(found - ids());
}

} // namespace kerval::helpers
