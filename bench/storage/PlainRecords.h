#pragma once

#include <QString>

#include <string>
#include <vector>

// What the catalogue is measured against: the same rows read straight into plain structs of QString.
namespace kerval::bench {

struct PlainRecord
{
    std::vector<int> numbers;
    std::vector<QString> texts;
};

// The seven texts a search looks into.
struct PlainSearchRecord
{
    QString designer, styleName, familyName, description, userNote, foundry, license;
};

// Columns as they stand in the table; those with text affinity become texts.
std::vector<PlainRecord> readPlainRecords(const std::string& file, const std::vector<std::string>& textColumns,
                                          const std::vector<std::string>& numberColumns);

int countMatches(const std::vector<PlainSearchRecord>& records, const std::vector<QString>& words);

} // namespace kerval::bench
