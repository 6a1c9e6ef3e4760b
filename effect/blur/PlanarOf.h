// How a line's channels stand when they are taken apart, by pixel format, and what the kernels do with them: numbers of
// 32 bits for pixels of 16, doubles for floats. Masked-out pixels are 0.
#pragma once

#include "effect/blur/LineWeights.h"
#include "effect/kernels/Kernels.h"
#include "effect/raster/PixelTraits.h"
#include "effect/share/StandardParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kovalune {

/// What can be done with a line's samples: no weighed sums at all, sums in the stated order, or in any, of which each is exact.
enum class Summing : uint8_t { kNone, kInOrder, kInAnyOrder };

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

    /// The same for pixels that are the same.
    static uint64_t pixelKey(const Argb16::Pixel& pixel) {
        uint64_t key = 0;
        std::memcpy(&key, &pixel, sizeof key);
        return key;
    }
    /// The same for pixels of one colour alone.
    static uint64_t colorKey(const Argb16::Pixel& pixel) { return pixelKey(pixel) & ~uint64_t{0xFFFF}; }
    static uint16_t alphaKey(const Argb16::Pixel& pixel) { return pixel.alpha; }
    /// A pixel with this key, of a whole one, a colour or an alpha.
    static Argb16::Pixel pixelWith(uint64_t key) {
        Argb16::Pixel pixel;
        std::memcpy(&pixel, &key, sizeof pixel);
        return pixel;
    }
    static Argb16::Pixel pixelWith(uint16_t alpha) { return {alpha, 0, 0, 0}; }
    static bool isFinite(const Argb16::Pixel& /*pixel*/) { return true; }
    static bool isFinite(uint16_t /*channel*/) { return true; }
    /// What a mean of this channel alone is, and whether it is that in all bits.
    static uint16_t fromSum(uint16_t channel) { return channel; }
    static bool isOwnMean(uint16_t /*channel*/) { return true; }
    static bool isOwnMean(const Argb16::Pixel& /*color*/) { return true; }
    static void copyColors(const Argb16::Pixel* from, Argb16::Pixel* to, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            to[i].red = from[i].red;
            to[i].green = from[i].green;
            to[i].blue = from[i].blue;
        }
    }

    /// Whether sums of products of these values are exact: always.
    struct Exactness {
        template <std::size_t kChannels>
        bool holds(const std::array<Sum, kChannels>& /*values*/) {
            return true;
        }
    };
    static void take(const Argb16::Pixel& pixel, std::array<Sum, 3>& colors) {
        colors = {pixel.red, pixel.green, pixel.blue};
    }
    static void take(const Argb16::Pixel& pixel, std::array<Sum, 1>& alpha) { alpha = {pixel.alpha}; }
    static Sum scaled(Sum value, uint32_t weight) { return value * weight; }
    /// Adds the running sums of the weights from `at` on, `factor` times.
    static void addScaled(const LineWeights& weights, int32_t at, Sum factor, Sum* sums, int32_t count) {
        kernels().addScaled(weights.running() + at, factor, sums, count);
    }

    /// What a sample is lessened by in a pair, so that white fits.
    static constexpr uint32_t kBias = 16384;

    /// A value may be too large for pairs.
    static Summing splitColors(const Argb16::Pixel* pixels, const uint8_t* mask, int32_t count,
                               Sample* const* to) {
        return kernels().splitColors16(pixels, mask, count, to[0], to[1], to[2]) ? Summing::kNone
                                                                                 : Summing::kInAnyOrder;
    }
    static Summing splitAlpha(const Argb16::Pixel* pixels, const uint8_t* mask, int32_t count, Sample* to) {
        return kernels().splitAlpha16(pixels, mask, count, to) ? Summing::kNone : Summing::kInAnyOrder;
    }
    static void makeReady(Sample* samples, int32_t count) { kernels().pairUp(samples, kBias, count); }

    /// The lines begin at the samples of the first sums; `reach` is how far the sums reach to either side of theirs.
    static void weigh(WeighedLines<Sample> lines, const LineWeights& weights, int32_t reach,
                      Summing /*summing*/) {
        const uint32_t start = kBias * weights.sum(-reach, reach + 1);
        lines.line -= reach;
        kernels().weighPairs(lines, weights.from(reach), reach + 1, start);
    }

    /// Where all weights are there.
    static void wholeMeans(const Sum* sums, Mean* means, int32_t count) {
        kernels().wholeMeans16(sums, means, count);
    }
    static void coreMeans(const Sum* sums, const uint32_t* weights, const double* reciprocals, Mean* means,
                          int32_t count) {
        kernels().coreMeans16(sums, weights, reciprocals, means, count);
    }
    static void mixedMeans(const Sum* boxes, const uint32_t* counts, const Sum* sums, const uint32_t* weights,
                           uint16_t tailWeight, Mean* means, int32_t count) {
        kernels().mixedMeans16(boxes, counts, sums, weights, tailWeight, means, count);
    }
    static void flatMeans(const Sum* sums, const uint32_t* counts, Mean* means, int32_t count) {
        kernels().flatMeans16(sums, counts, means, count);
    }
    /// A key of its own for all that is transparent.
    static constexpr uint64_t kTransparentKey = 0xFFFF;
    static uint64_t visibleKey(const Argb16::Pixel& pixel) {
        return pixel.alpha != 0 ? colorKey(pixel) : kTransparentKey;
    }
    /// Alpha stays.
    static void layColors(const Argb16::Pixel& result, Argb16::Pixel& target) {
        uint64_t whole = 0;
        std::memcpy(&whole, &target, sizeof whole);
        whole = (whole & 0xFFFF) | colorKey(result);
        std::memcpy(&target, &whole, sizeof whole);
    }
    static void setColors(Argb16::Pixel& pixel, Mean red, Mean green, Mean blue) {
        pixel.red = static_cast<uint16_t>(red);
        pixel.green = static_cast<uint16_t>(green);
        pixel.blue = static_cast<uint16_t>(blue);
    }
    static void mergeColors(Mean* const* means, Argb16::Pixel* pixels, int32_t count) {
        kernels().mergeColors16(means[0], means[1], means[2], pixels, count);
    }
    static void layColors(Mean* const* means, const uint8_t* mask, Argb16::Pixel* pixels, int32_t count) {
        kernels().layColors16(means[0], means[1], means[2], mask, pixels, count);
    }
};

