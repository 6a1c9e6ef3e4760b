// What the blurs' arithmetic differs in by pixel format: accumulators, rounding and the way a mean is formed.
// Integer results are exact; float sums keep their stated order and are in double.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/PixelTraits.h"

#include <cstdint>

namespace kovalune {

/// Weights and sums of 16-bit pixels are unsigned 32-bit numbers; every sum of a frame's sizes fits.
struct Blur16 : Argb16 {
    using Sum = uint32_t;
    static Sum weight(uint16_t tap) { return tap; }

    /// The mask-normalised mean of the core alone.
    static Channel coreMean(Sum acc, uint32_t wsum) {
        return static_cast<Channel>((acc + (wsum >> 1)) / wsum);
    }

    /// The mean of box and core, each normalised over the pixels that it found.
    static Channel mixedMean(Sum boxSum, int32_t boxCount, Sum acc, uint32_t wsum, uint16_t tailWeight) {
        const uint32_t box = boxSum / static_cast<uint32_t>(boxCount) * tailWeight;
        const uint32_t core = wsum != 0 ? acc / wsum * static_cast<uint32_t>(kWeightOne - tailWeight) : 0;
        return static_cast<Channel>((box + core + 16384) >> 15);
    }

    /// The unweighted mean of `count` pixels, which may be so many that the sum wraps: it counts as signed.
    static Channel flatMean(Sum sum, int32_t count) {
        return static_cast<Channel>(static_cast<int32_t>(sum + static_cast<Sum>(count >> 1)) / count);
    }
};

/// Sums of float pixels are doubles; a result is rounded to float at the store and never clamped.
struct Blur32 : Argb32 {
    using Sum = double;
    static constexpr double kWeightUnit = 3.0517578125e-5;
    static Sum weight(uint16_t tap) { return static_cast<double>(tap) * kWeightUnit; }

    static Channel coreMean(Sum acc, uint32_t wsum) {
        return static_cast<Channel>(acc * (32768.0 / static_cast<double>(wsum)));
    }

    static Channel mixedMean(Sum boxSum, int32_t boxCount, Sum acc, uint32_t wsum, uint16_t tailWeight) {
        const double tailShare = static_cast<double>(tailWeight) * kWeightUnit;
        const double box = boxSum / static_cast<double>(boxCount) * tailShare;
        if (wsum == 0) {
            return static_cast<Channel>(box);
        }
        return static_cast<Channel>(acc * (32768.0 / static_cast<double>(wsum) * (1.0 - tailShare)) + box);
    }

    static Channel flatMean(Sum sum, int32_t count) {
        return static_cast<Channel>(sum / static_cast<double>(count));
    }
};

} // namespace kovalune
