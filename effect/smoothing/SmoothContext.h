// What every step of a smoothing visit works with: the flag map, the source as it is read, the destination that all
// blends accumulate in, and the weights that follow from the settings.
#pragma once

#include "effect/raster/Rows.h"
#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/PixelSource.h"
#include "effect/smoothing/SmoothTraits.h"

#include <cstdint>

namespace kovalune {

template <class TraitsType, KeyMode mode>
struct SmoothContext {
    using Traits = TraitsType;
    using Weight = typename Traits::Weight;
    using Pixel = typename Traits::Pixel;

    const EdgeFlagMap& map;
    PixelSource<Traits, mode> source;
    const PF_EffectWorld& destination;
    int32_t strength;
    int32_t curve;
    int32_t curveThird;
    Weight crossWeight;
    Weight smallWeight;

    SmoothContext(const SmoothParams& params, const PixelSource<Traits, mode>& pixels,
                  const EdgeFlagMap& flags)
        : map(flags), source(pixels), destination(*params.dstWorld), strength(params.strength),
          curve(params.curve), curveThird(params.curve / 3),
          crossWeight(Traits::crossWeight(params.strength)),
          smallWeight(Traits::smallWeight(params.strength)) {}

    bool has(int32_t x, int32_t y, int flags) const { return (map(x, y) & flags) != 0; }
    bool lacks(int32_t x, int32_t y, int flags) const { return (map(x, y) & flags) == 0; }
    int32_t width() const { return map.width(); }
    int32_t height() const { return map.height(); }

    Pixel src(int32_t x, int32_t y) const { return source(x, y); }
    Pixel& dst(int32_t x, int32_t y) const { return rowOf<Traits>(destination, FrameRect{}, y)[x]; }

    void blend(int32_t x, int32_t y, const Pixel& color, Weight weight) const {
        blendPixel<Traits>(dst(x, y), color, weight);
    }
};

} // namespace kovalune
