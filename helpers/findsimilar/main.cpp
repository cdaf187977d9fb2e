#include <cstdio>
#include <exception>
#include <iostream>
#include <iterator>
#include <string>
#include <unordered_set>
#include <vector>

#include "helpers/common/ByteScrambling.h"
#include "helpers/findsimilar/FeatureFolder.h"
#include "helpers/findsimilar/SimilarityMethods.h"
#include "helpers/findsimilar/SimilarityOptions.h"

namespace {

using namespace kerval::helpers;

enum ExitCode
{
    Done = 0,
    FolderNotReady = 1,
    WrongCommandLine = 2,
    FolderDamaged = 3,
    UnknownFont = 4
};

std::vector<char> readMarks(const FeatureFolder& folder)
{
    std::string line;
    std::getline(std::cin, line);
    const std::vector<int> ids = parseIds(line);
    const std::unordered_set<int> wanted(ids.begin(), ids.end());
    std::vector<char> marks(static_cast<std::size_t>(folder.count()), 0);
    for (int font = 0; font < folder.count(); ++font) {
        marks[static_cast<std::size_t>(font)] = wanted.count(folder.ids()[font]) > 0;
    }
    return marks;
}

ExitCode run(const SimilarityOptions& options, std::string& output, std::string& problem)
{
    FeatureFolder folder;
    switch (folder.open(options.folder, options.characters)) {
    case FeatureFolder::State::Missing:
        problem = "the features folder is not ready";
        return FolderNotReady;
    case FeatureFolder::State::Damaged:
        folder.invalidate();
        problem = "the features folder is damaged and has to be made again";
        return FolderDamaged;
    case FeatureFolder::State::Ready:
        break;
    }
    SimilarityQuery query;
    query.limit = options.limit;
    query.font = folder.indexOf(options.fontId);
    if (query.font < 0) {
        problem = "there is no font " + std::to_string(options.fontId);
        return UnknownFont;
    }
    if (options.idsOnInput) {
        query.marked = readMarks(folder);
    }
    std::string text;
    for (const Match& match : findMatches(folder, options.method, query)) {
        text += formatMatch(options.format, folder.ids()[match.font], match.deviance);
    }
    output = seal(text);
    return Done;
}

} // namespace

// Prints the matches, sealed, with exit code 0, also when there are none. Any other exit code comes with nothing on
// standard output and one line on standard error.
int main(int argc, char** argv)
{
    std::string problem;
    std::string output;
    int code = WrongCommandLine;
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        if (const auto options = SimilarityOptions::parse(arguments, problem)) {
            code = run(*options, output, problem);
        }
    } catch (const std::exception& exception) { // no memory left, above all
        problem = exception.what();
        code = FolderNotReady;
    }
    if (code != Done) {
        std::fprintf(stderr, "krvfindsimilar: %s\n", problem.c_str());
        return code;
    }
    return std::fwrite(output.data(), 1, output.size(), stdout) == output.size() && std::fflush(stdout) == 0
               ? Done
               : FolderNotReady;
}
