#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "helpers/extractfeatures/FeatureExtraction.h"

// Exit codes: 0 the folder is ready; 1 it could not be made; 2 the command line is wrong. The reason is one line on
// standard error.
int main(int argc, char** argv)
{
    std::string problem;
    int code = 2;
    // Each thread reads over a connection of its own, and nobody asks how much memory they have.
    sqlite3_config(SQLITE_CONFIG_MULTITHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        if (const auto options = kerval::helpers::ExtractionOptions::parse(arguments, problem)) {
            code = kerval::helpers::extractFeatures(*options, problem) ? 0 : 1;
        }
    } catch (const std::exception& exception) { // no memory left, above all
        problem = exception.what();
        code = 1;
    }
    if (code != 0) {
        std::fprintf(stderr, "krvextractfeatures: %s\n", problem.c_str());
    }
    return code;
}
