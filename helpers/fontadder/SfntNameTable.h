#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::adder {

// The "name" table of a face, read from its bytes: the font library would copy every record, and a crafted table can
// name the same 64 KiB thousands of times. Records that point outside the table are left out.
class SfntNameTable
{
public:
    enum NameId
    {
        Copyright = 0,
        Family = 1,
        Subfamily = 2,
        FullName = 4,
        Version = 5,
        PostScriptName = 6,
        Trademark = 7,
        Manufacturer = 8,
        Designer = 9,
        Description = 10,
        VendorUrl = 11,
        DesignerUrl = 12,
        License = 13,
        LicenseUrl = 14,
        TypographicFamily = 16,
        TypographicSubfamily = 17,
    };

    // A face without the table, or with a broken one, has no names.
    explicit SfntNameTable(FT_Face face);

    // The record that suits best: American English, any English, no language, any other; among these the platforms
    // Microsoft, Unicode, Macintosh; among these the first that is not blank.
    std::string text(NameId id) const;

private:
    struct Record
    {
        int platform;
        int encoding;
        int language;
        int id;
        std::string_view bytes;
    };

    void read();
    std::string_view languageTag(int language) const;
    int rank(const Record& record) const;

    std::string m_table;
    std::vector<Record> m_records;
    std::vector<std::string_view> m_languageTags;
};

} // namespace kerval::adder
