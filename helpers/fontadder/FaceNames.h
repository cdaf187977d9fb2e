#pragma once

#include <string>

namespace kerval::adder {

class FontFace;
struct FaceStyle;

// The texts of a face under the names of the catalogue, UTF-8. Family and style are the typographic names; the menu
// names are the older ones that applications group four linked styles by. Family, style, menu names, full and
// PostScript name are never empty: what the font does not say is made from what it says, in the last resort from the
// file's name.
struct FaceNames
{
    std::string family;
    std::string style;
    std::string menuFamily;
    std::string menuStyle;
    std::string fullName;
    std::string postScriptName;
    std::string sfntPostScriptName;
    std::string version;
    std::string copyright;
    std::string trademark;
    std::string manufacturer;
    std::string designer;
    std::string description;
    std::string vendorUrl;
    std::string designerUrl;
    std::string license;
    std::string licenseUrl;

    static FaceNames of(const FontFace& font, const FaceStyle& style, const std::string& fileName);
};

} // namespace kerval::adder
