#include "helpers/fontadder/FaceInformation.h"

#include "helpers/fontadder/FaceCoverage.h"
#include "helpers/fontadder/FaceNames.h"
#include "helpers/fontadder/FaceStyle.h"
#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/MetricsMeasure.h"
#include "helpers/fontadder/OnlineInformation.h"
#include "helpers/fontadder/VendorNames.h"
#include "helpers/shape/FaceAnalysis.h"

#include <ctime>

#include FT_TRUETYPE_TABLES_H

namespace kerval::adder {

namespace {

const char* formatName(OutlineKind kind)
{
    switch (kind) {
    case OutlineKind::OpenType:
        return "OpenType";
    case OutlineKind::Type1:
        return "Type 1";
    case OutlineKind::TrueType:
        break;
    }
    return "TrueType";
}

std::string flag(bool value)
{
    return value ? "1" : "0";
}

std::string joined(const std::vector<int>& numbers)
{
    std::string text;
    for (const int number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

// Blanks and unprintable bytes pad an id; some fonts hold nothing else.
std::string vendorId(FT_Face face)
{
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    std::string id;
    if (!os2 || os2->version == 0xffff)
        return id;
    for (const FT_Char c : os2->achVendID) {
        if (c < 0x20 || c == 0x7f)
            break;
        id += static_cast<char>(c);
    }
    while (!id.empty() && id.back() == ' ')
        id.pop_back();
    return id;
}

} // namespace

std::vector<std::pair<std::string, std::string>> faceInformation(const FontFace& font, const krv::FaceAnalysis& shape,
                                                                 const std::string& fileName, int faceIndex)
{
    const FT_Face face = font.face();
    const FaceStyle style = FaceStyle::of(font);
    const FaceNames names = FaceNames::of(font, style, fileName);
    const VendorNames vendor =
        VendorNames::of(vendorId(face), names.manufacturer, names.copyright + ' ' + names.trademark);
    const OnlineInformation online = OnlineInformation::besideFile(fileName);
    const std::vector<int> blocks = supportedBlocks(face);
    const MetricsCorrections corrections = MetricsCorrections::of(face, blocks);
    const std::string now = std::to_string(static_cast<long long>(std::time(nullptr)));
    const std::string never = "0";

    return {
        {"file_name", fileName},
        {"original_file_name", fileName},
        {"face_name", names.family},
        {"style", names.style},
        {"menu_family_name", names.menuFamily},
        {"menu_style_name", names.menuStyle},
        {"full_name", names.fullName},
        {"ps_name", names.postScriptName},
        {"sfnt_ps_name", names.sfntPostScriptName},
        {"filehash", font.fileHash()},
        {"bold", flag(style.isBold)},
        {"italic", flag(style.isItalic)},
        {"deleted", flag(false)},
        {"mono", flag(style.isMonospaced)},
        {"smallcaps", flag(style.isSmallCaps)},
        {"ligature", flag(style.hasLigatures)},
        {"version", names.version},
        {"vendor", vendor.vendor},
        {"vendor_url", names.vendorUrl},
        {"designer", names.designer},
        {"designer_url", names.designerUrl},
        {"description", names.description},
        {"trademark", names.trademark},
        {"other_info", names.copyright},
        {"format", formatName(font.kind())},
        {"foundry", vendor.foundry},
        {"added", now},
        {"used", never},
        {"downloaded", std::to_string(online.downloaded)},
        {"license", names.license},
        {"license_url", names.licenseUrl},
        {"other_info2", shape.classification},
        {"style_field", std::to_string(shape.styleField)},
        {"serif_style", std::to_string(shape.serifStyle)},
        {"hwi", std::to_string(shape.hwi)},
        {"hhe", std::to_string(shape.hhe)},
        {"hwe", std::to_string(shape.hwe)},
        {"supported_subsets", joined(blocks)},
        {"italic_angle", std::to_string(shape.italicAngle)},
        {"specific_width", std::to_string(shape.specificWidth)},
        {"specific_height", std::to_string(shape.specificHeight)},
        {"latin_metrics_correction", corrections.latin},
        {"full_metrics_correction", corrections.full},
        {"sc_all", std::to_string(shape.smartChoiceAll)},
        {"sc_body", std::to_string(shape.smartChoiceBody)},
        {"sc_head", std::to_string(shape.smartChoiceHead)},
        {"face_index", std::to_string(faceIndex)},
        {"activated", never},
        {"deactivated", never},
        {"last_seen", now},
        {"online_source", online.source},
        {"online_id", std::to_string(online.id)},
        {"is_purchased", flag(online.isPurchased)},
    };
}

} // namespace kerval::adder
