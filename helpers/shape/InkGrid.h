#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace krv {

// Pixels of ink, 0 to 255, with a white margin all around that is wide enough for reading a row sixteen pixels at a
// time from eight before its first to one behind its last.
class InkGrid
{
public:
    static constexpr int kMaximalSide = 256;
    static constexpr float kUnit = 1.0F / 255; // of ink for each step of grey

    InkGrid() {} // no pixels, and none cleared
    InkGrid(int columns, int rows) { reset(columns, rows); }

    void reset(int columns, int rows); // all white, no side above the maximum

    int columns() const { return m_columns; }
    int rows() const { return m_rows; }
    const std::uint8_t* row(int y) const { return &m_pixels[place(y)]; } // y from -1 to rows()
    std::uint8_t* row(int y) { return &m_pixels[place(y)]; }

    // The columns as rows, so that whatever is measured along the rows can be measured down the columns as quickly.
    InkGrid transposed() const;

private:
    std::size_t place(int y) const { return static_cast<std::size_t>(y + 1) * m_stride + kBlock; }

    static constexpr std::size_t kBlock = 8; // pixels that are handled together

    std::size_t m_stride = 0;
    int m_columns = 0;
    int m_rows = 0;
    // Room for the largest: asking for memory for each letter would cost more than clearing what is used.
    std::array<std::uint8_t, (kMaximalSide + 2 * kBlock) * (kMaximalSide + 2) + kBlock> m_pixels;
};

} // namespace krv
