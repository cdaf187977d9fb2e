#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "helpers/findsimilar/MappedFile.h"
#include "helpers/findsimilar/RecordFile.h"

namespace kerval::helpers {

// The feature files of one extraction, read in place. A folder whose files do not fit together is refused as a whole.
class FeatureFolder
{
public:
    enum class State
    {
        Ready,
        Missing,
        Damaged
    };

    // Opens the files of these letters (others are ignored, doubles count once) and those of the faces. When a new
    // extraction is put in place meanwhile, opens that one.
    State open(const std::string& folder, std::string_view characters);
    // After Damaged: takes "ids.bin" away, if it is still the one that was opened, so that the next request extracts.
    void invalidate() const;

    // Whether the folder still holds the extraction that was opened.
    bool isCurrent() const;

    int count() const { return m_count; }
    const std::int32_t* ids() const { return static_cast<const std::int32_t*>(m_ids.data()); }
    int indexOf(int id) const; // -1 when there is none

    int letterCount() const { return static_cast<int>(m_letters.size()); }
    bool hasLetter(char character) const { return m_characters.find(character) != std::string::npos; }
    char character(int letter) const { return m_characters[static_cast<std::size_t>(letter)]; }
    const float* vector(int letter, int font) const
    {
        return static_cast<const float*>(m_letters[static_cast<std::size_t>(letter)].data()) + 61L * font;
    }

    // The vectors of a letter, which need not be one of those: 244 bytes for each face. Ask isCurrent() afterwards.
    bool openRecords(char character, RecordFile& file) const;

    int hwe(int font) const { return static_cast<const std::int32_t*>(m_hwe.data())[font]; }
    int hwi(int font) const { return static_cast<const std::int32_t*>(m_hwi.data())[font]; }
    int hhe(int font) const { return static_cast<const std::int32_t*>(m_hhe.data())[font]; }
    bool isSerif(int font) const { return static_cast<const char*>(m_serif.data())[font] != 0; }

    // Empty when the set has none.
    std::string_view postScriptName(int font) const;
    std::string_view className(int font) const;
    // The three scores of a font (all, body, headline); null when the set has none.
    const std::int32_t* scores(int font) const
    {
        return m_scores.data() ? static_cast<const std::int32_t*>(m_scores.data()) + 3L * font : nullptr;
    }

private:
    State openOnce(std::string_view characters);
    bool openSized(MappedFile& file, std::string_view name, std::size_t entrySize, bool whole);
    void findLines();
    std::string_view line(int font) const;

    std::string m_folder;
    int m_count = 0;
    MappedFile m_ids;
    MappedFile m_hwi;
    MappedFile m_hwe;
    MappedFile m_hhe;
    MappedFile m_serif;
    MappedFile m_info;
    MappedFile m_scores;
    std::vector<MappedFile> m_letters;
    std::string m_characters;
    std::vector<const char*> m_lines; // of m_info: where each face's begins, and the last one's end
};

} // namespace kerval::helpers
