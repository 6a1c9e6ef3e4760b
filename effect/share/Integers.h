// Integers with one meaning for every value, on every platform: conversions that truncate, and signed 32-bit arithmetic that
// wraps around instead of overflowing, for values that a host may hand out at will.
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

inline int32_t wrappingAdd(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

inline int32_t wrappingSub(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

inline int32_t wrappingMul(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

/// The low 16 bits, as 16-bit rectangles hold them.
inline int16_t low16(int32_t value) {
    return static_cast<int16_t>(static_cast<uint16_t>(static_cast<uint32_t>(value)));
}

/// The most negative number is its own absolute value.
inline int32_t wrappingAbs(int32_t a) {
    return a < 0 ? wrappingSub(0, a) : a;
}

} // namespace kovalune
