#pragma once

#include "fontlens/letters/Coverage.h"

#include <array>
#include <cstdint>

namespace kerval::letters {

// What a letter looks like in 92 bytes: the low half waves of its ink over a window that its own mean and spread
// define, and that spread. Mean and spread hardly change with blur, noise and the loss of a hairline, where the box of
// the ink would.
struct ShapeDescriptor
{
    static constexpr int waves = 80;
    // In the units of the coverage; natural logarithms of the standard deviation of the ink across and down.
    float logWidth = 0;
    float logHeight = 0;
    std::array<std::int8_t, waves> coefficients{};

    // False without ink. `unit` is the length of a pixel; blur of a known width is taken out of the spread.
    static bool of(const Coverage& coverage, double unit, double blur, ShapeDescriptor& result);

    // Sum of squares over the window, about 0.001 for the same design, 0.05 for another one.
    float distance(const ShapeDescriptor& other) const
    {
        std::int32_t sum = 0;
        for (int i = 0; i < waves; ++i) {
            const std::int32_t difference =
                std::int32_t(coefficients[std::size_t(i)]) - std::int32_t(other.coefficients[std::size_t(i)]);
            sum += difference * difference;
        }
        return float(sum) / (quantum * quantum);
    }

private:
    static constexpr float quantum = 256;
};

} // namespace kerval::letters
