#pragma once

#include <cstddef>
#include <vector>

#include "helpers/shape/InkBits.h"

namespace krv {

// Joins the white stretches of a glyph's rows where those of neighbouring rows touch. The margin of one pixel around
// the ink is white, so what it cannot reach is enclosed.
class WhiteRegions
{
public:
    explicit WhiteRegions(int columns);

    // From the upper margin to the lower one; what is not set is white.
    void addRow(const InkBits& dark);
    // Sizes in pixels of what is enclosed.
    std::vector<int> enclosed();

private:
    struct Stretch
    {
        int begin;
        int end;
        int region;
    };

    void add(int begin, int end);
    int root(int region);

    int m_columns;
    std::vector<int> m_parents;
    std::vector<int> m_sizes;
    std::vector<Stretch> m_above;
    std::vector<Stretch> m_current;
    std::size_t m_next = 0;
    InkBits m_last;
};

} // namespace krv
