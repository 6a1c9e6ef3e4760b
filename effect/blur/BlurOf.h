// What the blurs' arithmetic differs in by pixel format: accumulators, rounding and the way a mean is formed.
// Integer results are exact; float sums keep their stated order and are in double.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/PixelTraits.h"

#include <cstdint>

namespace kovalune {

/// Undefined for formats that no blur works in: 8-bit frames are worked on in 16 bits.
template <class Format>
struct BlurOf;

/// Weights and sums of 16-bit pixels are unsigned 32-bit numbers; every sum of a frame's sizes fits.
template <>
struct BlurOf<Argb16> {
    using Sum = uint32_t;
    using Channel = Argb16::Channel;
    static Sum weight(uint16_t tap) { return tap; }

    /// The mask-normalised mean of the core alone.
    static Channel coreMean(Sum acc, uint32_t wsum) {
        return static_cast<Channel>((acc + (wsum >> 1)) / wsum);
    }

    /// The mean of box and core, each normalised over the pixels that it found.
    static Channel mixedMean(Sum boxSum, int32_t boxCount, Sum acc, uint32_t wsum, uint16_t tailWeight) {
        const uint32_t box = boxSum / static_cast<uint32_t>(boxCount) * tailWeight;
        const uint32_t core = wsum != 0 ? acc / wsum * static_cast<uint32_t>(kWeightOne - tailWeight) : 0;
        return static_cast<Channel>((box + core + kWeightOne / 2) >> kWeightBits);
    }

    /// The unweighted mean of `count` pixels, which may be so many that the sum wraps: it counts as signed.
    static Channel flatMean(Sum sum, int32_t count) {
        return static_cast<Channel>(static_cast<int32_t>(sum + static_cast<Sum>(count >> 1)) / count);
    }
};

/// Sums of float pixels are doubles; a result is rounded to float at the store and never clamped.
template <>
struct BlurOf<Argb32> {
    using Sum = double;
    using Channel = Argb32::Channel;
    static constexpr double kOne = kWeightOne;
    static Sum weight(uint16_t tap) { return static_cast<double>(tap) * (1.0 / kOne); }

    static Channel coreMean(Sum acc, uint32_t wsum) {
        return static_cast<Channel>(acc * (kOne / static_cast<double>(wsum)));
    }

    static Channel mixedMean(Sum boxSum, int32_t boxCount, Sum acc, uint32_t wsum, uint16_t tailWeight) {
        const double tailShare = weight(tailWeight);
        const double box = boxSum / static_cast<double>(boxCount) * tailShare;
        if (wsum == 0) {
            return static_cast<Channel>(box);
        }
        return static_cast<Channel>(acc * (kOne / static_cast<double>(wsum) * (1.0 - tailShare)) + box);
    }

    static Channel flatMean(Sum sum, int32_t count) {
        return static_cast<Channel>(sum / static_cast<double>(count));
    }
};

} // namespace kovalune
