#include "fontfile/KrvFontFileCache.h"

#include "fontfile/KrvFontFilePrivate.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_SFNT_NAMES_H

#include <algorithm>

namespace {

// A name table may point 65,535 records at the same 64 KiB; FreeType copies each. Real tables stay far below this.
constexpr quint64 maxNameBytes = 8 * 1024 * 1024;

constexpr FT_ULong lastCodePoint = 0x10FFFF;

} // namespace

KrvFontFileCache::KrvFontFileCache(KrvFontFilePrivate* owner)
    : m_owner(owner)
{
}

const KrvFontFileCache::Names& KrvFontFileCache::names()
{
    if (!m_names)
        m_names = readNames();
    return *m_names;
}

const QList<KrvFontFile::CharMap>& KrvFontFileCache::charMaps()
{
    if (!m_charMaps) {
        m_charMaps.emplace();
        const FT_Face face = m_owner->face();
        for (int i = 0; i < face->num_charmaps; ++i) {
            const FT_CharMap map = face->charmaps[i];
            m_charMaps->append(
                {KrvFontFilePrivate::encodingOf(map->encoding), KrvFontFilePrivate::platformOf(map->platform_id), i});
        }
    }
    return *m_charMaps;
}

const QList<ushort>& KrvFontFileCache::characters()
{
    if (!m_characters) {
        const bool isUnicode = m_owner->currentCharMap().encoding == KrvFontFile::EncodingUnicode;
        m_characters = isUnicode ? unicodeCharacters() : legacyCharacters();
        std::sort(m_characters->begin(), m_characters->end());
    }
    return *m_characters;
}

const QHash<int, QPair<int, int>>& KrvFontFileCache::blocks()
{
    if (!m_blocks)
        m_blocks = countBlocks();
    return *m_blocks;
}

void KrvFontFileCache::forgetCoverage()
{
    m_characters.reset();
    m_blocks.reset();
}

KrvFontFileCache::Names KrvFontFileCache::readNames() const
{
    Names names;
    const FT_Face face = m_owner->face();
    const FT_UInt count = FT_Get_Sfnt_Name_Count(face);
    quint64 bytes = 0;
    for (FT_UInt i = 0; i < count && bytes < maxNameBytes; ++i) {
        FT_SfntName name;
        if (FT_Get_Sfnt_Name(face, i, &name) != 0)
            continue;
        names[name.platform_id][name.language_id][name.name_id] =
            QByteArray(reinterpret_cast<const char*>(name.string), int(name.string_len));
        bytes += name.string_len;
    }
    return names;
}

QList<ushort> KrvFontFileCache::unicodeCharacters() const
{
    QList<ushort> characters;
    const FT_Face face = m_owner->face();
    FT_UInt glyph = 0;
    // The end is checked too: a map may claim one glyph for each of four thousand million codes.
    for (FT_ULong code = FT_Get_First_Char(face, &glyph); glyph != 0 && code <= lastCodePoint;
         code = FT_Get_Next_Char(face, code, &glyph)) {
        if (code >= 0x20)
            characters.append(ushort(code));
    }
    return characters;
}

QVector<uint> KrvFontFileCache::supplementaryCharacters() const
{
    QVector<uint> characters;
    if (m_owner->currentCharMap().encoding != KrvFontFile::EncodingUnicode)
        return characters;
    const FT_Face face = m_owner->face();
    FT_UInt glyph = 0;
    for (FT_ULong code = FT_Get_Next_Char(face, 0xFFFF, &glyph); glyph != 0 && code <= lastCodePoint;
         code = FT_Get_Next_Char(face, code, &glyph))
        characters.append(uint(code));
    return characters;
}

// Legacy maps are read through the usual order of glyphs in such fonts, which puts the printable characters at a fixed
// distance from their codes.
QList<ushort> KrvFontFileCache::legacyCharacters() const
{
    QList<ushort> characters{0};
    const FT_Face face = m_owner->face();
    for (FT_ULong code = 4; code <= 225; ++code) {
        const FT_UInt glyph = FT_Get_Char_Index(face, code);
        if (glyph != 0 && m_owner->loadGlyph(glyph, false))
            characters.append(ushort(code < 127 ? code + 29 : code + 30));
    }
    return characters;
}

QHash<int, QPair<int, int>> KrvFontFileCache::countBlocks()
{
    QHash<int, QPair<int, int>> blocks;
    const QList<UnicodeBlock> table = KrvFontFile::unicodeBlocks();
    const QList<ushort>& covered = characters();
    int current = -1;
    for (int position = 0; position < covered.size(); ++position) {
        const int c = covered.at(position);
        const auto holds = [c](const UnicodeBlock& block) { return c >= block.first && c <= block.last; };
        if (current < 0 || !holds(table.at(current))) {
            const auto found = std::find_if(table.cbegin(), table.cend(), holds);
            current = found == table.cend() ? -1 : int(found - table.cbegin());
            if (current < 0)
                continue;
        }
        auto entry = blocks.find(current);
        if (entry == blocks.end())
            entry = blocks.insert(current, {0, position});
        ++entry->first;
    }
    return blocks;
}
