#pragma once

#include "helpers/shape/GlyphFeatures.h"
#include "helpers/shape/InkGrid.h"

namespace krv {

// The ink of one glyph, cropped, and the lengths measured on it. Lengths are in pixels and have sub-pixel accuracy: a
// grey pixel counts for its share, so that a hairline keeps its width at any size.
class GlyphInk
{
public:
    // Larger coverages are averaged down to this, so that the work for one glyph is bounded.
    static constexpr int kMaximalSide = InkGrid::kMaximalSide;

    explicit GlyphInk(const GlyphCoverage& coverage);

    bool isEmpty() const { return m_empty; }

    const InkGrid& grid() const { return m_grid; }

    // The ink's box with fractions, relative to the coverage that was given (in its pixels) and to the grid.
    float boxLeft() const { return m_left; }
    float boxTop() const { return m_top; }
    float boxWidth() const { return m_width; }
    float boxHeight() const { return m_height; }
    float coverageLeft() const { return m_coverageLeft; }
    float coverageTop() const { return m_coverageTop; }
    float scale() const { return m_scale; } // coverage pixels for each pixel of the grid

private:
    void crop(const GlyphCoverage& coverage);
    void findBox();

    InkGrid m_grid;
    float m_left = 0;
    float m_top = 0;
    float m_width = 0;
    float m_height = 0;
    float m_coverageLeft = 0;
    float m_coverageTop = 0;
    float m_scale = 1;
    bool m_empty = true;
};

} // namespace krv
