#pragma once

#include <QtGlobal>

// The columns and item roles of the fonts view model; settings store the numbers.
namespace fonts {

enum Column
{
    NumberColumn = 0,
    ActivityImageColumn = 1,
    PreviewColumn = 2,
    FamilyNameColumn = 3,
    StyleNameColumn = 4,
    PostScriptNameColumn = 5,
    FileNameColumn = 6,
    VersionColumn = 7,
    VendorColumn = 8,
    VendorUrlColumn = 9,
    DesignerColumn = 10,
    DesignerUrlColumn = 11,
    DescriptionColumn = 12,
    TrademarkColumn = 13,
    LicenseColumn = 14,
    LicenseUrlColumn = 15,
    FormatColumn = 16,
    FoundryColumn = 17,
    DateAddedColumn = 18,
    NoteColumn = 19,
    OnlineSourceColumn = 20,
    ClassificationColumn = 21,
    IdColumn = 22,
    ActivityColumn = 23,
    BoldColumn = 24,
    ItalicColumn = 25,
    ItalicAngleColumn = 26,
    HiddenColumn = 27,
    ColumnCount = 28
};

enum Role
{
    FileNameRole = 0x100,
    LatinMetricsCorrectionRole = 0x101,
    FullMetricsCorrectionRole = 0x102,
    FaceIndexRole = 0x103,
    FullFontNameRole = 0x104,
    ValueRole = 0x105, // what sorting compares: never parsed from what is shown
    SupportedSubsetsRole = 0x106,
    PreviewSizeRole = 0x108
};

} // namespace fonts
