#include "helpers/fontadder/FaceStyle.h"

#include "helpers/common/FeatureBlob.h"
#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/LayoutFeatures.h"
#include "helpers/fontadder/Type1Companions.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <set>
#include <string_view>

#include FT_ADVANCES_H
#include FT_TRUETYPE_TABLES_H

namespace kerval::adder {

namespace {

constexpr std::size_t glyphsThatTell = 10;
constexpr std::size_t letterCount = 52; // digits share one width in most faces
constexpr int firstCharacters = 64;

constexpr int boldWeightClass = 700;
constexpr int heaviestWeightClass = 1000;
constexpr FT_UShort macStyleBold = 1;
constexpr FT_UShort macStyleItalic = 2;

enum class Pitch
{
    Unknown,
    Fixed,
    Variable,
};

// Compares the advances of distinct glyphs, because faces of other scripts often give all Latin letters one empty box.
class PitchMeasure
{
public:
    explicit PitchMeasure(FT_Face face)
        : m_face(face)
    {
    }

    void add(FT_UInt glyph)
    {
        FT_Fixed advance = 0;
        if (glyph == 0 || FT_Get_Advance(m_face, glyph, FT_LOAD_NO_SCALE, &advance) != 0 || advance == 0)
            return;
        m_varies = m_varies || (!m_glyphs.empty() && advance != m_advance);
        m_advance = advance;
        m_glyphs.insert(glyph);
    }

    Pitch pitch() const
    {
        if (m_glyphs.size() < glyphsThatTell)
            return Pitch::Unknown;
        return m_varies ? Pitch::Variable : Pitch::Fixed;
    }

private:
    FT_Face m_face;
    std::set<FT_UInt> m_glyphs;
    FT_Fixed m_advance = 0;
    bool m_varies = false;
};

Pitch latinPitch(FT_Face face)
{
    PitchMeasure measure(face);
    if (face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE)
        for (const char c : helpers::featureAlphabet.substr(0, letterCount))
            measure.add(FT_Get_Char_Index(face, static_cast<FT_ULong>(c)));
    return measure.pitch();
}

Pitch pitchOfFirstCharacters(FT_Face face)
{
    PitchMeasure measure(face);
    FT_ULong character = ' ';
    for (int i = 0; i < firstCharacters; ++i) {
        FT_UInt glyph = 0;
        character = FT_Get_Next_Char(face, character, &glyph);
        if (glyph == 0)
            break;
        measure.add(glyph);
    }
    return measure.pitch();
}

bool isFixedByPanose(const TT_OS2& os2)
{
    // The place of the proportion depends on the kind of face: Latin text, Latin hand written, Latin symbol.
    const FT_Byte* panose = os2.panose;
    return (panose[0] == 2 && panose[3] == 9) || ((panose[0] == 3 || panose[0] == 5) && panose[3] == 3);
}

bool hasOnePitch(FT_Face face, const TT_OS2* os2)
{
    const Pitch pitch = latinPitch(face);
    if (pitch != Pitch::Unknown)
        return pitch == Pitch::Fixed;
    const bool claimed = FT_IS_FIXED_WIDTH(face) || (os2 && isFixedByPanose(*os2));
    return claimed && pitchOfFirstCharacters(face) != Pitch::Variable;
}

bool says(const char* name, std::initializer_list<std::string_view> words)
{
    std::string folded;
    for (; name && *name; ++name)
        if (std::isalpha(static_cast<unsigned char>(*name)))
            folded += static_cast<char>(std::tolower(static_cast<unsigned char>(*name)));
    return std::any_of(words.begin(), words.end(),
                       [&folded](std::string_view word) { return folded.find(word) != std::string::npos; });
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
    const auto* head = static_cast<const TT_Header*>(FT_Get_Sfnt_Table(face, FT_SFNT_HEAD));
    style.isBold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0 || (head && (head->Mac_Style & macStyleBold) != 0) ||
                   (os2 && os2->usWeightClass >= boldWeightClass && os2->usWeightClass <= heaviestWeightClass);
    style.isItalic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0 ||
                     (head && (head->Mac_Style & macStyleItalic) != 0) || says(face->style_name, {"italic", "oblique"});
    style.isMonospaced = hasOnePitch(face, os2);
    style.isSmallCaps =
        features.hasSmallCapitals() || says(face->family_name, {"smallcap"}) || says(face->style_name, {"smallcap"});
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
