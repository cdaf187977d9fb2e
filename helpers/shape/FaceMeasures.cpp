#include "helpers/shape/FaceMeasures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

namespace krv {

template <typename Length>
float FaceShape::median(const char* characters, Length length) const
{
    std::vector<float> lengths;
    for (const char* character = characters; *character; ++character) {
        const LetterShape& shape = letter(*character);
        if (shape.present) {
            lengths.push_back(length(shape));
        }
    }
    if (lengths.empty()) {
        return 0;
    }
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return *middle;
}

namespace {

constexpr float kDegrees = 57.29578F;

int rounded(float value, int most = 10000)
{
    return std::isfinite(value) ? std::clamp(static_cast<int>(std::lround(value)), 0, most) : 0;
}

// The angle the tables state, positive leaning right; 0 when they say nothing believable.
float statedAngle(FT_Face face)
{
    float angle = 0;
    PS_FontInfoRec info;
    if (const auto* post = static_cast<TT_Postscript*>(FT_Get_Sfnt_Table(face, FT_SFNT_POST))) {
        angle = -static_cast<float>(post->italicAngle) / 65536;
    } else if (FT_Get_PS_Font_Info(face, &info) == 0) {
        angle = -static_cast<float>(info.italic_angle);
    }
    return angle > 0.5F && angle < 60 ? angle : 0;
}

// How wide the letters run against their height: small letters by what they take in the line, capitals by their ink,
// because capitals keep their proportions where a large x-height makes the small ones look wide. The power spreads the
// narrow range in which text faces lie over the bands: a condensed cut is some four fifths of its normal one.
float widthMeasure(const FaceShape& shape, float xHeight)
{
    const float capitals = shape.capitalHeight;
    float advance = shape.median("abdeghnopqu", [](const LetterShape& letter) { return letter.advance; });
    float width = shape.median("ABDEGHNOPRU", [](const LetterShape& letter) { return letter.width; });
    if (advance <= 0 && width <= 0) {
        return 0;
    }
    constexpr float advanceOfWidth = 1.05F; // where either case is missing
    advance = advance > 0 ? advance : width * advanceOfWidth;
    width = width > 0 ? width : advance / advanceOfWidth;
    const float relative = std::sqrt(advance / capitals * width / capitals / std::pow(xHeight / capitals, 0.25F));
    return 1350 * std::pow(relative / 0.894F, 2.5F);
}

} // namespace

const LetterShape& FaceShape::letter(char character) const
{
    return letters[static_cast<std::size_t>(featureLetterIndex(character))];
}

FaceMeasures FaceMeasures::of(FT_Face face, const FaceShape& shape)
{
    FaceMeasures measures;
    if (shape.present == 0) {
        return measures;
    }
    const bool lower = shape.xHeight > 0;
    const float xHeight = lower ? shape.xHeight : 0.7F * shape.capitalHeight;
    const float stem = shape.median(lower ? "lihnmdbpqurt" : "HIELTFNKMR14",
                                    [](const LetterShape& letter) { return letter.measures.across.middle; });
    const float thin =
        shape.median(lower ? "eozacs" : "OEZCGS0", [](const LetterShape& letter) { return letter.measures.down.low; });
    measures.stem = stem / xHeight;
    measures.contrast = thin > 0 ? stem / thin : 1;
    // Strong thin strokes make a face a little darker than its stems say.
    const float detail = thin > 0 ? std::pow(thin / xHeight / 0.11F, 0.1F) : 1;
    measures.hwe = rounded(135 * std::pow(measures.stem / 0.165F * detail, 1.5F));
    const float width =
        shape.median(lower ? "abdeghnopqu" : "ABDEGHNOPRU", [](const LetterShape& letter) { return letter.width; });
    measures.hwi = rounded(1000 * width / xHeight);
    measures.hhe = rounded(1000 * xHeight / shape.capitalHeight);
    measures.specificWidth = rounded(widthMeasure(shape, xHeight));
    measures.specificHeight = rounded(250 * xHeight / shape.pixelsPerEm);
    float angle = statedAngle(face);
    if (angle == 0) {
        const float tangent =
            shape.median("lihIHTEnmdbpqFLNrtuK1", [](const LetterShape& letter) { return letter.measures.slant; });
        angle = std::atan(tangent) * kDegrees;
        angle = angle < 3 ? 0 : angle;
    }
    measures.italicAngle = rounded(angle, 60);
    return measures;
}

} // namespace krv
