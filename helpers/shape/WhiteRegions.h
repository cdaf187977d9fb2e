#pragma once

#include <array>
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
    WhiteRegions(const WhiteRegions&) = delete;
    WhiteRegions& operator=(const WhiteRegions&) = delete;

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

    // At most every other pixel of a row begins one, and the margin.
    struct Row
    {
        void add(const Stretch& stretch) { stretches[count++] = stretch; }

        std::array<Stretch, InkGrid::kMaximalSide / 2 + 2> stretches;
        std::size_t count = 0;
    };

    void add(int begin, int end);
    int root(int region);

    int m_columns;
    std::vector<int> m_parents;
    std::vector<int> m_sizes;
    std::array<Row, 2> m_rows;
    Row* m_above = &m_rows[0];
    Row* m_current = &m_rows[1];
    std::size_t m_next = 0;
    InkBits m_last;
};

} // namespace krv
