#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kerval::helpers {

enum class SimilarityMethod
{
    Similar,
    SameFamily,
    Contrast,
    Body,
    Headline,
    SmartAll,
    SmartBody,
    SmartHeadline
};

// The similarity program's command line:
//   -f <folder> -t <characters> -i <font id> -l <limit> -o <template> -m <method> [--stdininids]
// The folder as "0x" and hexadecimal digits; in the template "{id}" and "{deviance}" stand for the match's numbers,
// "\n" (a backslash and the letter) for a line end.
struct SimilarityOptions
{
    std::string folder;
    std::string characters;
    std::string format = "{id}:{deviance}\\n";
    int fontId = 0;
    int limit = 0;
    SimilarityMethod method = SimilarityMethod::Similar;
    bool idsOnInput = false;

    static std::optional<SimilarityOptions> parse(const std::vector<std::string>& arguments, std::string& problem);
};

// One match filled into the template.
std::string formatMatch(const std::string& format, int id, double deviance);

// Font ids separated by commas; anything that is none is skipped.
std::vector<int> parseIds(const std::string& text);

} // namespace kerval::helpers
