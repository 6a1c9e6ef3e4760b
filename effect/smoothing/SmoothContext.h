// What every step of a smoothing visit works with: the flag map, the source as it is read, the destination that all
// blends accumulate in, and the weights that follow from the settings.
#pragma once

#include "effect/raster/Rows.h"
#include "effect/share/SizeProduct.h"
#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/PixelSource.h"
#include "effect/smoothing/SmoothOf.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

template <class FormatType, KeyMode mode>
struct SmoothContext {
    using Format = FormatType;
    using Smooth = SmoothOf<Format>;
    using Weight = typename Smooth::Weight;
    using Pixel = typename Format::Pixel;

    const EdgeFlagMap& map;
    PixelSource<Format, mode> source;
    const PF_EffectWorld& destination;
    int32_t strength;
    int32_t curve;
    int32_t curveThird;
    Weight crossWeight;
    Weight smallWeight;

    SmoothContext(const SmoothParams& params, const PixelSource<Format, mode>& pixels,
                  const EdgeFlagMap& flags)
        : map(flags), source(pixels), destination(*params.dstWorld), strength(params.strength),
          curve(params.curve), curveThird(params.curve / 3),
          crossWeight(Smooth::crossWeight(params.strength)),
          smallWeight(Smooth::smallWeight(params.strength)) {}

    bool has(int32_t x, int32_t y, int flags) const { return (map(x, y) & flags) != 0; }
    bool lacks(int32_t x, int32_t y, int flags) const { return (map(x, y) & flags) == 0; }
    int32_t width() const { return map.width(); }
    int32_t height() const { return map.height(); }

    Pixel src(int32_t x, int32_t y) const { return source(x, y); }
    Pixel& dst(int32_t x, int32_t y) const { return rowOf<Format>(destination, FrameRect{}, y)[x]; }

    /// Bytes from one pixel of the destination to the one at (dx, dy) from it.
    std::ptrdiff_t pixelStep(int32_t dx, int32_t dy) const {
        return sizeProduct<std::ptrdiff_t>(dy, destination.rowbytes) +
               dx * static_cast<std::ptrdiff_t>(sizeof(Pixel));
    }

    void blend(int32_t x, int32_t y, const Pixel& color, Weight weight) const {
        blendPixel<Format>(dst(x, y), color, weight);
    }
};

} // namespace kovalune
