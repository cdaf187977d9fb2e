#include "helpers/shape/SmartChoiceScores.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include FT_TRUETYPE_TABLES_H

namespace krv {

namespace {

// 1 in the middle, falling to 0 at `reach` on either side.
float nearness(float value, float middle, float reach)
{
    return std::max(0.0F, 1 - std::fabs(value - middle) / reach);
}

bool hasTable(FT_Face face, FT_ULong tag)
{
    FT_ULong length = 0;
    return FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) == 0 && length > 0;
}

// Letters and signs that texts of European languages need beyond the alphabet.
float coverage(FT_Face face)
{
    constexpr FT_ULong wanted[] = {'.',   ',',   '!',   '?',    '(',    '&',    0xC4,   0xD6,  0xDF,  0xE0,
                                   0xE9,  0xE7,  0xF1,  0xF8,   0xE5,   0x105,  0x10D,  0x119, 0x142, 0x151,
                                   0x159, 0x15F, 0x17E, 0x2013, 0x2019, 0x201C, 0x20AC, 0xA3,  0xAB,  0x2026};
    const auto covered = std::count_if(std::begin(wanted), std::end(wanted),
                                       [face](FT_ULong character) { return FT_Get_Char_Index(face, character) != 0; });
    return static_cast<float>(covered) / static_cast<float>(std::size(wanted));
}

// Even spacing: the white between straight letters is a little less than the white inside them.
float spacing(const FaceShape& shape)
{
    const LetterShape& n = shape.letter('n');
    if (!n.present || n.width <= 0) {
        return 0.5F;
    }
    const float inside = n.width - 2 * n.measures.across.middle;
    const float between = n.advance - n.width;
    return inside > 0 ? nearness(std::log(std::max(between, 0.1F) / inside), std::log(0.62F), 1.0F) : 0;
}

} // namespace

SmartChoiceScores SmartChoiceScores::of(FT_Face face, const FaceShape& shape, const FaceMeasures& measures,
                                        const FaceClass& faceClass)
{
    SmartChoiceScores scores;
    constexpr int fewLetters = 40;
    if (shape.present < fewLetters || faceClass.symbol) {
        return scores;
    }
    const float complete = static_cast<float>(shape.present) / kFeatureLetterCount;
    const float covered = coverage(face);
    const bool sfnt = FT_IS_SFNT(face);
    const float kerned = FT_HAS_KERNING(face) || (sfnt && hasTable(face, FT_MAKE_TAG('G', 'P', 'O', 'S'))) ? 1 : 0;
    // PostScript outlines carry their hints in themselves.
    const bool postScript = !sfnt || hasTable(face, FT_MAKE_TAG('C', 'F', 'F', ' '));
    const float hinted = postScript || hasTable(face, FT_MAKE_TAG('f', 'p', 'g', 'm')) ? 1 : 0;
    const float xHeight = nearness(static_cast<float>(measures.hhe), 700, 220);
    const float upright = measures.italicAngle == 0 ? 1 : 0.35F;
    const float even = spacing(shape);
    const float logWeight = std::log(static_cast<float>(measures.hwe) + 1);
    const float logContrast = std::log(std::max(measures.contrast, 1.0F));

    const float bookWeight = nearness(logWeight, std::log(138.0F), 0.9F);
    const float normalWidth = nearness(static_cast<float>(measures.specificWidth), 1330, 600);
    const float sturdy = nearness(logContrast, std::log(2.0F), 1.5F); // hairlines break up at small sizes
    const float reading =
        (faceClass.text ? 1 : 0.25F) * (faceClass.ownSmallLetters ? 1 : 0.3F) * (faceClass.monospaced ? 0.4F : 1);
    const float body = complete * reading *
                       (0.24F * bookWeight + 0.14F * xHeight + 0.12F * normalWidth + 0.12F * upright + 0.10F * sturdy +
                        0.08F * even + 0.10F * covered + 0.06F * kerned + 0.04F * hinted);

    // A headline has presence by weight, by contrast or by a form of its own.
    const float heavy = nearness(logWeight, std::log(350.0F), 1.1F);
    const float striking = std::clamp(logContrast / std::log(4.0F), 0.0F, 1.0F);
    const float presence = std::max({heavy, 0.8F * striking, faceClass.text ? 0.0F : 0.75F});
    const float head = complete * (faceClass.monospaced ? 0.5F : 1) *
                       (0.46F * presence + 0.12F * xHeight + 0.12F * kerned + 0.10F * covered + 0.10F * even +
                        0.06F * upright + 0.04F * hinted);
    scores.body = static_cast<int>(std::lround(1000 * body));
    scores.head = static_cast<int>(std::lround(1000 * head));
    scores.all = static_cast<int>(std::lround(750 * body + 250 * head)); // most of what is set is text;
    return scores;
}

} // namespace krv
