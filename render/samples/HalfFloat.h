// Floats of 16 bits, kept as their bits: sign, five bits of exponent, ten of mantissa. A NaN keeps its sign and the upper
// bits of what it carries.
#pragma once

#include "effect/share/StandardParts.h"

#include <cmath>
#include <cstdint>

namespace kovalune::samples {

/// Exact: every such value is one of 32 bits.
inline float floatOfHalf(uint16_t half) {
    const uint32_t sign = (half & 0x8000U) << 16;
    const uint32_t magnitude = half & 0x7fffU;
    // The same digits with the exponent that a float reads in their place; without branches, so that rows go quickly.
    const float finite = bitCast<float>(magnitude << 13) * 0x1p112F;
    const uint32_t infinite = 0x7f800000U | (magnitude << 13); // and NaN
    const uint32_t bits = magnitude >= 0x7c00 ? infinite : bitCast<uint32_t>(finite);
    return bitCast<float>(sign | bits);
}

/// To the nearest, to the even one of two; from 65520 on infinity.
inline uint16_t halfOfFloat(float value) {
    const uint32_t bits = bitCast<uint32_t>(value);
    const uint32_t sign = (bits >> 16) & 0x8000U;
    const uint32_t magnitude = bits & 0x7fffffffU;
    constexpr uint32_t kInfinity = 0x7f800000;
    constexpr uint32_t kRebias = (127 - 15) << 23;
    uint32_t half = 0;
    if (magnitude > kInfinity) {
        half = 0x7c00U | ((magnitude >> 13) & 0x3ffU);
        half += half == 0x7c00U ? 1 : 0; // it would be infinity
    } else if (magnitude >= bitCast<uint32_t>(65520.0F)) {
        half = 0x7c00;
    } else if (magnitude >= bitCast<uint32_t>(0x1p-14F)) {
        half = (magnitude - kRebias + 0xfffU + ((magnitude >> 13) & 1U)) >> 13;
    } else {
        // Beside a half, floats are as far apart as the smallest values of 16 bits: the sum is rounded to one of them.
        half = bitCast<uint32_t>(bitCast<float>(magnitude) + 0.5F) - bitCast<uint32_t>(0.5F);
    }
    return static_cast<uint16_t>(sign | half);
}

/// As halfOfFloat, rounded once: a float on the way would make a middle of what only lies near one.
inline uint16_t halfOfDouble(double value) {
    const auto nearest = static_cast<float>(value);
    const auto back = static_cast<double>(nearest);
    if (std::isnan(value) || back == value) {
        return halfOfFloat(nearest);
    }
    // The float towards zero, made odd: it has digits enough to lie on the same side of every middle.
    const uint32_t bits = bitCast<uint32_t>(nearest) - (std::abs(back) > std::abs(value) ? 1 : 0);
    return halfOfFloat(bitCast<float>(bits | 1U));
}

} // namespace kovalune::samples
