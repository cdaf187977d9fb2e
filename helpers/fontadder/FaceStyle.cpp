#include "helpers/fontadder/FaceStyle.h"

#include "helpers/common/FeatureBlob.h"
#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/LayoutFeatures.h"
#include "helpers/fontadder/Type1Companions.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include FT_ADVANCES_H
#include FT_TRUETYPE_TABLES_H

namespace kerval::adder {

namespace {

constexpr int lettersThatTell = 10;

enum class Pitch
{
    Unknown,
    Fixed,
    Variable,
};

Pitch measuredPitch(FT_Face face)
{
    if (!face->charmap || face->charmap->encoding != FT_ENCODING_UNICODE)
        return Pitch::Unknown;
    int letters = 0;
    FT_Fixed common = 0;
    for (const char c : helpers::featureAlphabet) {
        const FT_UInt glyph = FT_Get_Char_Index(face, static_cast<FT_ULong>(c));
        FT_Fixed advance = 0;
        if (glyph == 0 || FT_Get_Advance(face, glyph, FT_LOAD_NO_SCALE, &advance) != 0 || advance == 0)
            continue;
        if (letters++ == 0)
            common = advance;
        else if (advance != common)
            return Pitch::Variable;
    }
    return letters >= lettersThatTell ? Pitch::Fixed : Pitch::Unknown;
}

bool isFixedByPanose(const TT_OS2& os2)
{
    // The place of the proportion depends on the kind of face: Latin text, Latin hand written, Latin symbol.
    const FT_Byte* panose = os2.panose;
    return (panose[0] == 2 && panose[3] == 9) || ((panose[0] == 3 || panose[0] == 5) && panose[3] == 3);
}

bool hasOnePitch(FT_Face face, const TT_OS2* os2)
{
    const Pitch pitch = measuredPitch(face);
    if (pitch != Pitch::Unknown)
        return pitch == Pitch::Fixed;
    return FT_IS_FIXED_WIDTH(face) || (os2 && isFixedByPanose(*os2));
}

bool saysSmallCaps(const char* name)
{
    std::string folded;
    for (; name && *name; ++name)
        if (std::isalpha(static_cast<unsigned char>(*name)))
            folded += static_cast<char>(std::tolower(static_cast<unsigned char>(*name)));
    return folded.find("smallcap") != std::string::npos;
}

bool hasLigatureCharacters(FT_Face face)
{
    return FT_Get_Char_Index(face, 0xfb01) != 0 && FT_Get_Char_Index(face, 0xfb02) != 0;
}

} // namespace

FaceStyle FaceStyle::of(const FontFace& font)
{
    const FT_Face face = font.face();
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const LayoutFeatures features(face);

    FaceStyle style;
    style.isBold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0;
    style.isItalic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    style.isMonospaced = hasOnePitch(face, os2);
    style.isSmallCaps =
        features.hasSmallCapitals() || saysSmallCaps(face->family_name) || saysSmallCaps(face->style_name);
    style.hasLigatures = features.hasLigatures();

    if (font.kind() == OutlineKind::Type1) {
        PfmNames pfm;
        if (pfm.read(font.companions().pfm)) {
            style.isBold = style.isBold || pfm.isBold;
            style.isItalic = style.isItalic || pfm.isItalic;
        }
        style.hasLigatures = hasLigatureCharacters(face);
    }
    return style;
}

} // namespace kerval::adder
