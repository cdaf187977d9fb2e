#include "helpers/common/ByteScrambling.h"

#include "helpers/common/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>

namespace kerval::helpers {

namespace {

constexpr int shiftAt(std::size_t index)
{
    const std::int32_t i = static_cast<std::int32_t>(index);
    const std::int32_t p = (i % 14 - 12) * (i % 2 - 2);
    // Multiplied unsigned, so that the product wraps as 32-bit arithmetic does instead of being undefined.
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(p) * static_cast<std::uint32_t>(i));
    return 15 - product % 30;
}

// As long as the product does not wrap, the shifts come again after the least common multiple of 14 and 30.
constexpr std::size_t period = 210;
constexpr std::size_t firstThatMayWrap = (std::size_t{1} << 31) / 24 / period * period;

constexpr std::array<std::int8_t, period> shiftsOfPeriod()
{
    std::array<std::int8_t, period> shifts{};
    for (std::size_t i = 0; i < period; ++i)
        shifts[i] = static_cast<std::int8_t>(shiftAt(i));
    return shifts;
}

template <typename Combine>
void shiftAll(std::string& bytes, Combine combine)
{
    static constexpr auto shifts = shiftsOfPeriod();
    std::size_t i = 0;
    while (i < std::min(bytes.size(), firstThatMayWrap)) {
        const std::size_t count = std::min(bytes.size() - i, period);
        for (std::size_t k = 0; k < count; ++k)
            bytes[i + k] = static_cast<char>(combine(static_cast<unsigned char>(bytes[i + k]), shifts[k]));
        i += count;
    }
    for (; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(combine(static_cast<unsigned char>(bytes[i]), shiftAt(i)));
}

} // namespace

void scramble(std::string& bytes)
{
    shiftAll(bytes, std::minus<int>());
}

void unscramble(std::string& bytes)
{
    shiftAll(bytes, std::plus<int>());
}

std::string seal(std::string_view bytes)
{
    std::string scrambled(bytes);
    scramble(scrambled);
    return toBase64(scrambled);
}

std::optional<std::string> unseal(std::string_view text)
{
    std::optional<std::string> bytes = fromBase64(text);
    if (bytes)
        unscramble(*bytes);
    return bytes;
}

} // namespace kerval::helpers
