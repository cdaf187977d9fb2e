#include "helpers/shape/FaceClassifier.h"

#include <algorithm>
#include <cmath>

#include FT_TRUETYPE_TABLES_H

namespace krv {

namespace {

bool hasFixedPitch(const FaceShape& shape)
{
    float least = 1e9F;
    float most = 0;
    for (const LetterShape& letter : shape.letters) {
        if (letter.present) {
            least = std::min(least, letter.advance);
            most = std::max(most, letter.advance);
        }
    }
    return shape.present >= 20 && most > 0 && most - least < 0.02F * most;
}

} // namespace

FaceClass FaceClass::of(FT_Face face, const FaceShape& shape, const FaceMeasures&)
{
    FaceClass result;
    const auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const int kind = os2 ? os2->panose[0] : 0;
    const int serifs = os2 && kind == 2 ? os2->panose[1] : 0;
    result.monospaced = hasFixedPitch(shape);
    result.symbol = shape.present == 0 ? false : kind == 5;
    float feet = 0;
    int seen = 0;
    for (const char letter : {'l', 'h', 'n', 'm', 'i', 'r', 'H', 'I'}) {
        const LetterShape& drawn = shape.letter(letter);
        if (drawn.present) {
            feet += std::log((drawn.measures.footRun + 0.2F) / (drawn.measures.across.middle + 0.2F));
            ++seen;
        }
    }
    result.serif = seen > 0 && !result.symbol && feet / static_cast<float>(seen) > 0.4F;
    result.serifStyle = static_cast<unsigned char>(serifs);
    const auto add = [&result](const char* keyword) {
        result.keywords += result.keywords.empty() ? "" : ", ";
        result.keywords += keyword;
    };
    if (result.symbol) {
        add("Symbol");
    } else {
        if (result.serif) {
            add("Serif");
        }
        if (result.monospaced) {
            add("Monospace");
        }
    }
    return result;
}

} // namespace krv
