#include "helpers/extractfeatures/CatalogueReader.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <tuple>
#include <utility>

#include <sqlite3.h>

namespace kerval::helpers {

namespace {

constexpr int kBusyMilliseconds = 20000;

struct StatementDeleter
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

std::string_view text(sqlite3_stmt* statement, int column)
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))
                 : std::string_view();
}

bool containsWord(std::string_view where, std::string_view lowerCaseWord)
{
    return std::search(where.begin(), where.end(), lowerCaseWord.begin(), lowerCaseWord.end(),
                       [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; }) != where.end();
}

// The class that tells most about a face comes first.
std::string classNameOf(std::string_view keywords)
{
    for (const char* name : {"blackletter", "handwriting", "comic", "headline", "typewriter", "modern", "classic"}) {
        if (containsWord(keywords, name)) {
            return name;
        }
    }
    return {};
}

// One line with "||" as separator must stay one.
std::string lineSafe(std::string_view name)
{
    std::string safe(name);
    for (char& character : safe) {
        if (static_cast<unsigned char>(character) < 0x20 || character == '|') {
            character = '_';
        }
    }
    return safe;
}

} // namespace

CatalogueReader::~CatalogueReader()
{
    sqlite3_finalize(m_features);
    sqlite3_close(m_database);
}

bool CatalogueReader::fail(const char* what, std::string& problem) const
{
    problem = std::string(what) + ": " + (m_database ? sqlite3_errmsg(m_database) : "out of memory");
    return false;
}

sqlite3_stmt* CatalogueReader::prepare(const char* sql) const
{
    sqlite3_stmt* statement = nullptr;
    return sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr) == SQLITE_OK ? statement : nullptr;
}

bool CatalogueReader::open(const std::string& path, std::string& problem)
{
    if (sqlite3_open_v2(path.c_str(), &m_database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        return fail("the database cannot be opened", problem);
    }
    sqlite3_busy_timeout(m_database, kBusyMilliseconds);
    sqlite3_exec(m_database, "PRAGMA mmap_size = 2147418112", nullptr, nullptr, nullptr);
    const Statement fonts(prepare("SELECT id, ps_name, other_info2, hwi, hwe, hhe, sc_all, sc_body, sc_head, deleted "
                                  "FROM font LIMIT 0"));
    m_features = prepare("SELECT rowid, featuredata FROM feature WHERE rowid BETWEEN ? AND ?");
    const Statement rows(prepare("SELECT font_id FROM feature LIMIT 0"));
    return (fonts && m_features && rows) || fail("this is no font catalogue", problem);
}

std::int64_t CatalogueReader::dataVersion()
{
    const Statement statement(prepare("PRAGMA data_version"));
    return statement && sqlite3_step(statement.get()) == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 0) : -1;
}

bool CatalogueReader::readFontRows(FontsById& fonts, std::string& problem)
{
    const Statement statement(prepare("SELECT id, ps_name, other_info2, hwi, hwe, hhe, sc_all, sc_body, sc_head "
                                      "FROM font WHERE coalesce(deleted, 0) = 0"));
    int state = SQLITE_ERROR;
    struct Stated
    {
        bool serif;
        std::string className;
    };
    std::map<std::string, Stated, std::less<>> known; // thousands of fonts share a few texts
    while (statement && (state = sqlite3_step(statement.get())) == SQLITE_ROW) {
        const std::int64_t id = sqlite3_column_int64(statement.get(), 0);
        if (id < std::numeric_limits<std::int32_t>::min() || id > std::numeric_limits<std::int32_t>::max()) {
            continue;
        }
        CatalogueFont font;
        font.id = static_cast<std::int32_t>(id);
        font.postScriptName = lineSafe(text(statement.get(), 1));
        const std::string_view keywords = text(statement.get(), 2);
        auto stated = known.find(keywords);
        if (stated == known.end()) {
            stated = known.emplace(keywords, Stated{containsWord(keywords, "serif"), classNameOf(keywords)}).first;
        }
        font.serif = stated->second.serif;
        font.className = stated->second.className;
        font.hwi = sqlite3_column_int(statement.get(), 3);
        font.hwe = sqlite3_column_int(statement.get(), 4);
        font.hhe = sqlite3_column_int(statement.get(), 5);
        for (int i = 0; i < 3; ++i) {
            font.scores[static_cast<std::size_t>(i)] = sqlite3_column_int(statement.get(), 6 + i);
        }
        fonts.emplace(id, std::move(font));
    }
    return state == SQLITE_DONE || fail("the fonts cannot be read", problem);
}

