#pragma once

#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::adder {

constexpr int unicodeBlockCount = 34;

// The indexes of the blocks (in the catalogue's own table of 34) that the face's active character map reaches,
// ascending. As everywhere in the catalogue, characters count by their lowest 16 bits, and a map that is not Unicode
// stands for the legacy glyph order.
std::vector<int> supportedBlocks(FT_Face face);

// Characters of a Unicode face, spread over each of the blocks it reaches; at most this many for a block.
std::vector<FT_ULong> sampleCharacters(FT_Face face, const std::vector<int>& reached, int perBlock);

} // namespace kerval::adder
