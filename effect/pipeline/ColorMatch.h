// Nearness of colours: hue, lightness and saturation on the host's own conversion, in 16.16 fixed point.
#pragma once

#include "effect/share/HostCode.h"
#include "effect/share/Integers.h"
#include "hostapi/HostApi.h"

#include <cstdint>
#include <vector>

namespace kovalune {

/// A colour as the host's conversion gives it.
struct HlsColor {
    int32_t hue = 0;        ///< degrees, 16.16, 0 to below a full turn
    int32_t lightness = 0;  ///< full scale 65536
    int32_t saturation = 0; ///< full scale 65536
};

inline constexpr int32_t kHalfTurn = 180 << 16;
inline constexpr int32_t kFullTurn = 360 << 16;

/// Converts red, green and blue; alpha plays no role. The host's code is returned, and `hls` holds what the
/// host left in it, whatever the code. A host may hand out a number that is no angle for the hue of a grey; it counts
/// as 0, since its distance from a coloured entry could come out negative and would match at any range.
[[nodiscard]] inline PF_Err convertToHls(PF_InData* inData, PF_Pixel color, HlsColor& hls) {
    PF_HLS_Pixel fixed = {hls.hue, hls.lightness, hls.saturation};
    const PF_Err err = inData->utils->colorCB.RGBtoHLS(inData->effect_ref, &color, fixed);
    const bool isAngle = fixed[0] >= 0 && fixed[0] < kFullTurn;
    hls = {isAngle ? fixed[0] : 0, fixed[1], fixed[2]};
    return err;
}

/// A listed colour and the largest distance that still matches it.
struct ColorMatch {
    int32_t hue;
    int32_t lightness;
    int32_t saturation;
    int32_t threshold;
};

using ColorMatches = std::vector<ColorMatch>;

/// The largest colour distance: full lightness and saturation, and half a turn of hue. The threshold of a
/// range of 100 percent.
inline constexpr int32_t kLargestColorDistance = 27904;

inline ColorMatch makeColorMatch(const HlsColor& hls, double rangeFraction) {
    return {hls.hue, hls.lightness, hls.saturation, truncToInt32(rangeFraction * kLargestColorDistance)};
}

/// The match of a colour, of which red, green and blue count. `rangeFraction` 1.0 matches every colour, 0.0
/// those at distance 0.
inline ColorMatch makeColorMatch(PF_InData* inData, const PF_Pixel& color, double rangeFraction) {
    HlsColor hls;
    ignored(convertToHls(inData, color, hls));
    return makeColorMatch(hls, rangeFraction);
}

/// Hue counts at one 128th of its 16.16 degrees and wraps around the circle, so half a turn weighs 1.4 times
/// the whole of lightness or saturation. All arithmetic wraps at 32 bits, since a host's lightness and saturation may be
/// any numbers.
inline int32_t colorDistance(const HlsColor& pixel, const ColorMatch& match) {
    int32_t dh = wrappingAbs(wrappingSub(pixel.hue, match.hue));
    if (dh > kHalfTurn) {
        dh = wrappingSub(kFullTurn, dh);
    }
    const int32_t ds = wrappingAbs(wrappingSub(pixel.saturation, match.saturation));
    const int32_t dl = wrappingAbs(wrappingSub(pixel.lightness, match.lightness));
    return wrappingAdd(wrappingAdd(ds, dl), dh >> 7) >> 3;
}

inline bool matches(const HlsColor& pixel, const ColorMatch& match) {
    return colorDistance(pixel, match) <= match.threshold;
}

} // namespace kovalune
