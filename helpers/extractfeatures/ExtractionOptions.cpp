#include "helpers/extractfeatures/ExtractionOptions.h"

#include "helpers/common/HexPath.h"

namespace kerval::helpers {

std::optional<ExtractionOptions> ExtractionOptions::parse(const std::vector<std::string>& arguments,
                                                          std::string& problem)
{
    ExtractionOptions options;
    std::string mode;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (name == "--createfolder") {
            options.createFolder = true;
            continue;
        }
        if (name != "-d" && name != "-f" && name != "-r" && name != "-m" && name != "-u" && name != "-p") {
            problem = "unknown option " + name;
            return std::nullopt;
        }
        if (i + 1 == arguments.size()) {
            problem = "option " + name + " lacks its value";
            return std::nullopt;
        }
        const std::string& value = arguments[++i];
        if (name == "-d" || name == "-f") {
            const std::optional<std::string> path = decodePath(value);
            if (!path || path->empty() || path->find('\0') != std::string::npos) {
                problem = "option " + name + " holds no path";
                return std::nullopt;
            }
            (name == "-d" ? options.database : options.folder) = *path;
        } else if (name == "-r") {
            options.driver = value;
        } else if (name == "-m") {
            mode = value;
        }
    }
    if (options.database.empty() || options.folder.empty()) {
        problem = "the database (-d) and the folder (-f) are needed";
    } else if (options.driver != "QSQLITE") {
        problem = "unknown database driver \"" + options.driver + "\"";
    } else if (mode != "zerocharacter") {
        problem = "unknown mode \"" + mode + "\"";
    } else {
        return options;
    }
    return std::nullopt;
}

} // namespace kerval::helpers
