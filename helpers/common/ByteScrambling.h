#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kerval::helpers {

// The byte at index i of what a helper prints is lowered by 15 - r and, by the reader, raised again:
// r = (p * i) rem 30, truncated toward zero, p = ((i mod 14) - 12) * ((i mod 2) - 2), all in signed 32-bit arithmetic.
void scramble(std::string& bytes);
void unscramble(std::string& bytes);

// Scrambled, then in base64: the whole output of the similarity program and the inside of the adder's envelope.
std::string seal(std::string_view bytes);

// Nothing when the text is not base64.
std::optional<std::string> unseal(std::string_view text);

} // namespace kerval::helpers
