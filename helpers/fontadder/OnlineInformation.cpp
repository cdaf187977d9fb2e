#include "helpers/fontadder/OnlineInformation.h"

#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/NameText.h"
#include "helpers/fontadder/platform.h"

#include <charconv>
#include <cstdint>

namespace kerval::adder {

namespace {

constexpr std::size_t maximalSize = 64u << 10;

long long toNumber(std::string_view text)
{
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The character at a place of a file written with a codec of UTF-8, and how many bytes it takes; what is not UTF-8
// stands for itself.
std::uint32_t characterAt(std::string_view text, std::size_t at, std::size_t* length)
{
    const auto first = static_cast<unsigned char>(text[at]);
    *length = 1;
    const std::size_t following = first >= 0xf0 && first < 0xf5 ? 3 : first >= 0xe0 ? 2 : first >= 0xc2 ? 1 : 0;
    if (first < 0xc2 || first >= 0xf5 || text.size() - at <= following)
        return first;
    std::uint32_t character = first & (0x3fu >> following);
    for (std::size_t i = 1; i <= following; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xc0) != 0x80)
            return first;
        character = character << 6 | (next & 0x3fu);
    }
    *length = following + 1;
    return character;
}

void append(std::u16string* text, std::uint32_t character)
{
    if (character < 0x10000) {
        *text += static_cast<char16_t>(character);
        return;
    }
    *text += static_cast<char16_t>(0xd800 + ((character - 0x10000) >> 10));
    *text += static_cast<char16_t>(0xdc00 + ((character - 0x10000) & 0x3ff));
}

// A value as a row of 16-bit characters: outside quotes blanks at the ends are dropped, inside them and out "\n", "\0",
// "\x1234" and the like stand for one character.
std::u16string unescaped(std::string_view value)
{
    constexpr std::string_view letters = "abfnrtv0\"?'\\";
    constexpr char16_t meanings[] = u"\a\b\f\n\r\t\v\0\"?'\\";
    std::u16string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '"')
            continue;
        if (value[i] != '\\' || i + 1 == value.size()) {
            std::size_t length = 1;
            append(&text, characterAt(value, i, &length));
            i += length - 1;
            continue;
        }
        const char escape = value[++i];
        if (escape == 'x') {
            unsigned code = 0;
            while (i + 1 < value.size() && hexDigit(value[i + 1]) >= 0)
                code = code << 4 | static_cast<unsigned>(hexDigit(value[++i]));
            text += static_cast<char16_t>(code);
        } else if (const std::size_t at = letters.find(escape); at != std::string_view::npos) {
            text += meanings[at];
        }
    }
    return text;
}

std::string bytesOf(const std::u16string& text)
{
    std::string bytes;
    for (const char16_t c : text)
        bytes += static_cast<char>(c & 0xff);
    return bytes;
}

std::string utf8Of(const std::u16string& text)
{
    std::string bigEndian;
    for (const char16_t c : text) {
        bigEndian += static_cast<char>(c >> 8);
        bigEndian += static_cast<char>(c & 0xff);
    }
    return fromUtf16BigEndian(bigEndian);
}

long long dayNumber(int year, int month, int day)
{
    const int shifted = month <= 2 ? year - 1 : year;
    const int era = (shifted >= 0 ? shifted : shifted - 399) / 400;
    const int yearOfEra = shifted - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097LL + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

// The calendar day of a number of days since 1970.
void calendarDay(long long days, int& year, int& month, int& day)
{
    const long long shifted = days + 719468;
    const long long era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const auto dayOfEra = static_cast<int>(shifted - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shiftedMonth = (5 * dayOfYear + 2) / 153;
    day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    year = static_cast<int>(yearOfEra + era * 400) + (month <= 2 ? 1 : 0);
}

// "@DateTime(...)": the framework's binary form. Type id, null flag, Julian day, milliseconds of the day, time
// kind (0 local, 1 UTC, 2 with its distance to UTC in seconds).
long long serializedDate(std::string_view bytes)
{
    constexpr std::uint32_t dateTimeType = 16;
    constexpr std::size_t shortest = 18;
    constexpr long long julianDayOf1970 = 2440588;
    constexpr long long farthestDay = 4000000;
    const BigEndianReader reader(bytes);
    if (bytes.size() < shortest || reader.u32(0) != dateTimeType)
        return 0;
    const long long julianDay = static_cast<long long>(reader.u32(5)) << 32 | reader.u32(9);
    const long long seconds = reader.u32(13) / 1000;
    if (julianDay < julianDayOf1970 || julianDay > farthestDay || seconds >= 86400)
        return 0;
    const long long days = julianDay - julianDayOf1970;
    const int timeKind = bytes[17];
    if (timeKind == 1)
        return days * 86400 + seconds;
    if (timeKind == 2)
        return days * 86400 + seconds - static_cast<std::int32_t>(reader.u32(18));
    int year = 0;
    int month = 0;
    int day = 0;
    calendarDay(days, year, month, day);
    return platform::unixTimeOfLocal(year, month, day, static_cast<int>(seconds));
}

// "2024-05-01T12:30:00", with "Z" for UTC: what a person or another program may write.
long long isoDate(std::string_view text)
{
    if (text.size() < 19 || text[4] != '-' || text[7] != '-' || text[13] != ':' || text[16] != ':')
        return 0;
    const auto number = [&](std::size_t at, std::size_t length) {
        return static_cast<int>(toNumber(text.substr(at, length)));
    };
    const int seconds = number(11, 2) * 3600 + number(14, 2) * 60 + number(17, 2);
    if (text.back() == 'Z')
        return dayNumber(number(0, 4), number(5, 2), number(8, 2)) * 86400 + seconds;
    return platform::unixTimeOfLocal(number(0, 4), number(5, 2), number(8, 2), seconds);
}

long long toDate(const std::u16string& value)
{
    constexpr std::string_view opening = "@DateTime(";
    const std::string bytes = bytesOf(value);
    long long date = 0;
    if (bytes.substr(0, opening.size()) == opening)
        date = serializedDate(std::string_view(bytes).substr(opening.size()));
    else
        date = bytes.find('-') == std::string::npos ? toNumber(bytes) : isoDate(bytes);
    return date > 0 ? date : 0;
}

} // namespace

OnlineInformation OnlineInformation::besideFile(const std::string& fileName)
{
    platform::FileContent settings;
    std::string error;
    if (!settings.read(fileName + ".onlineinfo", maximalSize, error))
        return {};
    return parse(settings.bytes());
}

OnlineInformation OnlineInformation::parse(std::string_view settings)
{
    OnlineInformation information;
    bool inGeneral = true;
    while (!settings.empty()) {
        const std::size_t end = settings.find('\n');
        const std::string line = trimmed(settings.substr(0, end));
        settings.remove_prefix(end == std::string_view::npos ? settings.size() : end + 1);
        if (!line.empty() && line.front() == '[')
            inGeneral = line == "[General]";
        const std::size_t equals = line.find('=');
        if (!inGeneral || equals == std::string::npos)
            continue;
        const std::string key = trimmed(std::string_view(line).substr(0, equals));
        const std::u16string value = unescaped(trimmed(std::string_view(line).substr(equals + 1)));
        if (key == "OnlineId")
            information.id = toNumber(bytesOf(value));
        else if (key == "OnlineSource")
            information.source = utf8Of(value);
        else if (key == "DownloadedDate")
            information.downloaded = toDate(value);
        else if (key == "Purchased")
            information.isPurchased = value == u"true" || value == u"1";
    }
    return information;
}

} // namespace kerval::adder
