#include "helpers/findsimilar/FeatureFolder.h"

#include <algorithm>
#include <cstdio>
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
    const std::string ids = folder + "/" + std::string(featurefolder::idsFile);
    State state = State::Missing;
    for (int attempt = 0; attempt < kMostOpenings; ++attempt) {
        state = openOnce(characters);
        // The writer takes "ids.bin" away before it touches the rest: the same file under the name now means that all
        // of the files opened since belong to it.
        if (!m_ids.identity().empty() && fileIdentity(ids) == m_ids.identity()) {
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
        if (good && featurefolder::characters.find(character) != std::string_view::npos &&
            m_characters.find(character) == std::string::npos) {
            MappedFile file;
            good = openSized(file, featurefolder::characterFile(static_cast<unsigned char>(character)),
                             featureByteCount, false);
            m_letters.push_back(std::move(file));
            m_characters += character;
        }
    }
    if (good) {
        good = m_info.open(m_folder + "/" + std::string(featurefolder::infoFile), false);
        readNames({static_cast<const char*>(m_info.data()), m_info.size()});
        if (!openSized(m_scores, featurefolder::scoresFile, 12, false)) {
            m_scores.close();
        }
    }
    return good ? State::Ready : State::Damaged;
}

bool FeatureFolder::openSized(MappedFile& file, std::string_view name, std::size_t entrySize, bool whole)
{
    return file.open(m_folder + "/" + std::string(name), whole) &&
           file.size() == entrySize * static_cast<std::size_t>(m_count);
}

// Sets without names are complete too: their lines are missing or empty.
void FeatureFolder::readNames(std::string_view text)
{
    m_names.assign(static_cast<std::size_t>(m_count), {});
    m_classes.assign(static_cast<std::size_t>(m_count), {});
    for (int font = 0; font < m_count && !text.empty(); ++font) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        const std::size_t separator = std::min(line.find(featurefolder::infoSeparator), line.size());
        m_names[static_cast<std::size_t>(font)] = line.substr(0, separator);
        m_classes[static_cast<std::size_t>(font)] = line.substr(std::min(separator + 2, line.size()));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void FeatureFolder::invalidate() const
{
    const std::string ids = m_folder + "/" + std::string(featurefolder::idsFile);
    if (!m_ids.identity().empty() && fileIdentity(ids) == m_ids.identity()) {
        std::remove(ids.c_str());
    }
}

int FeatureFolder::indexOf(int id) const
{
    const std::int32_t* end = ids() + m_count;
    const std::int32_t* found = m_count > 0 ? std::find(ids(), end, id) : end;
    return found == end ? -1 : static_cast<int>(found - ids());
}

} // namespace kerval::helpers
