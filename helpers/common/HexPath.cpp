#include "helpers/common/HexPath.h"

namespace kerval::helpers {

namespace {

constexpr char digits[] = "0123456789abcdef";

int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::string encodePath(std::string_view path)
{
    std::string text = "0x";
    text.reserve(2 + path.size() * 2);
    for (const char c : path) {
        text += digits[static_cast<unsigned char>(c) >> 4];
        text += digits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

std::optional<std::string> decodePath(std::string_view text)
{
    if (text.substr(0, 2) != "0x")
        return std::string(text);
    text.remove_prefix(2);
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::string path;
    path.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = digitValue(text[i]);
        const int low = digitValue(text[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        path += static_cast<char>(high << 4 | low);
    }
    return path;
}

} // namespace kerval::helpers
