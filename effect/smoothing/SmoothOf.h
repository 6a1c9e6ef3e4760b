// What boundary smoothing differs in by pixel format: the distance of pixels, the scale of weights, and the blend.
// Weights are integers from 0 to 65535 for the integer formats and floats from 0 to 1 for `ae32`.
#pragma once

#include "effect/raster/PixelTraits.h"
#include "effect/share/Integers.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace kovalune {

/// Undefined for unknown formats.
template <class Format>
struct SmoothOf;

/// What the two integer formats share.
template <class Format>
struct IntegerSmoothing {
    using Pixel = typename Format::Pixel;
    using Channel = typename Format::Channel;
    using Weight = int32_t;
    using Limit = int32_t;

    static constexpr Weight kFull = 65535;
    static constexpr Weight kThreeQuarters = 49151;
    static constexpr Weight kHalf = 32767;
    static constexpr Weight kThird = 21844;
    static constexpr Weight kSixth = 10922;
    static constexpr Weight kTenth = 6553;

    static Weight smallWeight(int32_t strength) {
        if (strength >= 70) {
            return kTenth;
        }
        const float share = 1.0F - static_cast<float>(70 - strength) / 70.0F;
        return truncToInt32(static_cast<double>(share * static_cast<float>(kTenth)));
    }
    static Weight crossWeight(int32_t strength) { return strength * kHalf / 200; }

    /// Fall of a ramp a pixel; `d` is above 0.
    static Weight rampStep(int32_t d) { return kHalf * 100 / d; }
    static bool isSpent(Weight level) { return level <= 0; }
    static Weight meanOfFall(Weight before, Weight step) { return before - (step >> 1); }
    static Weight lastTriangle(Weight before, Weight step) {
        return wrappingMul(before, before) / (step * 2);
    }
    static Weight fromCurve(float weight) { return truncToInt32(static_cast<double>(weight)); }

    /// A number from 0 to 255 in the format's scale.
    static int32_t scaled(int32_t value) {
        return wrappingMul(value, static_cast<int32_t>(Format::kFullScale)) / 255;
    }
    static Limit limitOf(int32_t threshold) { return scaled(threshold); }

    static int32_t channelSum(const Pixel& p) { return p.alpha + p.red + p.green + p.blue; }
    static bool exceeds(const Pixel& p, Limit limit) { return channelSum(p) > limit; }
    static bool differBy(const Pixel& a, const Pixel& b, Limit limit) {
        return std::abs(a.alpha - b.alpha) + std::abs(a.red - b.red) + std::abs(a.green - b.green) +
                   std::abs(a.blue - b.blue) >
               limit;
    }
    /// Red, green and blue alone, no further apart than `tolerance`.
    static bool colorsWithin(const Pixel& a, const Pixel& b, Limit tolerance) {
        return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue) <= tolerance;
    }

    static void blend(Pixel& dst, const Pixel& src, Weight weight) {
        const auto w = static_cast<uint32_t>(weight);
        const uint32_t inv = kOne - w;
        const uint32_t dw = inv * dst.alpha;
        const uint32_t sw = w * src.alpha;
        if (dst.alpha == src.alpha) {
            mixColors(dst, src, w, inv);
        } else if (src.alpha == 0) {
            dst.alpha = rounded(dw);
        } else if (dst.alpha == 0) {
            dst = src;
            dst.alpha = rounded(sw);
        } else {
            const float ratio =
                static_cast<float>(static_cast<int32_t>(dw)) / static_cast<float>(static_cast<int32_t>(sw));
            const float share = static_cast<float>(kFull) / (ratio + 1.0F) + 0.5F;
            const auto k = static_cast<uint32_t>(truncToInt32(static_cast<double>(share)));
            mixColors(dst, src, k, kOne - k);
            dst.alpha = rounded(sw + dw);
        }
    }

