#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "helpers/shape/InkGrid.h"

namespace krv {

// One bit for each pixel of a row: those at least as dark as asked for. Stretches of a row are found by it in a few
// steps each instead of one for each pixel.
class InkBits
{
public:
    // Two at once, of which the second asks for more darkness (of at most 128). Behind the row's end all is clear.
    static void set(const std::uint8_t* row, int length, int darkness, InkBits& bits, int moreDarkness,
                    InkBits& fewerBits);
    // The first pixel from this one on that is set or clear; when there is none, at least the row's length.
    int nextSet(int from) const { return next(from, 0); }
    int nextClear(int from) const { return next(from, ~std::uint64_t{0}); }

    bool operator==(const InkBits& other) const; // of rows of one length

private:
    static constexpr std::size_t kBits = 64;

    int next(int from, std::uint64_t flip) const
    {
        std::size_t word = static_cast<std::size_t>(from) / kBits;
        std::uint64_t rest = (m_words[word] ^ flip) >> (static_cast<std::size_t>(from) % kBits);
        if (rest != 0) {
            return from + __builtin_ctzll(rest);
        }
        do {
            if (++word >= m_used) {
                return static_cast<int>(m_used * kBits);
            }
            rest = m_words[word] ^ flip;
        } while (rest == 0);
        return static_cast<int>(word * kBits) + __builtin_ctzll(rest);
    }

    std::array<std::uint64_t, InkGrid::kMaximalSide / kBits + 1> m_words{};
    std::size_t m_used = InkGrid::kMaximalSide / kBits + 1;
};

} // namespace krv
