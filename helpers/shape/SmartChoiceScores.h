#pragma once

#include "helpers/shape/FaceClassifier.h"
#include "helpers/shape/FaceMeasures.h"

namespace krv {

// How well a face serves all text, text at reading sizes, and headlines: 0 to 1000 each.
struct SmartChoiceScores
{
    int all = 0;
    int body = 0;
    int head = 0;

    static SmartChoiceScores of(FT_Face face, const FaceShape& shape, const FaceMeasures& measures,
                                const FaceClass& faceClass);
};

} // namespace krv
