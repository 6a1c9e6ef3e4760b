// How a line's channels stand when they are taken apart, by pixel format, and what the kernels do with them: numbers of
// 32 bits for pixels of 16, doubles for floats. Masked-out pixels are 0.
#pragma once

#include "effect/blur/LineWeights.h"
#include "effect/kernels/Kernels.h"
#include "effect/raster/PixelTraits.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace kovalune {

/// Undefined for formats that no blur works in.
template <class Format>
struct PlanarOf;

template <>
struct PlanarOf<Argb16> {
    using Sample = uint32_t;
    using Sum = uint32_t;
    using Mean = uint32_t;

    static constexpr bool kSumsAreExact = true;

    static bool canWeigh(const LineWeights& weights) { return weights.fitPairs(); }

    /// The same for pixels of one colour alone.
    static uint64_t colorKey(const Argb16::Pixel& pixel) {
        uint64_t key = 0;
        std::memcpy(&key, &pixel.red, 3 * sizeof pixel.red);
        return key;
    }
    static uint16_t alphaKey(const Argb16::Pixel& pixel) { return pixel.alpha; }
    static bool isFinite(const Argb16::Pixel& /*pixel*/) { return true; }
    static bool isFinite(uint16_t /*channel*/) { return true; }
    /// What a mean of this channel alone is.
    static uint16_t fromSum(uint16_t channel) { return channel; }
    static void copyColors(const Argb16::Pixel* from, Argb16::Pixel* to, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            to[i].red = from[i].red;
            to[i].green = from[i].green;
            to[i].blue = from[i].blue;
        }
    }

    /// What a sample is lessened by in a pair, so that white fits.
    static constexpr uint32_t kBias = 16384;

    /// False where a value is too large for pairs.
    static bool splitColors(const Argb16::Pixel* pixels, const uint8_t* mask, int32_t count,
                            Sample* const* to) {
        return !kernels().splitColors16(pixels, mask, count, to[0], to[1], to[2]);
    }
    static bool splitAlpha(const Argb16::Pixel* pixels, const uint8_t* mask, int32_t count, Sample* to) {
        return !kernels().splitAlpha16(pixels, mask, count, to);
    }
    static void makeReady(Sample* samples, int32_t count) { kernels().pairUp(samples, kBias, count); }

    /// `at` is the sample of the first sum, `reach` how far the sums reach to either side of it.
    static void weigh(const Sample* at, const LineWeights& weights, int32_t reach, Sum* sums, int32_t count) {
        const uint32_t start = kBias * weights.sum(-reach, reach + 1);
        kernels().weighPairs(at - reach, weights.from(reach), reach + 1, start, sums, count);
    }

    static void coreMeans(const Sum* sums, const uint32_t* weights, Mean* means, int32_t count) {
        kernels().coreMeans16(sums, weights, means, count);
    }
    static void mixedMeans(const Sum* boxes, const uint32_t* counts, const Sum* sums, const uint32_t* weights,
                           uint16_t tailWeight, Mean* means, int32_t count) {
        kernels().mixedMeans16(boxes, counts, sums, weights, tailWeight, means, count);
    }
    static void mergeColors(Mean* const* means, Argb16::Pixel* pixels, int32_t count) {
        kernels().mergeColors16(means[0], means[1], means[2], pixels, count);
    }
};

template <>
struct PlanarOf<Argb32> {
    using Sample = double;
    using Sum = double;
    using Mean = float;
    static constexpr bool kSumsAreExact = false;

    static bool canWeigh(const LineWeights& /*weights*/) { return true; }

    /// Of the bits, so that a NaN is like itself.
    struct ColorKey {
        uint64_t redAndGreen;
        uint32_t blue;
        bool operator==(const ColorKey&) const = default;
    };
    static ColorKey colorKey(const Argb32::Pixel& pixel) {
        ColorKey key;
        std::memcpy(&key.redAndGreen, &pixel.red, sizeof key.redAndGreen);
        std::memcpy(&key.blue, &pixel.blue, sizeof key.blue);
        return key;
    }
    static bool isFinite(const Argb32::Pixel& pixel) {
        return std::isfinite(pixel.red) && std::isfinite(pixel.green) && std::isfinite(pixel.blue);
    }
    static bool isFinite(float channel) { return std::isfinite(channel); }
    static uint32_t alphaKey(const Argb32::Pixel& pixel) {
        uint32_t key = 0;
        std::memcpy(&key, &pixel.alpha, sizeof key);
        return key;
    }
    /// A sum that starts at 0 never becomes -0.
    static float fromSum(float channel) { return channel + 0.0F; }
    static void copyColors(const Argb32::Pixel* from, Argb32::Pixel* to, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            to[i].red = fromSum(from[i].red);
            to[i].green = fromSum(from[i].green);
            to[i].blue = fromSum(from[i].blue);
        }
    }

    static bool splitColors(const Argb32::Pixel* pixels, const uint8_t* mask, int32_t count,
                            Sample* const* to) {
        kernels().splitColors32(pixels, mask, count, to[0], to[1], to[2]);
        return true;
    }
    static bool splitAlpha(const Argb32::Pixel* pixels, const uint8_t* mask, int32_t count, Sample* to) {
        kernels().splitAlpha32(pixels, mask, count, to);
        return true;
    }
    static void makeReady(Sample* /*samples*/, int32_t /*count*/) {}

    static void weigh(const Sample* at, const LineWeights& weights, int32_t reach, Sum* sums, int32_t count) {
        kernels().weighDoubles(at, weights.doubles(), reach, sums, count);
    }

    static void coreMeans(const Sum* sums, const uint32_t* weights, Mean* means, int32_t count) {
        kernels().coreMeans32(sums, weights, means, count);
    }
    static void mixedMeans(const Sum* boxes, const uint32_t* counts, const Sum* sums, const uint32_t* weights,
                           uint16_t tailWeight, Mean* means, int32_t count) {
        kernels().mixedMeans32(boxes, counts, sums, weights, tailWeight * (1.0 / kWeightOne), means, count);
    }
    static void mergeColors(Mean* const* means, Argb32::Pixel* pixels, int32_t count) {
        kernels().mergeColors32(means[0], means[1], means[2], pixels, count);
    }
};

/// Whether each window has some weight, at least its centre's.
inline bool hasWeight(const GaussKernel& kernel) {
    return kernel.taps()[0] != 0 || kernel.tailWeight != 0;
}

/// Whether the kernels can make a blur's sums. Where no weight exists at all a pixel stays as it is, which the means that
/// they make cannot tell.
template <class Format>
bool canWeigh(const LineWeights& weights, const GaussKernel& kernel) {
    return PlanarOf<Format>::canWeigh(weights) && hasWeight(kernel);
}

/// Whether the mean of a window whose counted pixels are all the same is what they are: some weight has to fall into it, and
/// its box sum may not remember roundings of other pixels.
template <class Format>
bool flatWindowsKeepTheirs(const GaussKernel& kernel) {
    return kernel.taps()[0] != 0 && (PlanarOf<Format>::kSumsAreExact || kernel.tailWeight == 0);
}

} // namespace kovalune
