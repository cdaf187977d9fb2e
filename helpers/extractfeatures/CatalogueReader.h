#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

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
    std::int64_t row = 0;       // of its features in their table, when it has any
    bool hasRow = false;
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

    // The fonts that are not marked as deleted: first those with a feature row in the order of that table, then the
    // rest by id. What is read from here until release() is of one time.
    bool readFonts(std::vector<CatalogueFont>& fonts, std::string& problem);

    // Calls back once for each of fonts[begin] to fonts[end - 1], which another reader of the same file may have read,
    // in their order. The blob is empty when there is no such row. A false from the callback ends the reading, and so
    // does a damaged file.
    using Visit = std::function<bool(std::string_view blob)>;
    bool readFeatures(const std::vector<CatalogueFont>& fonts, std::size_t begin, std::size_t end, const Visit& visit,
                      std::string& problem);
    void release();

    // Changes whenever another connection has changed the database since the last call; -1 when it cannot be read.
    std::int64_t dataVersion();

private:
    using FontsById = std::unordered_map<std::int64_t, CatalogueFont>;

    void hold();
    bool readFontRows(FontsById& fonts, std::string& problem);
    bool findFeatureRows(FontsById& fonts, std::string& problem);
    bool fail(const char* what, std::string& problem) const;
    sqlite3_stmt* prepare(const char* sql) const;

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_features = nullptr;
};

} // namespace kerval::helpers
