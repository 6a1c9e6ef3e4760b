// The weights of every blur: a one-sided Gaussian table in 15-bit fixed point whose symmetric sum is exactly
// 32768. A kernel longer than 300 taps is a core of 300 taps and a constant tail, so that a pass never
// multiplies more than 599 pixels for one, however large the blur; the tail is a box whose sum runs along.
#pragma once

#include "effect/share/AEUtil/SharedArray.h"

#include <cstdint>

namespace kovalune {

/// Entries of the longest table.
inline constexpr int32_t kMaxTaps = 300;

/// Fixed-point 1.0 of weights.
inline constexpr int32_t kWeightBits = 15;
inline constexpr int32_t kWeightOne = 1 << kWeightBits;

/// Copies share the table. For a kernel made by `makeGaussKernel` with a length of 2 and more,
/// `(2 * length - 1) * tail + 2 * sum(taps) - taps[0]` is exactly 32768.
struct GaussKernel {
    AEUtil::SharedArray table;
    int32_t tapCount = 0;    ///< entries of the table: the length, or 300 for a longer kernel
    int32_t length = 0;      ///< half-length n: the kernel covers distances 0 to n - 1, so 2n - 1 pixels
    uint16_t tail = 0;       ///< constant weight of every pixel of the kernel, on top of its tap
    uint16_t tailWeight = 0; ///< share of the whole kernel that the tail holds: (2n - 1) * tail

    /// `taps()[k]` weighs the two pixels at distance k; null in a default kernel.
    const uint16_t* taps() const { return table.address(); }
};

/// The kernel of half-length `n` (at least 1; less counts as 1) and `variance` (pixels squared, above 0). A
/// kernel of length 1 has its one tap at 32768. Throws std::bad_alloc.
[[nodiscard]] GaussKernel makeGaussKernel(int32_t n, double variance);

} // namespace kovalune
