#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "helpers/shape/InkBits.h"

namespace krv {

// Joins the white stretches of a glyph's rows where those of neighbouring rows touch. What is left of a row's first ink
// and right of its last reaches the margin, as do the rows above and below the glyph: only the stretches between can be
// enclosed, and few rows have any.
class WhiteRegions
{
public:
    explicit WhiteRegions(int columns);
    WhiteRegions(const WhiteRegions&) = delete;
    WhiteRegions& operator=(const WhiteRegions&) = delete;

    // From the first row to the last; what is not set is white.
    void addRow(const InkBits& dark);
    // Sizes in pixels of what is enclosed, once all rows are added.
    std::vector<int> enclosed();

private:
    using Region = std::uint16_t; // and its size: nothing enclosed has more pixels than fit

    struct Stretch
    {
        int begin;
        int end;
        Region region;
    };

    struct Row
    {
        bool isOpenAt(const Stretch& stretch) const { return stretch.begin < firstInk || stretch.end > behindInk; }

        std::array<Stretch, InkGrid::kMaximalSide / 2> stretches;
        std::size_t count = 0;
        int firstInk = 0; // right of all, and the end left of all, without any
        int behindInk = 0;
    };

    static constexpr Region kOutside = 0;

    void clear(Row& row) const;
    void add(int begin, int end);
    void openAboveWhere(const Row& row);
    Region joined(Region one, Region other);
    Region root(Region region);

    int m_columns;
    std::size_t m_regions = 1;
    // One for each stretch there can be.
    std::array<Region, InkGrid::kMaximalSide / 2 * InkGrid::kMaximalSide> m_parents;
    std::array<Region, InkGrid::kMaximalSide / 2 * InkGrid::kMaximalSide> m_sizes;
    std::array<Row, 2> m_rows;
    Row* m_above = &m_rows[0];
    Row* m_current = &m_rows[1];
    std::size_t m_next = 0;
    InkBits m_last;
};

} // namespace krv
