#include "helpers/findsimilar/DesignName.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

namespace kerval::helpers {

namespace {

// Words that tell members of one superfamily apart, not superfamilies.
constexpr std::array<std::string_view, 69> kMemberWords = {
    "sans",      "serif",      "mono",    "slab",         "text",    "display",   "roman",     "regular", "bold",
    "italic",    "oblique",    "light",   "medium",       "black",   "book",      "heavy",     "thin",    "semibold",
    "demibold",  "demi",       "semi",    "extra",        "ultra",   "condensed", "cond",      "narrow",  "extended",
    "expanded",  "wide",       "caption", "headline",     "subhead", "caps",      "smallcaps", "sc",      "math",
    "monospace", "typewriter", "code",    "ps",           "mt",      "std",       "pro",       "lt",      "otf",
    "ttf",       "basic",      "compact", "plus",         "title",   "titling",   "small",     "large",   "micro",
    "poster",    "deck",       "fixed",   "proportional", "rounded", "round",     "outline",   "inline",  "hairline",
    "normal",    "ex",         "new",     "alt",          "swash",   "unicase"};

bool isMemberWord(const std::string& word)
{
    const bool number = std::all_of(word.begin(), word.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
    return number || std::find(kMemberWords.begin(), kMemberWords.end(), word) != kMemberWords.end();
}

bool startsWord(std::string_view name, std::size_t place)
{
    const auto upper = [&](std::size_t i) { return std::isupper(static_cast<unsigned char>(name[i])) != 0; };
    const auto digit = [&](std::size_t i) { return std::isdigit(static_cast<unsigned char>(name[i])) != 0; };
    if (place == 0 || digit(place) != digit(place - 1)) {
        return true;
    }
    // "PTSans": the last capital of a row begins the next word when a small letter follows.
    return upper(place) && (!upper(place - 1) || (place + 1 < name.size() && !upper(place + 1) && !digit(place + 1)));
}

std::vector<std::string> wordsOf(std::string_view name)
{
    std::vector<std::string> words;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (std::isalnum(static_cast<unsigned char>(name[i])) == 0) {
            continue;
        }
        if (words.empty() || startsWord(name, i)) {
            words.emplace_back();
        }
        words.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
    }
    return words;
}

} // namespace

DesignName DesignName::of(std::string_view postScriptName)
{
    DesignName result;
    result.family = postScriptName.substr(0, postScriptName.find_first_of("-,"));
    for (const std::string& word : wordsOf(result.family)) {
        if (!result.superfamily.empty() && isMemberWord(word)) {
            break;
        }
        result.superfamily += word;
    }
    return result;
}

} // namespace kerval::helpers
