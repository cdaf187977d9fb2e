#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kerval::helpers {

// Paths cross command lines as "0x" and the lower-case hexadecimal digits of their bytes, so they need no quoting.
std::string encodePath(std::string_view path);

// A text without "0x" is taken as it is; nothing for an odd number of digits or a character that is none.
std::optional<std::string> decodePath(std::string_view text);

} // namespace kerval::helpers
