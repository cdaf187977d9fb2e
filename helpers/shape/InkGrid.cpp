#include "helpers/shape/InkGrid.h"

#include <cstring>

namespace krv {

namespace {

using Block = std::array<std::uint64_t, 8>; // 8 x 8 pixels

// Swaps ever smaller quarters of the block.
void transpose(Block& block)
{
    for (const std::size_t i : {0, 1, 2, 3}) {
        const std::uint64_t swap = ((block[i] >> 32) ^ block[i + 4]) & 0x00000000FFFFFFFF;
        block[i + 4] ^= swap;
        block[i] ^= swap << 32;
    }
    for (const std::size_t i : {0, 1, 4, 5}) {
        const std::uint64_t swap = ((block[i] >> 16) ^ block[i + 2]) & 0x0000FFFF0000FFFF;
        block[i + 2] ^= swap;
        block[i] ^= swap << 16;
    }
    for (const std::size_t i : {0, 2, 4, 6}) {
        const std::uint64_t swap = ((block[i] >> 8) ^ block[i + 1]) & 0x00FF00FF00FF00FF;
        block[i + 1] ^= swap;
        block[i] ^= swap << 8;
    }
}

std::size_t roundedUp(int count, std::size_t block)
{
    return (static_cast<std::size_t>(count) + block - 1) / block * block;
}

} // namespace

void InkGrid::reset(int columns, int rows)
{
    m_stride = roundedUp(columns, kBlock) + 2 * kBlock;
    m_columns = columns;
    m_rows = rows;
    std::memset(m_pixels.data(), 0, m_stride * (roundedUp(rows, kBlock) + 2) + kBlock);
}

InkGrid InkGrid::transposed() const
{
    InkGrid result(m_rows, m_columns);
    constexpr auto step = static_cast<int>(kBlock);
    for (int y = 0; y < m_rows; y += step) {
        for (int x = 0; x < m_columns; x += step) {
            Block block;
            for (int i = 0; i < step; ++i) {
                std::memcpy(&block[static_cast<std::size_t>(i)], row(y + i) + x, kBlock);
            }
            transpose(block);
            for (int i = 0; i < step; ++i) {
                std::memcpy(result.row(x + i) + y, &block[static_cast<std::size_t>(i)], kBlock);
            }
        }
    }
    return result;
}

} // namespace krv
