// The cross filter of a nub: a premultiplied mean of the pixel and its four neighbours. The neighbours come from the
// source, the pixel itself from the destination, so that it keeps what earlier blends gave it.
#pragma once

#include "effect/smoothing/SmoothContext.h"

#include <cstdint>

namespace kovalune {

/// Undefined for unknown formats.
template <class Format>
struct NubSumsOf;

/// In signed 32-bit integers: the 16-bit shift drops the colour of a neighbour of little alpha, which is part of the
/// format's result.
template <>
struct NubSumsOf<Argb8> {
    using Weight = int32_t;
    static constexpr Weight kOwn = SmoothOf<Argb8>::kFull;
    static Weight neighbourWeight(int32_t crossWeight) { return crossWeight; }

    int32_t wsum = 0, alpha = 0, red = 0, green = 0, blue = 0;

    void add(const PF_Pixel& p, Weight m) {
        const int32_t share = p.alpha * m;
        const int32_t q = share >> 16;
        wsum += m;
        alpha += share;
        red += p.red * q;
        green += p.green * q;
        blue += p.blue * q;
    }
    void store(PF_Pixel& p) const {
        p.alpha = static_cast<A_u_char>((alpha + (wsum >> 1)) / wsum);
        const int32_t k = alpha >> 16;
        if (k != 0) {
            p.red = static_cast<A_u_char>((red + (k >> 1)) / k);
            p.green = static_cast<A_u_char>((green + (k >> 1)) / k);
            p.blue = static_cast<A_u_char>((blue + (k >> 1)) / k);
        }
    }
};

/// In single precision; what the two deep formats share.
template <class Pixel>
struct NubSumsFloat {
    using Weight = float;
    static constexpr Weight kOwn = 1.0F;

    float wsum = 0.0F, alpha = 0.0F, red = 0.0F, green = 0.0F, blue = 0.0F;

    void add(const Pixel& p, Weight m) {
        const float share = static_cast<float>(p.alpha) * m;
        wsum += m;
        alpha += share;
        red += static_cast<float>(p.red) * share;
        green += static_cast<float>(p.green) * share;
        blue += static_cast<float>(p.blue) * share;
    }
};

template <>
struct NubSumsOf<Argb16> : NubSumsFloat<PF_Pixel16> {
    static Weight neighbourWeight(int32_t crossWeight) {
        return static_cast<float>(crossWeight) / static_cast<float>(SmoothOf<Argb16>::kFull);
    }

    static A_u_short rounded(float sum, float by) {
        return static_cast<A_u_short>(truncToInt32(static_cast<double>((by * 0.5F + sum) / by)));
    }
    void store(PF_Pixel16& p) const {
        p.alpha = static_cast<A_u_short>(truncToInt32(static_cast<double>((wsum * 0.5F + alpha) / wsum)));
        if (alpha != 0.0F) {
            p.red = rounded(red, alpha);
            p.green = rounded(green, alpha);
            p.blue = rounded(blue, alpha);
        }
    }
};

template <>
struct NubSumsOf<Argb32> : NubSumsFloat<PF_PixelFloat> {
    static Weight neighbourWeight(float crossWeight) { return crossWeight; }

    void store(PF_PixelFloat& p) const {
        p.alpha = alpha / wsum;
        if (alpha != 0.0F) {
            p.red = red / alpha;
            p.green = green / alpha;
            p.blue = blue / alpha;
        }
    }
};

/// Neighbours outside the image are left out; without any, nothing happens.
template <class Context>
void softenNub(const Context& c, int32_t x, int32_t y) {
    using Sums = NubSumsOf<typename Context::Format>;
    const auto m = Sums::neighbourWeight(c.crossWeight);
    Sums sums;
    if (x > 0) {
        sums.add(c.src(x - 1, y), m);
    }
    if (x + 1 < c.width()) {
        sums.add(c.src(x + 1, y), m);
    }
    if (y > 0) {
        sums.add(c.src(x, y - 1), m);
    }
    if (y + 1 < c.height()) {
        sums.add(c.src(x, y + 1), m);
    }
    if (sums.wsum > 0) {
        sums.add(c.dst(x, y), Sums::kOwn);
        sums.store(c.dst(x, y));
    }
}

} // namespace kovalune
