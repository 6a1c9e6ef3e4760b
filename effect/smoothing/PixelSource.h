// How the source is read: as it is, or with the pixels near a key colour (or all others) made transparent. Everything
// that is mixed into the destination is read through here.
#pragma once

#include "effect/raster/Rows.h"
#include "effect/smoothing/SmoothBoundaries.h"
#include "effect/smoothing/SmoothOf.h"

#include <cstdint>
#include <cstring>

namespace kovalune {

/// Key removed: pixels near the key count as transparent. Key only: all others do.
enum class KeyMode { kPlain, kRemoved, kOnly };

inline KeyMode keyModeOf(const SmoothParams& params) {
    if (params.keyEnabled == 0) {
        return KeyMode::kPlain;
    }
    return params.keyOnly == 0 ? KeyMode::kRemoved : KeyMode::kOnly;
}

template <class Format, KeyMode mode>
class PixelSource {
public:
    using Pixel = typename Format::Pixel;
    using Channel = typename Format::Channel;

    explicit PixelSource(const SmoothParams& params)
        : world_(*params.srcWorld), key_{0, keyChannel(params.keyRed), keyChannel(params.keyGreen),
                                         keyChannel(params.keyBlue)},
          tolerance_(SmoothOf<Format>::scaled(params.keyTolerance)) {}

    Pixel operator()(int32_t x, int32_t y) const { return keyFetch(x, y); }

    /// The pixel, its alpha 0 where the key test says so.
    Pixel keyFetch(int32_t x, int32_t y) const {
        Pixel pixel = rowOf<Format>(world_, FrameRect{}, y)[x];
        if constexpr (mode != KeyMode::kPlain) {
            if (SmoothOf<Format>::colorsWithin(key_, pixel, tolerance_) == (mode == KeyMode::kRemoved)) {
                pixel.alpha = 0;
            }
        }
        return pixel;
    }

    const Pixel& key() const { return key_; }

private:
    /// Only the low byte of a key channel counts.
    static Channel keyChannel(int32_t value) {
        return static_cast<Channel>(SmoothOf<Format>::scaled(value & 255));
    }

    const PF_EffectWorld& world_;
    Pixel key_;
    typename SmoothOf<Format>::Limit tolerance_;
};

/// Fills the destination with the keyed source. For `argb` at tolerance 0 this compares in the order blue, green, red,
/// as its users know it: a coloured key matches there with red and blue exchanged.
template <class Format, KeyMode mode>
void applyKeyCopy(const SmoothParams& params, const PixelSource<Format, mode>& source) {
    const PF_EffectWorld& dst = *params.dstWorld;
    const bool exchanged = sizeof(typename Format::Channel) == 1 && params.keyTolerance == 0;
    for (int32_t y = 0; y < dst.height; ++y) {
        const auto* const from = rowOf<Format>(*params.srcWorld, FrameRect{}, y);
        auto* const to = rowOf<Format>(dst, FrameRect{}, y);
        for (int32_t x = 0; x < dst.width; ++x) {
            if (!exchanged) {
                to[x] = source.keyFetch(x, y);
                continue;
            }
            to[x] = from[x];
            const auto& key = source.key();
            const bool same =
                from[x].red == key.blue && from[x].green == key.green && from[x].blue == key.red;
            if (same == (mode == KeyMode::kRemoved)) {
                to[x].alpha = 0;
            }
        }
    }
}

} // namespace kovalune
