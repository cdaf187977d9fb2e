#include "qtService/database/FontDatabaseStatements.h"

namespace fontdatabase {

namespace {

QStringList toList(const char* const* begin, const char* const* end)
{
    QStringList list;
    for (auto name = begin; name != end; ++name)
        list.append(QLatin1String(*name));
    return list;
}

// Plain numbers, and the flags that nothing writes. Every other column holds text.
bool isInteger(FontDatabase::FontTableColumn column)
{
    using Db = FontDatabase;
    switch (column) {
    case Db::style_field:
    case Db::serif_style:
        return false; // the digits of a number
    case Db::mono:
    case Db::smallcaps:
    case Db::ligature:
    case Db::serif:
    case Db::rating:
    case Db::filter_bits:
        return true;
    default:
        return plainFontColumns().contains(column);
    }
}

} // namespace

QStringList fontColumnNames()
{
    static const char* const names[] = {"id",
                                        "file_name",
                                        "original_file_name",
                                        "active",
                                        "face_name",
                                        "style",
                                        "menu_family_name",
                                        "menu_style_name",
                                        "full_name",
                                        "ps_name",
                                        "sfnt_ps_name",
                                        "bold",
                                        "italic",
                                        "deleted",
                                        "mono",
                                        "smallcaps",
                                        "ligature",
                                        "serif",
                                        "version",
                                        "vendor",
                                        "vendor_url",
                                        "designer",
                                        "designer_url",
                                        "description",
                                        "trademark",
                                        "other_info",
                                        "format",
                                        "foundry",
                                        "added",
                                        "used",
                                        "downloaded",
                                        "rating",
                                        "license",
                                        "license_url",
                                        "format_details",
                                        "embedding_rights",
                                        "comments",
                                        "other_info2",
                                        "style_field",
                                        "serif_style",
                                        "hwi",
                                        "hhe",
                                        "hwe",
                                        "supported_subsets",
                                        "italic_angle",
                                        "specific_width",
                                        "specific_height",
                                        "filehash",
                                        "notes",
                                        "tags",
                                        "latin_metrics_correction",
                                        "full_metrics_correction",
                                        "sc_all",
                                        "sc_body",
                                        "sc_head",
                                        "face_index",
                                        "activated",
                                        "deactivated",
                                        "last_seen",
                                        "filter_bits",
                                        "online_id",
                                        "online_source",
                                        "is_purchased"};
    return toList(std::begin(names), std::end(names));
}

QStringList featureColumnNames()
{
    static const char* const names[] = {"font_id", "character", "featuredata"};
    return toList(std::begin(names), std::end(names));
}

QSet<FontDatabase::FontTableColumn> plainFontColumns()
{
    using Db = FontDatabase;
    return {Db::id,         Db::active,       Db::bold,           Db::italic,
            Db::deleted,    Db::style_field,  Db::serif_style,    Db::hwi,
            Db::hhe,        Db::hwe,          Db::sc_all,         Db::sc_body,
            Db::sc_head,    Db::italic_angle, Db::specific_width, Db::specific_height,
            Db::face_index, Db::online_id,    Db::is_purchased};
}

QStringList creationStatements(const QString& driver)
{
    if (driver != QLatin1String("QSQLITE"))
        return {};
    QStringList columns;
    const QStringList names = fontColumnNames();
    for (int i = 0; i < names.size(); ++i) {
        const auto column = FontDatabase::FontTableColumn(i);
        // Ids are never given twice, so nothing that still knows the id of a removed font meets another font.
        columns.append(names.at(i) + (column == FontDatabase::id ? QStringLiteral(" INTEGER PRIMARY KEY AUTOINCREMENT")
                                      : isInteger(column)        ? QStringLiteral(" INTEGER")
                                                                 : QStringLiteral(" TEXT")));
    }
    return {QStringLiteral("CREATE TABLE font (%1)").arg(columns.join(QLatin1String(", "))),
            QStringLiteral("CREATE TABLE feature (font_id INTEGER NOT NULL, character INTEGER, featuredata BLOB)"),
            QStringLiteral("CREATE INDEX index_feature_font_id ON feature (font_id)"),
            // A font takes its features along, whoever removes it.
            QStringLiteral("CREATE TRIGGER on_delete_font AFTER DELETE ON font "
                           "BEGIN DELETE FROM feature WHERE font_id = old.id; END")};
}

} // namespace fontdatabase
