#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace krv {

// Neighbouring pixels of a row that are looked at together: each answer has one bit for each pixel, the first in the
// lowest. Every x86-64 does that with instructions of its own; elsewhere it is worked out in a register.
#ifdef __SSE2__

class PixelBlock
{
public:
    static constexpr std::size_t kCount = 16;

    explicit PixelBlock(const std::uint8_t* row)
        : m_pixels(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row)))
    {
    }
    std::uint64_t atLeast(int darkness) const // at most 128
    {
        const __m128i darker = _mm_max_epu8(m_pixels, _mm_set1_epi8(static_cast<char>(darkness)));
        return static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(darker, m_pixels)));
    }
    std::uint64_t differing(const PixelBlock& other) const
    {
        return static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(m_pixels, other.m_pixels))) ^ 0xFFFF;
    }
    int sumOfFirst(int count) const // of all when there are more
    {
        alignas(16) static constexpr std::uint8_t places[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
        const __m128i behind = _mm_set1_epi8(static_cast<char>(count < 16 ? count : 16));
        const __m128i wanted = _mm_cmplt_epi8(_mm_load_si128(reinterpret_cast<const __m128i*>(places)), behind);
        const __m128i sums = _mm_sad_epu8(_mm_and_si128(m_pixels, wanted), _mm_setzero_si128());
        return _mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4);
    }

private:
    __m128i m_pixels;
};

#else

class PixelBlock
{
public:
    static constexpr std::size_t kCount = 8;

    explicit PixelBlock(const std::uint8_t* row) { std::memcpy(&m_pixels, row, sizeof m_pixels); }

    std::uint64_t atLeast(int darkness) const { return carrying(m_pixels, 0x80 - darkness); }
    std::uint64_t differing(const PixelBlock& other) const { return carrying(m_pixels ^ other.m_pixels, 0x7F); }
    int sumOfFirst(int count) const
    {
        constexpr std::uint64_t even = 0x00FF00FF00FF00FF;
        const std::uint64_t wanted = m_pixels << (count < 8 ? 64 - 8 * count : 0); // little-endian
        const std::uint64_t sums = (wanted & even) + ((wanted >> 8) & even);
        return static_cast<int>((sums * 0x0001000100010001) >> 48);
    }

private:
    // The bytes whose low bits carry into the high one with so much added, or in which it is set already. The product
    // moves the eight high bits side by side to the top.
    static std::uint64_t carrying(std::uint64_t bytes, int added)
    {
        constexpr std::uint64_t each = 0x0101010101010101;
        const std::uint64_t sum = (bytes & (0x7F * each)) + static_cast<std::uint64_t>(added) * each;
        return ((((sum | bytes) & (0x80 * each)) >> 7) * 0x0102040810204080) >> 56;
    }

    std::uint64_t m_pixels = 0;
};

#endif

} // namespace krv
