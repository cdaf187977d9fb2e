#include "helpers/fontadder/NameText.h"

#include "helpers/common/FaceReport.h"
#include "helpers/fontadder/platform.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kerval::adder {

namespace {

// The upper half of the classic Macintosh's character set.
constexpr std::array<char16_t, 128> macRoman = {
    u'Ä',   u'Å', u'Ç', u'É', u'Ñ', u'Ö', u'Ü', u'á', u'à', u'â', u'ä',   u'ã', u'å', u'ç', u'é', u'è', //
    u'ê',   u'ë', u'í', u'ì', u'î', u'ï', u'ñ', u'ó', u'ò', u'ô', u'ö',   u'õ', u'ú', u'ù', u'û', u'ü', //
    u'†',   u'°', u'¢', u'£', u'§', u'•', u'¶', u'ß', u'®', u'©', u'™',   u'´', u'¨', u'≠', u'Æ', u'Ø', //
    u'∞',   u'±', u'≤', u'≥', u'¥', u'µ', u'∂', u'∑', u'∏', u'π', u'∫',   u'ª', u'º', u'Ω', u'æ', u'ø', //
    u'¿',   u'¡', u'¬', u'√', u'ƒ', u'≈', u'∆', u'«', u'»', u'…', 0x00a0, u'À', u'Ã', u'Õ', u'Œ', u'œ', //
    u'–',   u'—', u'“', u'”', u'‘', u'’', u'÷', u'◊', u'ÿ', u'Ÿ', u'⁄',   u'€', u'‹', u'›', u'ﬁ', u'ﬂ', //
    u'‡',   u'·', u'‚', u'„', u'‰', u'Â', u'Ê', u'Á', u'Ë', u'È', u'Í',   u'Î', u'Ï', u'Ì', u'Ó', u'Ô', //
    0xf8ff, u'Ò', u'Ú', u'Û', u'Ù', u'ı', u'ˆ', u'˜', u'¯', u'˘', u'˙',   u'˚', u'¸', u'˝', u'˛', u'ˇ'};

// 0x80 to 0x9f of Windows' Latin characters; the others stand for themselves.
constexpr std::array<char16_t, 32> windowsLatin = {
    u'€',   0xfffd, u'‚', u'ƒ', u'„', u'…', u'†', u'‡', u'ˆ', u'‰', u'Š', u'‹', u'Œ', 0xfffd, u'Ž', 0xfffd, //
    0xfffd, u'‘',   u'’', u'“', u'”', u'•', u'–', u'—', u'˜', u'™', u'š', u'›', u'œ', 0xfffd, u'ž', u'Ÿ'};

void append(std::string& text, std::uint32_t character)
{
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xc0 | character >> 6);
        text += static_cast<char>(0x80 | (character & 63));
    } else if (character < 0x10000) {
        text += static_cast<char>(0xe0 | character >> 12);
        text += static_cast<char>(0x80 | (character >> 6 & 63));
        text += static_cast<char>(0x80 | (character & 63));
    } else {
        text += static_cast<char>(0xf0 | character >> 18);
        text += static_cast<char>(0x80 | (character >> 12 & 63));
        text += static_cast<char>(0x80 | (character >> 6 & 63));
        text += static_cast<char>(0x80 | (character & 63));
    }
}

