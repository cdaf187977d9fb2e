#include "helpers/shape/GlyphInk.h"

#include <algorithm>
#include <cmath>

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
    if (m_columns > 0) {
        findBox();
    }
}

void GlyphInk::crop(const GlyphCoverage& coverage)
{
    int first = coverage.width;
    int last = -1;
    int top = -1;
    int bottom = -1;
    for (int y = 0; y < coverage.height; ++y) {
        const std::uint8_t* line = coverage.pixels + static_cast<std::ptrdiff_t>(y) * coverage.stride;
        int left = 0;
        while (left < coverage.width && line[left] < kFaintest) {
            ++left;
        }
        if (left == coverage.width) {
            continue;
        }
        int right = coverage.width - 1;
        while (line[right] < kFaintest) {
            --right;
        }
        first = std::min(first, left);
        last = std::max(last, right);
        top = top < 0 ? y : top;
        bottom = y;
    }
    if (last < 0) {
        return;
    }
    const int width = last - first + 1;
    const int height = bottom - top + 1;
    const int step = (std::max(width, height) + kMaximalSide - 1) / kMaximalSide;
    m_scale = static_cast<float>(step);
    m_columns = (width + step - 1) / step;
    m_rows = (height + step - 1) / step;
    m_stride = static_cast<std::size_t>(m_columns) + 2;
    m_ink.assign(m_stride * (static_cast<std::size_t>(m_rows) + 2), 0.0F);
    const float unit = 1.0F / (255.0F * step * step);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* line = coverage.pixels + static_cast<std::ptrdiff_t>(y + top) * coverage.stride + first;
        float* target = &m_ink[static_cast<std::size_t>(y / step + 1) * m_stride + 1];
        if (step == 1) {
            for (int x = 0; x < width; ++x) {
                target[x] = line[x] * unit;
            }
        } else {
            for (int x = 0; x < width; ++x) {
                target[x / step] += line[x] * unit;
            }
        }
    }
    m_coverageLeft = static_cast<float>(first);
    m_coverageTop = static_cast<float>(top);
}

// A border row that is grey at its darkest is only partly inside the glyph: its share tells where the outline ends.
void GlyphInk::findBox()
{
    float leftShare = 0;
    float rightShare = 0;
    for (int y = 0; y < m_rows; ++y) {
        leftShare = std::max(leftShare, row(y)[0]);
        rightShare = std::max(rightShare, row(y)[m_columns - 1]);
    }
    const float topShare = *std::max_element(row(0), row(0) + m_columns);
    const float bottomShare = *std::max_element(row(m_rows - 1), row(m_rows - 1) + m_columns);
    m_left = 1 - std::min(leftShare, 1.0F);
    m_top = 1 - std::min(topShare, 1.0F);
    m_width = static_cast<float>(m_columns) - m_left - (1 - std::min(rightShare, 1.0F));
    m_height = static_cast<float>(m_rows) - m_top - (1 - std::min(bottomShare, 1.0F));
    m_width = std::max(m_width, 0.5F);
    m_height = std::max(m_height, 0.5F);
    m_empty = false;
}

} // namespace krv
