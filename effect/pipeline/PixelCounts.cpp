#include "effect/pipeline/PixelCounts.h"

#include "effect/pipeline/DepthConversion.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"
#include "effect/share/StandardParts.h"

#include <algorithm>

namespace kovalune {
namespace {

/// When two channels of a frame of a format are different, and the format in which the frame is worked on.
template <class Format>
struct DifferenceOf;

template <>
struct DifferenceOf<Argb8> {
    using Work = Argb16;
    static bool differ(uint16_t a, uint16_t b) { return a != b && narrowChannel(a) != narrowChannel(b); }
};

template <>
struct DifferenceOf<Argb16> {
    using Work = Argb16;
    static bool differ(uint16_t a, uint16_t b) { return a != b; }
};

template <>
struct DifferenceOf<Argb32> {
    using Work = Argb32;
    /// -0 and 0 are the same, and so is a NaN with itself.
    static bool differ(float a, float b) { return a != b && bitCast<uint32_t>(a) != bitCast<uint32_t>(b); }
};

template <class Format>
void copyPixels(PF_EffectWorld& dst, const PF_EffectWorld& src, const FrameRect& rect) {
    for (int32_t y = 0; y < rect.height(); ++y) {
        std::copy_n(rowOf<Format>(src, rect, y), rect.width(), rowOf<Format>(dst, rect, y));
    }
}

template <class Format>
int64_t countChanged(const PF_EffectWorld& before, const PF_EffectWorld& after, const FrameRect& rect) {
    using Difference = DifferenceOf<Format>;
    using Work = typename Difference::Work;
    int64_t count = 0;
    for (int32_t y = 0; y < rect.height(); ++y) {
        const auto* const a = rowOf<Work>(before, rect, y);
        const auto* const b = rowOf<Work>(after, rect, y);
        for (int32_t x = 0; x < rect.width(); ++x) {
            const bool differs = Difference::differ(a[x].red, b[x].red) ||
                                 Difference::differ(a[x].green, b[x].green) ||
                                 Difference::differ(a[x].blue, b[x].blue);
            count += differs ? 1 : 0;
        }
    }
    return count;
}

template <class Format>
int64_t countOutside(const PF_EffectWorld& world, const FrameRect& rect, const MaskPlane& mask) {
    int64_t count = 0;
    for (int32_t y = 0; y < rect.height(); ++y) {
        const auto* const pixels = rowOf<Format>(world, rect, y);
        const uint8_t* const inside = mask.row(y);
        for (int32_t x = 0; x < rect.width(); ++x) {
            count += inside[x] == 0 && pixels[x].alpha != 0 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

void copyPixels16(PF_EffectWorld& dst, const PF_EffectWorld& src, const FrameRect& rect) {
    copyPixels<Argb16>(dst, src, rect);
}
void copyPixels32(PF_EffectWorld& dst, const PF_EffectWorld& src, const FrameRect& rect) {
    copyPixels<Argb32>(dst, src, rect);
}

int64_t countChanged8(const PF_EffectWorld& before, const PF_EffectWorld& after, const FrameRect& rect) {
    return countChanged<Argb8>(before, after, rect);
}
int64_t countChanged16(const PF_EffectWorld& before, const PF_EffectWorld& after, const FrameRect& rect) {
    return countChanged<Argb16>(before, after, rect);
}
int64_t countChanged32(const PF_EffectWorld& before, const PF_EffectWorld& after, const FrameRect& rect) {
    return countChanged<Argb32>(before, after, rect);
}

int64_t countOutside16(const PF_EffectWorld& world, const FrameRect& rect, const MaskPlane& mask) {
    return countOutside<Argb16>(world, rect, mask);
}
int64_t countOutside32(const PF_EffectWorld& world, const FrameRect& rect, const MaskPlane& mask) {
    return countOutside<Argb32>(world, rect, mask);
}

} // namespace kovalune
