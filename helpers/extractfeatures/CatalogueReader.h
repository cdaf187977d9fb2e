#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace kerval::helpers {

// What the comparison of faces needs from a row of the table "font".
struct CatalogueFont
{
    std::int32_t id = 0;
    std::int32_t hwi = 0;
    std::int32_t hwe = 0;
    std::int32_t hhe = 0;
    std::array<std::int32_t, 3> scores{}; // smart choice: all, body, headline
    bool serif = false;
    std::string postScriptName; // without line ends and separators
    std::string className;      // empty when the face has none
    bool written = false;       // its feature row has been seen
};

// Reads fms.db without ever writing to it. Everything in the file is taken for hostile: columns of the wrong type, rows
// without a partner and blobs of any length are read as "nothing known".
class CatalogueReader
{
public:
    CatalogueReader() = default;
    ~CatalogueReader();
    CatalogueReader(const CatalogueReader&) = delete;
    CatalogueReader& operator=(const CatalogueReader&) = delete;

    // False and a text when the file is missing, no database, or lacks the catalogue's tables.
    bool open(const std::string& path, std::string& problem);

    // Tells how many fonts there are that are not marked as deleted and calls back once for each: first those with a
    // feature row in the order of that table, then the rest with an empty blob. A false from a callback ends the
    // reading; so does a damaged file.
    using Begin = std::function<bool(std::size_t fonts)>;
    using Visit = std::function<bool(const CatalogueFont&, std::string_view blob)>;
    bool readAll(const Begin& begin, const Visit& visit, std::string& problem);

    // Changes whenever another connection has changed the database since the last call; -1 when it cannot be read.
    std::int64_t dataVersion();

private:
    bool readFonts(std::string& problem);
    bool fail(const char* what, std::string& problem) const;
    sqlite3_stmt* prepare(const char* sql) const;

    sqlite3* m_database = nullptr;
    std::unordered_map<std::int64_t, CatalogueFont> m_fonts;
};

} // namespace kerval::helpers
