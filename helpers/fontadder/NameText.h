#pragma once

#include <string>
#include <string_view>

// Texts of font files as UTF-8. What cannot be decoded gives an empty text.
namespace kerval::adder {

std::string fromUtf16BigEndian(std::string_view bytes);
std::string fromMacRoman(std::string_view bytes);
std::string fromWindows1252(std::string_view bytes);

// One record of a name table by its platform and encoding ids, cut at the first NUL and trimmed.
std::string decodeNameRecord(int platform, int encoding, std::string_view bytes);

// PostScript texts: UTF-8 where they are valid UTF-8, else Windows' Latin characters; trimmed.
std::string fromPostScript(std::string_view bytes);

std::string trimmed(std::string_view text);

// At most this many bytes, cut between two characters.
std::string clipped(std::string text, std::size_t longest);

} // namespace kerval::adder
