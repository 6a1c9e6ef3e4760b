// What pixels of a line have in common where their windows show one colour alone.
#pragma once

#include "effect/blur/PlanarOf.h"
#include "effect/raster/WidePixels.h"

#include <cstdint>

namespace kovalune {

/// What has to be the same in all counted pixels of a window for their mean to be theirs, for FlatWindows.h. What is transparent
/// has no visible colour.
enum class Common { kPixel, kColor, kVisibleColor, kAlpha };

template <class Format, Common common>
struct LineKeys {
    const typename Format::Pixel* pixels;

    auto of(int32_t x) const {
        if constexpr (common == Common::kPixel) {
            return Planar::pixelKey(pixels[x]);
        } else if constexpr (common == Common::kColor) {
            return Planar::colorKey(pixels[x]);
        } else if constexpr (common == Common::kVisibleColor) {
            return Planar::visibleKey(pixels[x]);
        } else {
            return Planar::alphaKey(pixels[x]);
        }
    }

    static constexpr int32_t kAtOnce = WidePixels<Format>::kCount;

    /// Whether kAtOnce pixels from `x` on have this key.
    template <class Key>
    bool areSame(int32_t x, const Key& key) const {
        const WidePixels<Format> wide(pixels + x);
        if constexpr (common == Common::kVisibleColor) {
            if (key == Planar::kTransparentKey) {
                return wide.areTransparent();
            }
            return wide.haveColor(Planar::pixelWith(key)) && wide.areVisible();
        } else if constexpr (common == Common::kPixel) {
            return wide.areLike(Planar::pixelWith(key));
        } else if constexpr (common == Common::kColor) {
            return wide.haveColor(Planar::pixelWith(key));
        } else {
            return wide.haveAlpha(Planar::pixelWith(key));
        }
    }

    /// Some pixels at a time.
    template <class Key>
    int32_t sameFrom(int32_t x, int32_t end, const Key& key) const {
        while (end - x >= kAtOnce && areSame(x, key)) {
            x += kAtOnce;
        }
        return x;
    }

private:
    using Planar = PlanarOf<Format>;
};

} // namespace kovalune
