#include "helpers/fontadder/FaceCoverage.h"

#include <algorithm>
#include <array>
#include <bitset>

namespace kerval::adder {

namespace {

struct Range
{
    FT_ULong first;
    FT_ULong last;
};

// The catalogue's own blocks; they do not all follow the standard's.
constexpr std::array<Range, unicodeBlockCount> blocks = {{
    {0x0000, 0x007f}, {0x0080, 0x00ff}, {0x0100, 0x017f}, {0x0180, 0x024f}, {0x0250, 0x02af}, {0x02b0, 0x02ff},
    {0x0370, 0x03ff}, {0x0400, 0x052f}, {0x0530, 0x058f}, {0x0590, 0x05ff}, {0x0600, 0x06ff}, {0x0700, 0x1c7f},
    {0x1d00, 0x1d7f}, {0x1d80, 0x1dbf}, {0x1dc0, 0x1dff}, {0x1e00, 0x1eff}, {0x1f00, 0x1fff}, {0x2000, 0x206f},
    {0x2070, 0x209f}, {0x20a0, 0x20cf}, {0x2100, 0x214f}, {0x2150, 0x218f}, {0x2190, 0x21ff}, {0x2200, 0x22ff},
    {0x2300, 0x23ff}, {0x2500, 0x257f}, {0x2580, 0x259f}, {0x25a0, 0x25ff}, {0x2600, 0x26ff}, {0xe000, 0xf8ff},
    {0xfb00, 0xfb4f}, {0xff00, 0xffff}, {0x2700, 0x2bff}, {0x2c00, 0xdfff},
}};

constexpr FT_ULong firstCharacter = 0x20;
constexpr FT_ULong lastCharacter = 0x10ffff;
constexpr FT_ULong planeMask = 0xffff;

bool isUnicode(FT_Face face)
{
    return face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE;
}

int blockOf(FT_ULong character)
{
    for (int i = 0; i < unicodeBlockCount; ++i)
        if (character >= blocks[static_cast<std::size_t>(i)].first &&
            character <= blocks[static_cast<std::size_t>(i)].last)
            return i;
    return -1;
}

// A block that is known to be reached needs no further look: the walk goes on behind it, so that it takes a few hundred
// steps even for a face of 65,000 characters.
std::bitset<unicodeBlockCount> unicodeBlocksOf(FT_Face face)
{
    std::bitset<unicodeBlockCount> found;
    FT_ULong previous = firstCharacter - 1;
    while (previous < lastCharacter) {
        FT_UInt glyph = 0;
        const FT_ULong character = FT_Get_Next_Char(face, previous, &glyph);
        if (glyph == 0 || character > lastCharacter || character <= previous)
            break;
        previous = character;
        const int block = blockOf(character & planeMask);
        if (block < 0)
            continue;
        found.set(static_cast<std::size_t>(block));
        previous = (character & ~planeMask) | blocks[static_cast<std::size_t>(block)].last;
    }
    return found;
}

std::bitset<unicodeBlockCount> legacyBlocksOf(FT_Face face)
{
    constexpr FT_ULong firstCode = 4;
    constexpr FT_ULong lastCode = 225;
    std::bitset<unicodeBlockCount> found;
    found.set(0);
    for (FT_ULong code = firstCode; code <= lastCode; ++code) {
        const int block = blockOf(code + (code < 127 ? 29 : 30));
        if (found.test(static_cast<std::size_t>(block)))
            continue;
        const FT_UInt glyph = FT_Get_Char_Index(face, code);
        if (glyph != 0 && FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE) == 0)
            found.set(static_cast<std::size_t>(block));
    }
    return found;
}

} // namespace

std::vector<int> supportedBlocks(FT_Face face)
{
    const std::bitset<unicodeBlockCount> found = isUnicode(face) ? unicodeBlocksOf(face) : legacyBlocksOf(face);
    std::vector<int> indexes;
    for (int i = 0; i < unicodeBlockCount; ++i)
        if (found.test(static_cast<std::size_t>(i)))
            indexes.push_back(i);
    return indexes;
}

std::vector<FT_ULong> sampleCharacters(FT_Face face, const std::vector<int>& reached, int perBlock)
{
    std::vector<FT_ULong> sample;
    if (!isUnicode(face))
        return sample;
    for (const int block : reached) {
        const Range range = blocks[static_cast<std::size_t>(block)];
        const FT_ULong step = std::max<FT_ULong>(1, (range.last - range.first + 1) / static_cast<FT_ULong>(perBlock));
        FT_ULong previous = std::max(range.first, firstCharacter) - 1;
        for (int taken = 0; taken < perBlock; ++taken) {
            FT_UInt glyph = 0;
            const FT_ULong character = FT_Get_Next_Char(face, previous, &glyph);
            if (glyph == 0 || character > range.last || character <= previous)
                break;
            sample.push_back(character);
            previous = character + step - 1;
        }
    }
    return sample;
}

} // namespace kerval::adder
