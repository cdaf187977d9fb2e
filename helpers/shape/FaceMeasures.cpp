#include "helpers/shape/FaceMeasures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

namespace krv {

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

} // namespace

const LetterShape& FaceShape::letter(char character) const
{
    return letters[static_cast<std::size_t>(featureLetterIndex(character))];
}

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
    measures.hwe = rounded(135 * std::pow(measures.stem / 0.165F, 1.5F));
    const float advance = shape.median(lower ? "abcdeghnopqrsuvxyz" : "ABCDEFGHKLNOPRSTUVXYZ",
                                       [](const LetterShape& letter) { return letter.advance; });
    const float width =
        shape.median(lower ? "abdeghnopqu" : "ABDEGHNOPRU", [](const LetterShape& letter) { return letter.width; });
    measures.hwi = rounded(1000 * width / xHeight);
    measures.hhe = rounded(1000 * xHeight / shape.capitalHeight);
    measures.specificWidth = rounded(1250 * advance / xHeight / (lower ? 1.1F : 1.3F));
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
