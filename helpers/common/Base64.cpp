#include "helpers/common/Base64.h"

#include <array>
#include <cstdint>

namespace kerval::helpers {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t foreign = 0xff;

constexpr std::array<std::uint8_t, 256> reverseAlphabet()
{
    std::array<std::uint8_t, 256> reverse{};
    for (auto& value : reverse)
        value = foreign;
    for (std::uint8_t i = 0; i < 64; ++i)
        reverse[static_cast<unsigned char>(alphabet[i])] = i;
    return reverse;
}

constexpr auto values = reverseAlphabet();

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

std::string toBase64(std::string_view bytes)
{
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    char* next = text.data();
    for (std::size_t i = 0; i < bytes.size(); i += 3, next += 4) {
        const std::size_t left = bytes.size() - i;
        const auto byte = [&](std::size_t k) {
            return k < left ? static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + k])) : 0u;
        };
        const std::uint32_t group = byte(0) << 16 | byte(1) << 8 | byte(2);
        next[0] = alphabet[group >> 18];
        next[1] = alphabet[group >> 12 & 63];
        next[2] = left > 1 ? alphabet[group >> 6 & 63] : '=';
        next[3] = left > 2 ? alphabet[group & 63] : '=';
    }
    return text;
}

std::optional<std::string> fromBase64(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    int held = 0;
    int padding = 0;
    for (const char c : text) {
        if (isSpace(c))
            continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        const std::uint8_t value = values[static_cast<unsigned char>(c)];
        if (value == foreign || padding > 0)
            return std::nullopt;
        group = group << 6 | value;
        if (++held == 4) {
            bytes += static_cast<char>(group >> 16);
            bytes += static_cast<char>(group >> 8 & 0xff);
            bytes += static_cast<char>(group & 0xff);
            group = 0;
            held = 0;
        }
    }
    if (held == 1 || padding > 2 || (padding > 0 && held + padding != 4))
        return std::nullopt;
    if (held == 2)
        bytes += static_cast<char>(group >> 4);
    if (held == 3) {
        bytes += static_cast<char>(group >> 10);
        bytes += static_cast<char>(group >> 2 & 0xff);
    }
    return bytes;
}

} // namespace kerval::helpers
