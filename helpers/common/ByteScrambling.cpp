#include "helpers/common/ByteScrambling.h"

#include "helpers/common/Base64.h"

#include <cstdint>

namespace kerval::helpers {

namespace {

int shiftAt(std::size_t index)
{
    const std::int32_t i = static_cast<std::int32_t>(index);
    const std::int32_t p = (i % 14 - 12) * (i % 2 - 2);
    // Multiplied unsigned, so that the product wraps as 32-bit arithmetic does instead of being undefined.
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(p) * static_cast<std::uint32_t>(i));
    return 15 - product % 30;
}

} // namespace

void scramble(std::string& bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(static_cast<unsigned char>(bytes[i]) - shiftAt(i));
}

void unscramble(std::string& bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(static_cast<unsigned char>(bytes[i]) + shiftAt(i));
}

std::string seal(std::string_view bytes)
{
    std::string scrambled(bytes);
    scramble(scrambled);
    return toBase64(scrambled);
}

std::optional<std::string> unseal(std::string_view text)
{
    std::optional<std::string> bytes = fromBase64(text);
    if (bytes)
        unscramble(*bytes);
    return bytes;
}

} // namespace kerval::helpers
