#include "helpers/shape/GlyphInk.h"

#include <algorithm>
#include <vector>

namespace krv {

namespace {

// Fainter than this is the haze of antialiasing and compression, not ink.
constexpr int kFaintest = 24;

} // namespace

GlyphInk::GlyphInk(const GlyphCoverage& coverage)
{
    if (!coverage.pixels || coverage.width <= 0 || coverage.height <= 0) {
        return;
    }
    crop(coverage);
    if (m_grid.columns() > 0) {
        findBox();
    }
}

void GlyphInk::crop(const GlyphCoverage& coverage)
{
    const auto line = [&coverage](int y) { return coverage.pixels + static_cast<std::ptrdiff_t>(y) * coverage.stride; };
    const auto isInk = [](std::uint8_t pixel) { return pixel >= kFaintest; };
    const auto hasInk = [&](int y) { return std::any_of(line(y), line(y) + coverage.width, isInk); };
    int top = 0;
    while (top < coverage.height && !hasInk(top)) {
        ++top;
    }
    if (top == coverage.height) {
        return;
    }
    int bottom = coverage.height - 1;
    while (!hasInk(bottom)) {
        --bottom;
    }
    // Only what is left of the first ink and right of the last so far can still move them.
    int first = coverage.width;
    int behind = 0;
    for (int y = top; y <= bottom; ++y) {
        const std::uint8_t* pixels = line(y);
        first = static_cast<int>(std::find_if(pixels, pixels + first, isInk) - pixels);
        for (int x = coverage.width; x > behind; --x) {
            behind = isInk(pixels[x - 1]) ? x : behind;
        }
    }
    const int width = behind - first;
    const int height = bottom - top + 1;
    const int step = (std::max(width, height) + kMaximalSide - 1) / kMaximalSide;
    m_scale = static_cast<float>(step);
    m_coverageLeft = static_cast<float>(first);
    m_coverageTop = static_cast<float>(top);
    m_grid.reset((width + step - 1) / step, (height + step - 1) / step);
    if (step == 1) {
        for (int y = 0; y < height; ++y) {
            std::copy_n(line(y + top) + first, width, m_grid.row(y));
        }
        return;
    }
    std::vector<std::uint64_t> sums;
    for (int y = 0; y < m_grid.rows(); ++y) {
        sums.assign(static_cast<std::size_t>(m_grid.columns()), 0);
        for (int inner = y * step; inner < std::min((y + 1) * step, height); ++inner) {
            const std::uint8_t* pixels = line(inner + top) + first;
            for (int x = 0; x < width; ++x) {
                sums[static_cast<std::size_t>(x / step)] += pixels[x];
            }
        }
        const auto area = static_cast<std::uint64_t>(step) * static_cast<std::uint64_t>(step);
        std::transform(sums.begin(), sums.end(), m_grid.row(y),
                       [area](std::uint64_t sum) { return static_cast<std::uint8_t>((sum + area / 2) / area); });
    }
}

// A border row that is grey at its darkest is only partly inside the glyph: its share tells where the outline ends.
void GlyphInk::findBox()
{
    std::uint8_t left = 0;
    std::uint8_t right = 0;
    const int columns = m_grid.columns();
    const int rows = m_grid.rows();
    for (int y = 0; y < rows; ++y) {
        left = std::max(left, m_grid.row(y)[0]);
        right = std::max(right, m_grid.row(y)[columns - 1]);
    }
    std::uint8_t top = 0;
    std::uint8_t bottom = 0;
    for (int x = 0; x < columns; ++x) {
        top = std::max(top, m_grid.row(0)[x]);
        bottom = std::max(bottom, m_grid.row(rows - 1)[x]);
    }
    m_left = 1 - left * InkGrid::kUnit;
    m_top = 1 - top * InkGrid::kUnit;
    m_width = static_cast<float>(columns) - m_left - (1 - right * InkGrid::kUnit);
    m_height = static_cast<float>(rows) - m_top - (1 - bottom * InkGrid::kUnit);
    m_width = std::max(m_width, 0.5F);
    m_height = std::max(m_height, 0.5F);
    m_empty = false;
}

} // namespace krv
