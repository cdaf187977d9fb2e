#include "bench/storage/PlainRecords.h"

#include <sqlite3.h>

#include <algorithm>

namespace kerval::bench {

std::vector<PlainRecord> readPlainRecords(const std::string& file, const std::vector<std::string>& textColumns,
                                          const std::vector<std::string>& numberColumns)
{
    std::string sql = "SELECT ";
    for (const auto& column : textColumns)
        sql += column + ",";
    for (const auto& column : numberColumns)
        sql += column + ",";
    sql.back() = ' ';
    sql += "FROM font";

    sqlite3* database = nullptr;
    sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr);
    std::vector<PlainRecord> records;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        PlainRecord record;
        record.texts.reserve(textColumns.size());
        record.numbers.reserve(numberColumns.size());
        int field = 0;
        for (size_t i = 0; i < textColumns.size(); ++i, ++field) {
            const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, field));
            record.texts.push_back(QString::fromUtf8(text, sqlite3_column_bytes(statement, field)));
        }
        for (size_t i = 0; i < numberColumns.size(); ++i, ++field)
            record.numbers.push_back(sqlite3_column_int(statement, field));
        records.push_back(std::move(record));
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return records;
}

int countMatches(const std::vector<PlainSearchRecord>& records, const std::vector<QString>& words)
{
    return int(std::count_if(records.begin(), records.end(), [&words](const PlainSearchRecord& r) {
        return std::all_of(words.begin(), words.end(), [&r](const QString& word) {
            return r.designer.contains(word, Qt::CaseInsensitive) || r.styleName.contains(word, Qt::CaseInsensitive) ||
                   r.familyName.contains(word, Qt::CaseInsensitive) ||
                   r.description.contains(word, Qt::CaseInsensitive) ||
                   r.userNote.contains(word, Qt::CaseInsensitive) || r.foundry.contains(word, Qt::CaseInsensitive) ||
                   r.license.contains(word, Qt::CaseInsensitive);
        });
    }));
}

} // namespace kerval::bench
