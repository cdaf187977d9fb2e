#pragma once

#include <array>
#include <cstddef>

#include "helpers/shape/InkGrid.h"

namespace krv {

// Cosines of one half wave over the box of the ink, at places one pixel apart: 1 where the box begins, and before it,
// -1 where it ends. Behind the last place all is 0, up to a full block.
class HalfWaves
{
public:
    static constexpr std::size_t kBlock = 8;

    // `first` is the first place, measured from the box's begin; at most the longest side of a grid and one more.
    HalfWaves(int count, float first, float length);

    float operator[](std::size_t i) const { return m_cosines[i]; }

private:
    std::array<float, InkGrid::kMaximalSide + kBlock> m_cosines;
};

} // namespace krv
