#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kerval::helpers {

// The extraction program's command line:
//   --createfolder -d <database> -f <folder> -r QSQLITE -m zerocharacter [-u <user>] [-p <password>]
// Both paths as "0x" and hexadecimal digits. User and password belong to database servers and are ignored for SQLite.
struct ExtractionOptions
{
    std::string database;
    std::string folder;
    std::string driver;
    bool createFolder = false;

    // Nothing and a text when the line is incomplete or holds what this program does not know.
    static std::optional<ExtractionOptions> parse(const std::vector<std::string>& arguments, std::string& problem);
};

} // namespace kerval::helpers
