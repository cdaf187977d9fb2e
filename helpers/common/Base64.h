#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kerval::helpers {

std::string toBase64(std::string_view bytes);

// White space is skipped; any other character that does not belong there, or a cut group, gives nothing.
std::optional<std::string> fromBase64(std::string_view text);

} // namespace kerval::helpers
