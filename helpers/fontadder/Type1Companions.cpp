#include "helpers/fontadder/Type1Companions.h"

#include "helpers/fontadder/NameText.h"

#include <algorithm>

namespace kerval::adder {

namespace {

constexpr std::size_t maximalMetricsSize = 16u << 20;
constexpr std::size_t maximalOutlineSize = 64u << 20;

// Offsets in a Windows printer font metrics file; its numbers are little-endian.
namespace pfm {
constexpr std::size_t version = 0;
constexpr std::size_t copyright = 6;
constexpr std::size_t copyrightLength = 60;
constexpr std::size_t italic = 80;
constexpr std::size_t weight = 83;
constexpr std::size_t pitchAndFamily = 90;
constexpr std::size_t face = 105;
constexpr std::size_t driverInfo = 139;
constexpr std::size_t headerSize = 147;
constexpr unsigned supportedVersion = 0x0100;
constexpr unsigned boldWeight = 600;
} // namespace pfm

unsigned byteAt(std::string_view bytes, std::size_t offset)
{
    return offset < bytes.size() ? static_cast<unsigned char>(bytes[offset]) : 0;
}

unsigned u16At(std::string_view bytes, std::size_t offset)
{
    return byteAt(bytes, offset) | byteAt(bytes, offset + 1) << 8;
}

std::string textAt(std::string_view bytes, std::size_t offset, std::size_t longest)
{
    if (offset == 0 || offset >= bytes.size())
        return {};
    const std::string_view text = bytes.substr(offset, longest);
    return trimmed(fromWindows1252(text.substr(0, text.find('\0'))));
}

std::string suffixOf(const std::string& fileName)
{
    const std::size_t dot = fileName.rfind('.');
    std::string suffix = dot == std::string::npos ? std::string() : fileName.substr(dot + 1);
    for (char& c : suffix)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
    return suffix;
}

platform::FileContent companion(const std::string& fileName, std::string_view suffix, std::size_t limit)
{
    platform::FileContent content;
    std::string error;
    if (const auto path = platform::companionFile(fileName, suffix))
        content.read(*path, limit, error);
    return content;
}

} // namespace

Type1Companions Type1Companions::find(const std::string& fileName, std::string_view content)
{
    Type1Companions found;
    const std::string suffix = suffixOf(fileName);
    const bool isPfm = suffix == "pfm";
    const bool isAfm = suffix == "afm";
    if (!isPfm && !isAfm && suffix != "pfb" && suffix != "pfa" && suffix != "t1")
        return found;
    found.isMetricsFile = isPfm || isAfm;
    for (const std::string_view outlines : {"pfb", "pfa", "t1"})
        if (found.isMetricsFile && found.outlines.isEmpty())
            found.outlines = companion(fileName, outlines, maximalOutlineSize);
    found.pfm = isPfm ? std::string(content) : std::string(companion(fileName, "pfm", maximalMetricsSize).bytes());
    found.afm = isAfm ? std::string(content) : std::string(companion(fileName, "afm", maximalMetricsSize).bytes());
    return found;
}

bool PfmNames::read(std::string_view bytes)
{
    if (bytes.size() < pfm::headerSize || u16At(bytes, pfm::version) != pfm::supportedVersion)
        return false;
    constexpr std::size_t longestName = 128;
    const auto offsetAt = [&](std::size_t at) {
        return static_cast<std::size_t>(u16At(bytes, at)) | static_cast<std::size_t>(u16At(bytes, at + 2)) << 16;
    };
    menuFamily = textAt(bytes, offsetAt(pfm::face), longestName);
    postScriptName = textAt(bytes, offsetAt(pfm::driverInfo), longestName);
    copyright = textAt(bytes, pfm::copyright, pfm::copyrightLength);
    isBold = u16At(bytes, pfm::weight) >= pfm::boldWeight;
    isItalic = byteAt(bytes, pfm::italic) != 0;
    // The lowest bit tells a variable pitch.
    isFixedPitch = (byteAt(bytes, pfm::pitchAndFamily) & 1) == 0;
    return true;
}

bool AfmNames::read(std::string_view text)
{
    if (text.substr(0, 16) != "StartFontMetrics")
        return false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));

        const std::size_t blank = line.find(' ');
        if (line.substr(0, blank) == "StartCharMetrics")
            break;
        if (blank == std::string_view::npos)
            continue;
        const std::string_view key = line.substr(0, blank);
        for (const auto& [name, target] : {std::pair<std::string_view, std::string*>{"FontName", &fontName},
                                           {"FullName", &fullName},
                                           {"FamilyName", &familyName},
                                           {"Weight", &weight},
                                           {"Version", &version},
                                           {"Notice", &notice}})
            if (key == name && target->empty())
                *target = fromPostScript(line.substr(blank + 1));
    }
    return true;
}

} // namespace kerval::adder
