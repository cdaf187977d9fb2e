#include "helpers/findsimilar/SimilarityOptions.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <utility>

#include "helpers/common/HexPath.h"

namespace kerval::helpers {

namespace {

constexpr std::pair<const char*, SimilarityMethod> kMethods[] = {
    {"similar", SimilarityMethod::Similar},     {"harsfam", SimilarityMethod::SameFamily},
    {"harcont", SimilarityMethod::Contrast},    {"harbody", SimilarityMethod::Body},
    {"harhead", SimilarityMethod::Headline},    {"smartall", SimilarityMethod::SmartAll},
    {"smartbody", SimilarityMethod::SmartBody}, {"smarthead", SimilarityMethod::SmartHeadline},
};

bool readNumber(std::string_view text, int& number)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool readMethod(std::string_view name, SimilarityMethod& method)
{
    for (const auto& [known, value] : kMethods) {
        if (name == known) {
            method = value;
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<SimilarityOptions> SimilarityOptions::parse(const std::vector<std::string>& arguments,
                                                          std::string& problem)
{
    SimilarityOptions options;
    bool hasFont = false;
    bool hasLimit = false;
    bool hasMethod = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (name == "--stdininids") {
            options.idsOnInput = true;
            continue;
        }
        if (i + 1 == arguments.size()) {
            problem = "option " + name + " lacks its value or is unknown";
            return std::nullopt;
        }
        const std::string& value = arguments[++i];
        bool good = true;
        if (name == "-f") {
            const std::optional<std::string> path = decodePath(value);
            good = path && !path->empty() && path->find('\0') == std::string::npos;
            options.folder = good ? *path : std::string();
        } else if (name == "-t") {
            options.characters = value;
        } else if (name == "-i") {
            good = hasFont = readNumber(value, options.fontId);
        } else if (name == "-l") {
            good = hasLimit = readNumber(value, options.limit) && options.limit >= 0;
        } else if (name == "-o") {
            options.format = value;
        } else if (name == "-m") {
            good = hasMethod = readMethod(value, options.method);
        } else {
            good = false;
        }
        if (!good) {
            problem = "option " + name + " with \"" + value + "\" is not understood";
            return std::nullopt;
        }
    }
    if (options.folder.empty() || !hasFont || !hasLimit || !hasMethod) {
        problem = "the folder (-f), the font (-i), the limit (-l) and the method (-m) are needed";
        return std::nullopt;
    }
    return options;
}

std::string formatMatch(const std::string& format, int id, double deviance)
{
    std::string text;
    for (std::size_t i = 0; i < format.size();) {
        if (format.compare(i, 4, "{id}") == 0) {
            text += std::to_string(id);
            i += 4;
        } else if (format.compare(i, 10, "{deviance}") == 0) {
            char number[32];
            const auto end = std::to_chars(number, number + sizeof number, deviance, std::chars_format::fixed, 6).ptr;
            text.append(number, end);
            i += 10;
        } else if (format.compare(i, 2, "\\n") == 0) {
            text += '\n';
            i += 2;
        } else {
            text += format[i++];
        }
    }
    return text;
}

std::vector<int> parseIds(const std::string& text)
{
    std::vector<int> ids;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        std::string_view item(text.data() + begin, end - begin);
        while (!item.empty() && (item.back() == ' ' || item.back() == '\r' || item.back() == '\n')) {
            item.remove_suffix(1);
        }
        while (!item.empty() && item.front() == ' ') {
            item.remove_prefix(1);
        }
        int id = 0;
        if (readNumber(item, id)) {
            ids.push_back(id);
        }
        begin = end + 1;
    }
    return ids;
}

} // namespace kerval::helpers
