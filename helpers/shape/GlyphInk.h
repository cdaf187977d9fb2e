#pragma once

#include <vector>

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

// The ink of one glyph, cropped, as numbers from 0 to 1, and the lengths measured on it. Lengths are in pixels and have
// sub-pixel accuracy: a grey pixel counts for its share, so that a hairline keeps its width at any size.
class GlyphInk
{
public:
    // Larger coverages are averaged down to this, so that the work for one glyph is bounded.
    static constexpr int kMaximalSide = 256;

    explicit GlyphInk(const GlyphCoverage& coverage);

    bool isEmpty() const { return m_empty; }

    // Pixel grid of the cropped ink, with one column and row of zeros on every side.
    int columns() const { return m_columns; }
    int rows() const { return m_rows; }
    const float* row(int y) const
    {
        return &m_ink[static_cast<std::size_t>(y + 1) * m_stride + 1];
    } // y from -1 to rows()

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

    std::vector<float> m_ink;
    std::size_t m_stride = 0;
    int m_columns = 0;
    int m_rows = 0;
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
