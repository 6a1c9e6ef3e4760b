// Conversion of floating-point numbers to integers with one meaning for every value, on every platform.
#pragma once

#include <cstdint>
#include <limits>

namespace kovalune {

/// Truncates toward zero. What does not fit 32 bits, NaN and the infinities included, becomes 0x80000000, as
/// the processors' own conversion has it.
inline int32_t truncToInt32(double value) {
    if (value > -2147483649.0 && value < 2147483648.0) {
        return static_cast<int32_t>(value);
    }
    return std::numeric_limits<int32_t>::min();
}

} // namespace kovalune