template <>
struct PlanarOf<Argb32> {
    using Sample = double;
    using Sum = double;
    using Mean = float;
    static constexpr bool kSumsAreExact = false;

    static bool canWeigh(const LineWeights& /*weights*/) { return true; }

    /// Whether sums of products of all values so far are exact. A product has 24 and 15 bits, and so 14 of a double's 53 are
    /// left for the values' distance in size; a difference of two takes one, and a sum another.
    class Exactness {
    public:
        template <std::size_t kChannels>
        bool holds(const std::array<Sum, kChannels>& values) {
            for (const Sum value : values) {
                if (value != 0.0) {
                    const auto size = static_cast<int32_t>(bitCast<uint64_t>(value) >> 52 & 0x7FF);
                    smallest_ = std::min(smallest_, size);
                    largest_ = std::max(largest_, size);
                }
            }
            return largest_ - smallest_ <= 12 && largest_ <= kLargestFinite;
        }

    private:
        static constexpr int32_t kLargestFinite =
            1023 + 127; ///< exponent of a float, as a double's is stored

        int32_t smallest_ = 2047;
        int32_t largest_ = 0;
    };
    static void take(const Argb32::Pixel& pixel, std::array<Sum, 3>& colors) {
        colors = {static_cast<double>(pixel.red), static_cast<double>(pixel.green),
                  static_cast<double>(pixel.blue)};
    }
    static void take(const Argb32::Pixel& pixel, std::array<Sum, 1>& alpha) {
        alpha = {static_cast<double>(pixel.alpha)};
    }
    /// Never -0, since a sum that starts at 0 never is.
    static Sum scaled(Sum value, uint32_t weight) {
        return 0.0 + value * (static_cast<double>(weight) * (1.0 / kWeightOne));
    }
    static void addScaled(const LineWeights& weights, int32_t at, Sum factor, Sum* sums, int32_t count) {
        kernels().addScaledDoubles(weights.runningDoubles() + at, factor, sums, count);
    }