private:
    /// As an unsigned number, for products that need all 32 bits.
    static constexpr uint32_t kOne = kFull;

    /// A sum of products with weights, whose unit counts as 2 to the power of 16 here.
    static Channel rounded(uint32_t sum) { return static_cast<Channel>((sum + (1U << 15)) >> 16); }
    static void mixColors(Pixel& dst, const Pixel& src, uint32_t k, uint32_t inv) {
        dst.red = rounded(dst.red * inv + src.red * k);
        dst.green = rounded(dst.green * inv + src.green * k);
        dst.blue = rounded(dst.blue * inv + src.blue * k);
    }
};

template <>
struct SmoothOf<Argb8> : IntegerSmoothing<Argb8> {};
template <>
struct SmoothOf<Argb16> : IntegerSmoothing<Argb16> {};

template <>
struct SmoothOf<Argb32> {
    using Pixel = Argb32::Pixel;
    using Weight = float;
    using Limit = float;

    static constexpr Weight kFull = 1.0F;
    static constexpr Weight kThreeQuarters = 0.75F;
    static constexpr Weight kHalf = 0.5F;
    static constexpr Weight kThird = 0.33333334F;
    static constexpr Weight kSixth = 0.16666667F;
    static constexpr Weight kTenth = 0.1F;

    static Weight smallWeight(int32_t strength) {
        return strength >= 70 ? kTenth : (1.0F - static_cast<float>(70 - strength) / 70.0F) * kTenth;
    }
    static Weight crossWeight(int32_t strength) { return static_cast<float>(strength) * kHalf / 200.0F; }

    static Weight rampStep(int32_t d) { return kHalf * 100.0F / static_cast<float>(d); }
    static bool isSpent(Weight level) { return 0.0F >= level; }
    static Weight meanOfFall(Weight before, Weight step) { return before - step * 0.5F; }
    static Weight lastTriangle(Weight before, Weight step) { return before * before / (step * 2.0F); }
    static Weight fromCurve(float weight) { return weight; }

    static float scaled(int32_t value) { return static_cast<float>(value) / 255.0F; }
    static Limit limitOf(int32_t threshold) { return scaled(threshold); }

    static bool exceeds(const Pixel& p, Limit limit) {
        return ((p.green + p.red) + p.blue) + p.alpha > limit;
    }
    static bool differBy(const Pixel& a, const Pixel& b, Limit limit) {
        return limit - std::fabs(a.red - b.red) - std::fabs(a.green - b.green) - std::fabs(a.blue - b.blue) -
                   std::fabs(a.alpha - b.alpha) <
               0.0F;
    }
    static bool colorsWithin(const Pixel& a, const Pixel& b, Limit tolerance) {
        return tolerance - std::fabs(a.red - b.red) - std::fabs(a.green - b.green) -
                   std::fabs(a.blue - b.blue) >=
               0.0F;
    }

    static void blend(Pixel& dst, const Pixel& src, Weight w) {
        const float inv = 1.0F - w;
        if (dst.alpha == src.alpha) {
            mixColors(dst, src, w, inv);
            return;
        }
        const float sw = src.alpha * w;
        const float dw = inv * dst.alpha;
        if (src.alpha == 0.0F) {
            dst.alpha = dw + sw;
            return;
        }
        // A transparent target takes the whole source colour, also at a weight of 0, where the quotient has no value.
        const float k = dw == 0.0F ? 1.0F : 1.0F / (dw / sw + 1.0F);
        mixColors(dst, src, k, 1.0F - k);
        dst.alpha = sw + dw;
    }

private:
    static void mixColors(Pixel& dst, const Pixel& src, float k, float inv) {
        dst.red = src.red * k + dst.red * inv;
        dst.green = src.green * k + dst.green * inv;
        dst.blue = src.blue * k + dst.blue * inv;
    }
};

/// Moves `dst` toward `src`, aware of alpha: a transparent pixel lends no colour.
template <class Format>
void blendPixel(typename Format::Pixel& dst, const typename Format::Pixel& src,
                typename SmoothOf<Format>::Weight weight) {
    SmoothOf<Format>::blend(dst, src, weight);
}

} // namespace kovalune
