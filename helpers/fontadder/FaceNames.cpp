#include "helpers/fontadder/FaceNames.h"

#include "helpers/fontadder/FaceStyle.h"
#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/NameText.h"
#include "helpers/fontadder/SfntNameTable.h"
#include "helpers/fontadder/Type1Companions.h"

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <string_view>
#include <utility>

#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

namespace kerval::adder {

namespace {

// What a face may say, in bytes: nobody reads more, and every record of the catalogue is held in memory.
constexpr std::size_t longestName = 1024;
constexpr std::size_t longestText = 32768;

std::string firstOf(std::initializer_list<std::string> texts)
{
    for (const std::string& text : texts)
        if (!text.empty())
            return text;
    return {};
}

std::string fromFace(const char* text)
{
    return text ? fromPostScript(text) : std::string();
}

std::string linkedStyle(bool isBold, bool isItalic)
{
    if (isBold)
        return isItalic ? "Bold Italic" : "Bold";
    return isItalic ? "Italic" : "Regular";
}

std::string baseName(const std::string& fileName)
{
    const std::size_t slash = fileName.rfind('/');
    const std::string name = fileName.substr(slash == std::string::npos ? 0 : slash + 1);
    return name.substr(0, name.rfind('.'));
}

// A PostScript name holds printable ASCII without the language's delimiters.
std::string asPostScriptName(const std::string& text)
{
    constexpr std::string_view delimiters = "[](){}<>/%";
    std::string name;
    for (const char c : text)
        name += c > ' ' && c < 0x7f && delimiters.find(c) == std::string_view::npos ? c : '-';
    return name;
}

std::string revision(FT_Face face)
{
    const auto* head = static_cast<const TT_Header*>(FT_Get_Sfnt_Table(face, FT_SFNT_HEAD));
    if (!head)
        return {};
    char text[32];
    std::snprintf(text, sizeof text, "Version %.3f", static_cast<double>(head->Font_Revision) / 65536.0);
    return text;
}

void readSfntNames(FT_Face face, FaceNames& names)
{
    const SfntNameTable table(face);
    names.menuFamily = table.text(SfntNameTable::Family);
    names.menuStyle = table.text(SfntNameTable::Subfamily);
    names.family = firstOf({table.text(SfntNameTable::TypographicFamily), names.menuFamily});
    names.style = firstOf({table.text(SfntNameTable::TypographicSubfamily), names.menuStyle});
    names.fullName = table.text(SfntNameTable::FullName);
    names.sfntPostScriptName = table.text(SfntNameTable::PostScriptName);
    names.version = firstOf({table.text(SfntNameTable::Version), revision(face)});
    names.copyright = table.text(SfntNameTable::Copyright);
    names.trademark = table.text(SfntNameTable::Trademark);
    names.manufacturer = table.text(SfntNameTable::Manufacturer);
    names.designer = table.text(SfntNameTable::Designer);
    names.description = table.text(SfntNameTable::Description);
    names.vendorUrl = table.text(SfntNameTable::VendorUrl);
    names.designerUrl = table.text(SfntNameTable::DesignerUrl);
    names.license = table.text(SfntNameTable::License);
    names.licenseUrl = table.text(SfntNameTable::LicenseUrl);
}

// The family that applications show when there is no Windows metrics file: weights that are not linked name their own.
std::string menuFamilyOf(const std::string& family, const std::string& weight)
{
    for (const std::string_view linked : {"", "Regular", "Roman", "Normal", "Book", "Medium", "Bold"})
        if (weight == linked)
            return family;
    return family + ' ' + weight;
}

void readType1Names(const FontFace& font, const FaceStyle& style, FaceNames& names)
{
    PS_FontInfoRec info{};
    FT_Get_PS_Font_Info(font.face(), &info);
    AfmNames afm;
    afm.read(font.companions().afm);
    PfmNames pfm;
    pfm.read(font.companions().pfm);

    names.family =
        firstOf({fromFace(info.family_name), afm.familyName, fromFace(font.face()->family_name), pfm.menuFamily});
    names.style = fromFace(font.face()->style_name);
    names.fullName = firstOf({fromFace(info.full_name), afm.fullName});
    names.postScriptName = firstOf({afm.fontName, pfm.postScriptName});
    names.version = firstOf({fromFace(info.version), afm.version});
    names.copyright = firstOf({fromFace(info.notice), afm.notice, pfm.copyright});
    names.menuFamily =
        firstOf({pfm.menuFamily, menuFamilyOf(names.family, firstOf({fromFace(info.weight), afm.weight}))});
    names.menuStyle = linkedStyle(style.isBold, style.isItalic);
}

void fillGaps(FT_Face face, const FaceStyle& style, const std::string& fileName, FaceNames& names)
{
    if (const char* postScriptName = FT_Get_Postscript_Name(face))
        names.postScriptName = firstOf({trimmed(fromPostScript(postScriptName)), names.postScriptName});
    names.postScriptName = firstOf({names.postScriptName, names.sfntPostScriptName});

    names.family =
        firstOf({names.family, fromFace(face->family_name), names.postScriptName, baseName(fileName), "Unnamed"});
    names.style = firstOf({names.style, fromFace(face->style_name), linkedStyle(style.isBold, style.isItalic)});
    names.menuFamily = firstOf({names.menuFamily, names.family});
    names.menuStyle = firstOf({names.menuStyle, names.style});
    names.fullName =
        firstOf({names.fullName, names.style == "Regular" ? names.family : names.family + ' ' + names.style});
    names.postScriptName = firstOf({names.postScriptName, asPostScriptName(names.family)});
}

} // namespace

FaceNames FaceNames::of(const FontFace& font, const FaceStyle& style, const std::string& fileName)
{
    FaceNames names;
    if (font.kind() == OutlineKind::Type1)
        readType1Names(font, style, names);
    else
        readSfntNames(font.face(), names);
    fillGaps(font.face(), style, fileName, names);
    for (std::string* name : {&names.family, &names.style, &names.menuFamily, &names.menuStyle, &names.fullName,
                              &names.postScriptName, &names.sfntPostScriptName, &names.version, &names.manufacturer,
                              &names.designer, &names.vendorUrl, &names.designerUrl, &names.licenseUrl})
        *name = clipped(std::move(*name), longestName);
    for (std::string* text : {&names.copyright, &names.trademark, &names.description, &names.license})
        *text = clipped(std::move(*text), longestText);
    return names;
}

} // namespace kerval::adder
