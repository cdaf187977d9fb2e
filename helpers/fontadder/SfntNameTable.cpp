#include "helpers/fontadder/SfntNameTable.h"

#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/NameText.h"

#include <algorithm>

#include FT_TRUETYPE_TAGS_H

namespace kerval::adder {

namespace {

constexpr std::size_t maximalTableSize = 4u << 20;
constexpr std::size_t maximalRecordCount = 8192;
constexpr std::size_t headerSize = 6;
constexpr std::size_t recordSize = 12;
constexpr int firstLanguageTag = 0x8000;

bool isEnglishTag(std::string_view utf16)
{
    const std::string tag = fromUtf16BigEndian(utf16);
    return tag.size() >= 2 && (tag[0] | 0x20) == 'e' && (tag[1] | 0x20) == 'n' && (tag.size() == 2 || tag[2] == '-');
}

int platformRank(int platform)
{
    switch (platform) {
    case 3:
        return 0;
    case 0:
        return 1;
    case 1:
        return 2;
    default:
        return 3;
    }
}

} // namespace

SfntNameTable::SfntNameTable(FT_Face face)
    : m_table(FontFace::table(face, TTAG_name, maximalTableSize))
{
    read();
}

void SfntNameTable::read()
{
    const BigEndianReader table(m_table);
    const int format = table.u16(0);
    const std::size_t count = table.u16(2);
    const std::size_t strings = table.u16(4);
    for (std::size_t i = 0; i < count && i < maximalRecordCount; ++i) {
        const std::size_t at = headerSize + i * recordSize;
        const std::string_view bytes = table.part(strings + table.u16(at + 10), table.u16(at + 8));
        if (!bytes.empty())
            m_records.push_back({table.u16(at), table.u16(at + 2), table.u16(at + 4), table.u16(at + 6), bytes});
    }
    if (format != 1)
        return;
    const std::size_t tags = headerSize + count * recordSize;
    const std::size_t tagCount = std::min<std::size_t>(table.u16(tags), maximalRecordCount);
    for (std::size_t i = 0; i < tagCount; ++i) {
        const std::size_t at = tags + 2 + i * 4;
        m_languageTags.push_back(table.part(strings + table.u16(at + 2), table.u16(at)));
    }
}

std::string_view SfntNameTable::languageTag(int language) const
{
    const auto index = static_cast<std::size_t>(language - firstLanguageTag);
    return language >= firstLanguageTag && index < m_languageTags.size() ? m_languageTags[index] : std::string_view();
}

int SfntNameTable::rank(const Record& record) const
{
    const bool tagged = record.platform != 1 && record.language >= firstLanguageTag;
    int language = 3;
    if ((record.platform == 3 && record.language == 0x409) || (record.platform == 1 && record.language == 0))
        language = 0;
    else if (tagged ? isEnglishTag(languageTag(record.language))
                    : record.platform == 3 && (record.language & 0x3ff) == 9)
        language = 1;
    else if (record.platform != 3 && record.platform != 1 && !tagged)
        language = 2;
    return language * 4 + platformRank(record.platform);
}

std::string SfntNameTable::text(NameId id) const
{
    std::vector<const Record*> candidates;
    for (const Record& record : m_records)
        if (record.id == id)
            candidates.push_back(&record);
    std::stable_sort(candidates.begin(), candidates.end(),
                     [this](const Record* a, const Record* b) { return rank(*a) < rank(*b); });
    for (const Record* record : candidates) {
        std::string text = decodeNameRecord(record->platform, record->encoding, record->bytes);
        if (!text.empty())
            return text;
    }
    return {};
}

} // namespace kerval::adder
