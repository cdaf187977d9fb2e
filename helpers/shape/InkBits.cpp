#include "helpers/shape/InkBits.h"

#include <algorithm>

#include "helpers/shape/PixelBlock.h"

namespace krv {

bool InkBits::operator==(const InkBits& other) const
{
    std::uint64_t different = m_used ^ other.m_used;
    for (std::size_t word = 0; word < m_used; ++word) {
        different |= m_words[word] ^ other.m_words[word];
    }
    return different == 0;
}

void InkBits::set(const std::uint8_t* row, int length, int darkness, InkBits& bits, int moreDarkness,
                  InkBits& fewerBits)
{
    const auto count = static_cast<std::size_t>(length);
    const std::size_t words = count / kBits + 1;
    bits.m_used = words;
    fewerBits.m_used = words;
    for (std::size_t word = 0; word < words; ++word) {
        std::uint64_t dark = 0;
        std::uint64_t darker = 0;
        const std::size_t end = std::min(count, (word + 1) * kBits);
        for (std::size_t x = word * kBits; x < end; x += PixelBlock::kCount) {
            const PixelBlock pixels(row + x);
            dark |= pixels.atLeast(darkness) << (x % kBits);
            darker |= pixels.atLeast(moreDarkness) << (x % kBits);
        }
        bits.m_words[word] = dark;
        fewerBits.m_words[word] = darker;
    }
}

} // namespace krv