bool isAscii(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Some tools fill a name with a control character so that no system lists the font; such a name is none.
std::string withoutControls(std::string text)
{
    const auto isControl = [](char c) {
        return (c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r') || c == 0x7f;
    };
    text.erase(std::remove_if(text.begin(), text.end(), isControl), text.end());
    return text;
}

template <class Decode>
std::string eachByte(std::string_view bytes, Decode decode)
{
    std::string text;
    for (const char c : bytes)
        append(text, decode(static_cast<unsigned char>(c)));
    return text;
}

// Legacy two-byte encodings are sometimes stored one character for each 16-bit word, the upper byte zero for ASCII.
std::string withoutPadding(std::string_view bytes)
{
    std::string packed;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != '\0' || i % 2 == 1)
            packed += bytes[i];
    return packed;
}

std::string fromLegacy(const char* encoding, std::string_view bytes)
{
    const std::string packed = withoutPadding(bytes);
    if (isAscii(packed))
        return packed;
    return platform::decodeText(encoding, packed).value_or(std::string());
}

const char* microsoftEncoding(int encoding)
{
    switch (encoding) {
    case 2:
        return "CP932";
    case 3:
        return "GB18030";
    case 4:
        return "BIG5-HKSCS";
    case 5:
        return "CP949";
    case 6:
        return "JOHAB";
    default:
        return nullptr;
    }
}

const char* macintoshEncoding(int encoding)
{
    switch (encoding) {
    case 1:
        return "CP932";
    case 2:
        return "BIG5-HKSCS";
    case 3:
        return "CP949";
    case 7:
        return "MAC-CYRILLIC";
    case 25:
        return "GB18030";
    default:
        return nullptr;
    }
}

} // namespace

std::string fromUtf16BigEndian(std::string_view bytes)
{
    std::string text;
    const auto unit = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                          static_cast<unsigned char>(bytes[i + 1]));
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t character = unit(i);
        if (character >= 0xd800 && character < 0xdc00 && i + 3 < bytes.size() && (unit(i + 2) & 0xfc00) == 0xdc00) {
            character = 0x10000 + ((character - 0xd800) << 10) + (unit(i + 2) - 0xdc00);
            i += 2;
        } else if (character >= 0xd800 && character < 0xe000) {
            character = 0xfffd;
        }
        append(text, character);
    }
    return text;
}

std::string fromMacRoman(std::string_view bytes)
{
    return eachByte(bytes, [](unsigned char c) -> std::uint32_t { return c < 0x80 ? c : macRoman[c - 0x80u]; });
}

std::string fromWindows1252(std::string_view bytes)
{
    return eachByte(bytes, [](unsigned char c) -> std::uint32_t {
        return c >= 0x80 && c < 0xa0 ? static_cast<std::uint32_t>(windowsLatin[c - 0x80u]) : c;
    });
}

std::string decodeNameRecord(int platform, int encoding, std::string_view bytes)
{
    std::string text;
    if (platform == 0 || (platform == 2 && encoding == 1)) {
        text = fromUtf16BigEndian(bytes);
    } else if (platform == 3) {
        if (const char* legacy = microsoftEncoding(encoding))
            text = fromLegacy(legacy, bytes);
        // Many fonts name a legacy encoding and store UTF-16 all the same.
        if (text.empty())
            text = fromUtf16BigEndian(bytes);
    } else if (platform == 1) {
        if (const char* legacy = macintoshEncoding(encoding))
            text = fromLegacy(legacy, bytes);
        else if (encoding == 0 || isAscii(bytes))
            text = fromMacRoman(bytes);
    } else {
        text = fromWindows1252(bytes);
    }
    return trimmed(withoutControls(text.substr(0, text.find('\0'))));
}

std::string fromPostScript(std::string_view bytes)
{
    // harmlessValue() changes a text that is not valid UTF-8, and leaves every other printable one alone.
    const bool isUtf8 = helpers::harmlessValue(bytes).find("\xef\xbf\xbd") == std::string::npos;
    return trimmed(withoutControls(isUtf8 ? std::string(bytes) : fromWindows1252(bytes)));
}

std::string trimmed(std::string_view text)
{
    constexpr std::string_view blank = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blank);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blank) - first + 1));
}

std::string clipped(std::string text, std::size_t longest)
{
    if (text.size() > longest) {
        while (longest > 0 && (static_cast<unsigned char>(text[longest]) & 0xc0) == 0x80)
            --longest;
        text.resize(longest);
    }
    return text;
}

} // namespace kerval::adder