    /// Of the bits, so that a NaN is like itself.
    struct ColorKey {
        uint64_t redAndGreen;
        uint64_t blue;
        bool operator==(const ColorKey&) const = default;
    };
    static ColorKey colorKey(const Argb32::Pixel& pixel) {
        ColorKey key;
        std::memcpy(&key.redAndGreen, &pixel.red, sizeof key.redAndGreen);
        uint32_t blue = 0;
        std::memcpy(&blue, &pixel.blue, sizeof blue);
        key.blue = blue;
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
    static Argb32::Pixel pixelWith(const ColorKey& key) {
        Argb32::Pixel pixel{};
        std::memcpy(&pixel.red, &key.redAndGreen, sizeof key.redAndGreen);
        const auto blue = static_cast<uint32_t>(key.blue);
        std::memcpy(&pixel.blue, &blue, sizeof blue);
        return pixel;
    }
    static Argb32::Pixel pixelWith(uint32_t alpha) {
        Argb32::Pixel pixel{};
        std::memcpy(&pixel.alpha, &alpha, sizeof alpha);
        return pixel;
    }
    /// A sum that starts at 0 never becomes -0.
    static float fromSum(float channel) { return channel + 0.0F; }
    static bool isOwnMean(float channel) { return channel != 0.0F || !std::signbit(channel); }
    static bool isOwnMean(const Argb32::Pixel& color) {
        return isOwnMean(color.red) && isOwnMean(color.green) && isOwnMean(color.blue);
    }
    static void copyColors(const Argb32::Pixel* from, Argb32::Pixel* to, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            to[i].red = fromSum(from[i].red);
            to[i].green = fromSum(from[i].green);
            to[i].blue = fromSum(from[i].blue);
        }
    }

    static Summing splitColors(const Argb32::Pixel* pixels, const uint8_t* mask, int32_t count,
                               Sample* const* to) {
        return kernels().splitColors32(pixels, mask, count, to[0], to[1], to[2]) ? Summing::kInAnyOrder
                                                                                 : Summing::kInOrder;
    }
    static Summing splitAlpha(const Argb32::Pixel* pixels, const uint8_t* mask, int32_t count, Sample* to) {
        return kernels().splitAlpha32(pixels, mask, count, to) ? Summing::kInAnyOrder : Summing::kInOrder;
    }
    static void makeReady(Sample* /*samples*/, int32_t /*count*/) {}

    static void weigh(const WeighedLines<Sample>& lines, const LineWeights& weights, int32_t reach,
                      Summing summing) {
        if (summing == Summing::kInAnyOrder) {
            kernels().weighExactDoubles(lines, weights.doubles(), reach);
        } else {
            kernels().weighDoubles(lines, weights.doubles(), reach);
        }
    }

    static void wholeMeans(const Sum* sums, Mean* means, int32_t count) {
        kernels().wholeMeans32(sums, means, count);
    }
    static void coreMeans(const Sum* sums, const uint32_t* /*weights*/, const double* reciprocals,
                          Mean* means, int32_t count) {
        kernels().coreMeans32(sums, reciprocals, means, count);
    }
    static void mixedMeans(const Sum* boxes, const uint32_t* counts, const Sum* sums, const uint32_t* weights,
                           uint16_t tailWeight, Mean* means, int32_t count) {
        kernels().mixedMeans32(boxes, counts, sums, weights, tailWeight * (1.0 / kWeightOne), means, count);
    }
    static void flatMeans(const Sum* sums, const uint32_t* counts, Mean* means, int32_t count) {
        kernels().flatMeans32(sums, counts, means, count);
    }
    static constexpr ColorKey kTransparentKey = {0, ~uint64_t{0}};
    static ColorKey visibleKey(const Argb32::Pixel& pixel) {
        return pixel.alpha != 0 ? colorKey(pixel) : kTransparentKey;
    }
    static void layColors(const Argb32::Pixel& result, Argb32::Pixel& target) {
        std::memcpy(&target.red, &result.red, 3 * sizeof result.red);
    }
    static void setColors(Argb32::Pixel& pixel, Mean red, Mean green, Mean blue) {
        pixel.red = red;
        pixel.green = green;
        pixel.blue = blue;
    }
    static void mergeColors(Mean* const* means, Argb32::Pixel* pixels, int32_t count) {
        kernels().mergeColors32(means[0], means[1], means[2], pixels, count);
    }
    static void layColors(Mean* const* means, const uint8_t* mask, Argb32::Pixel* pixels, int32_t count) {
        kernels().layColors32(means[0], means[1], means[2], mask, pixels, count);
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