// Only the numbers: an index over them, if there is one, spares reading the table twice.
bool CatalogueReader::findFeatureRows(FontsById& fonts, std::string& problem)
{
    const Statement statement(prepare("SELECT rowid, font_id FROM feature"));
    int state = SQLITE_ERROR;
    while (statement && (state = sqlite3_step(statement.get())) == SQLITE_ROW) {
        const std::int64_t row = sqlite3_column_int64(statement.get(), 0);
        const auto found = fonts.find(sqlite3_column_int64(statement.get(), 1));
        if (found != fonts.end() && (!found->second.hasRow || row < found->second.row)) {
            found->second.row = row;
            found->second.hasRow = true;
        }
    }
    return state == SQLITE_DONE || fail("the features cannot be read", problem);
}

bool CatalogueReader::readFonts(std::vector<CatalogueFont>& fonts, std::string& problem)
{
    hold();
    FontsById byId;
    if (!readFontRows(byId, problem) || !findFeatureRows(byId, problem)) {
        return false;
    }
    fonts.clear();
    fonts.reserve(byId.size());
    for (auto& [id, font] : byId) {
        fonts.push_back(std::move(font));
    }
    std::sort(fonts.begin(), fonts.end(), [](const CatalogueFont& a, const CatalogueFont& b) {
        return std::make_tuple(!a.hasRow, a.row, a.id) < std::make_tuple(!b.hasRow, b.row, b.id);
    });
    return true;
}

bool CatalogueReader::readFeatures(const std::vector<CatalogueFont>& fonts, std::size_t begin, std::size_t end,
                                   const Visit& visit, std::string& problem)
{
    hold();
    std::size_t next = begin;
    const auto visitWithout = [&](auto isWithout) {
        while (next < end && isWithout(fonts[next])) {
            if (!visit({})) {
                return false;
            }
            ++next;
        }
        return true;
    };
    auto last = end;
    while (last > begin && !fonts[last - 1].hasRow) {
        --last;
    }
    if (last > begin) {
        sqlite3_bind_int64(m_features, 1, fonts[begin].row);
        sqlite3_bind_int64(m_features, 2, fonts[last - 1].row);
        bool good = true;
        int state = SQLITE_ROW;
        while (good && (state = sqlite3_step(m_features)) == SQLITE_ROW) {
            const std::int64_t row = sqlite3_column_int64(m_features, 0);
            good = visitWithout([row](const CatalogueFont& font) { return font.hasRow && font.row < row; });
            if (good && next < last && fonts[next].row == row) {
                const void* blob = sqlite3_column_blob(m_features, 1);
                const int size = blob ? sqlite3_column_bytes(m_features, 1) : 0;
                good = visit({static_cast<const char*>(blob), static_cast<std::size_t>(size)});
                ++next;
            }
        }
        sqlite3_reset(m_features);
        if (!good) {
            return false;
        }
        if (state != SQLITE_DONE) {
            return fail("the features cannot be read", problem);
        }
    }
    return visitWithout([](const CatalogueFont&) { return true; });
}

void CatalogueReader::hold()
{
    if (sqlite3_get_autocommit(m_database)) {
        sqlite3_exec(m_database, "BEGIN", nullptr, nullptr, nullptr);
    }
}

void CatalogueReader::release()
{
    sqlite3_exec(m_database, "COMMIT", nullptr, nullptr, nullptr);
}

} // namespace kerval::helpers
