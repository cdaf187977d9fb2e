#include "helpers/common/FaceReport.h"

#include "helpers/common/Base64.h"
#include "helpers/common/ByteScrambling.h"

#include <charconv>

namespace kerval::helpers {

namespace {

constexpr std::string_view marker = "|:::::::::::::::|";
constexpr std::string_view partSeparator = "|:::::|";
constexpr std::string_view itemSeparator = "|:|";
constexpr std::string_view brokenBar = "\xc2\xa6";
constexpr std::string_view replacement = "\xef\xbf\xbd";

// The length of the well-formed UTF-8 sequence that the text begins with; 0 when it begins with none.
std::size_t sequenceLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xc2 && lead <= 0xdf   ? 2
                               : (lead & 0xf0) == 0xe0        ? 3
                               : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                              : 0;
    if (length == 0 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xc0) != 0x80)
            return 0;
    const unsigned char second = byte(1);
    const bool overlong = (lead == 0xe0 && second < 0xa0) || (lead == 0xf0 && second < 0x90);
    const bool noCharacter = (lead == 0xed && second >= 0xa0) || (lead == 0xf4 && second >= 0x90);
    return overlong || noCharacter ? 0 : length;
}

bool isControl(unsigned char c)
{
    return (c < 0x20 && c != '\n' && c != '\t') || c == 0x7f;
}

std::string_view cutAt(std::string_view& rest, std::string_view separator)
{
    const std::size_t end = rest.find(separator);
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + separator.size());
    return part;
}

template <class Number>
bool toNumber(std::string_view text, Number& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

std::string harmlessValue(std::string_view value)
{
    std::string safe;
    safe.reserve(value.size());
    while (!value.empty()) {
        const std::size_t length = sequenceLength(value);
        const char c = value.front();
        if (length == 0)
            safe += replacement;
        else if (c == '|' && value.size() > 1 && value[1] == ':')
            safe += brokenBar;
        else if (c == '\r')
            safe += value.size() > 1 && value[1] == '\n' ? "" : "\n";
        else if (!isControl(static_cast<unsigned char>(c)))
            safe += value.substr(0, length);
        value.remove_prefix(length == 0 ? 1 : length);
    }
    // Control characters are dropped, which may have brought a bar and a colon together.
    for (std::size_t at = safe.find("|:"); at != std::string::npos; at = safe.find("|:", at))
        safe.replace(at, 1, brokenBar);
    return safe;
}

std::string writeFaceReport(const FaceReport& report)
{
    std::string payload;
    for (const auto& [key, value] : report.information) {
        if (!payload.empty())
            payload += itemSeparator;
        payload += key + ':' + harmlessValue(value);
    }
    payload += partSeparator;
    bool first = true;
    for (const auto& [code, vector] : report.features) {
        if (!first)
            payload += itemSeparator;
        first = false;
        payload += std::to_string(code);
        payload += itemSeparator;
        payload += toBase64(toBytes(vector));
    }
    const std::string sealed = seal(payload);
    return std::string(marker) + std::to_string(sealed.size()) + '|' + sealed;
}

std::optional<std::string> openEnvelope(std::string_view output)
{
    const std::size_t start = output.find(marker);
    if (start == std::string_view::npos)
        return std::nullopt;
    output.remove_prefix(start + marker.size());
    const std::size_t bar = output.find('|');
    std::size_t length = 0;
    if (bar == std::string_view::npos || !toNumber(output.substr(0, bar), length) || length == 0)
        return std::nullopt;
    output.remove_prefix(bar + 1);
    if (output.size() < length)
        return std::nullopt;
    return unseal(output.substr(0, length));
}

std::optional<FaceReport> parseFaceReport(std::string_view payload)
{
    std::string_view section;
    while (section.empty() && !payload.empty())
        section = cutAt(payload, marker);

    std::string_view features = section;
    std::string_view information = cutAt(features, partSeparator);
    features = cutAt(features, partSeparator);

    FaceReport report;
    while (!information.empty()) {
        std::string_view value = cutAt(information, itemSeparator);
        const std::string_view key = cutAt(value, ":");
        if (!key.empty())
            report.information.emplace_back(key, value);
    }
    while (!features.empty()) {
        const std::string_view codeText = cutAt(features, itemSeparator);
        if (features.empty())
            break;
        const std::optional<std::string> bytes = fromBase64(cutAt(features, itemSeparator));
        int code = 0;
        FeatureVector vector;
        if (!toNumber(codeText, code) || code == 0 || !bytes || !fromBytes(*bytes, vector))
            return std::nullopt;
        report.features.emplace_back(code, vector);
    }
    return report;
}

} // namespace kerval::helpers
