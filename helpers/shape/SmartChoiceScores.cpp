#include "helpers/shape/SmartChoiceScores.h"

#include <algorithm>
#include <cmath>

namespace krv {

namespace {

// 1 in the middle, falling to 0 at `reach` on either side.
float nearness(float value, float middle, float reach)
{
    return std::max(0.0F, 1 - std::fabs(value - middle) / reach);
}

} // namespace

SmartChoiceScores SmartChoiceScores::of(FT_Face face, const FaceShape& shape, const FaceMeasures& measures,
                                        const FaceClass& faceClass)
{
    SmartChoiceScores scores;
    if (shape.present < 40 || faceClass.symbol) {
        return scores;
    }
    const float complete = static_cast<float>(shape.present) / kFeatureLetterCount;
    const float kerned = FT_HAS_KERNING(face) ? 1.0F : 0.5F;
    const float weight = nearness(static_cast<float>(measures.hwe), 140, 120);
    const float height = nearness(static_cast<float>(measures.hhe), 690, 200);
    const float width = nearness(static_cast<float>(measures.specificWidth), 1250, 700);
    const float upright = measures.italicAngle == 0 ? 1.0F : 0.4F;
    const float body = complete * (0.3F * weight + 0.25F * height + 0.2F * width + 0.15F * upright + 0.1F * kerned);
    const float presence = std::clamp(static_cast<float>(measures.hwe) / 350, 0.2F, 1.0F);
    const float head = complete * (0.5F * presence + 0.2F * height + 0.2F * kerned + 0.1F * upright);
    scores.body = static_cast<int>(std::lround(1000 * body));
    scores.head = static_cast<int>(std::lround(1000 * head));
    scores.all = (scores.body + scores.head) / 2;
    return scores;
}

} // namespace krv
