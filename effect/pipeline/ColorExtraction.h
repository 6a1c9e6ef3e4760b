// Colour extraction: which pixels of the layer belong to a stage. Every pixel that is not fully transparent
// is compared with a short list of colours.
#pragma once

#include "effect/pipeline/ColorMatch.h"
#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <array>
#include <cstdint>

namespace kovalune {

struct ExtractRecord {
    PF_EffectWorld* src;
    FrameRect rect;
    PF_InData* inData;
    ColorMatches matches;
    uint8_t value;  ///< what a match writes into the plane; always 1
    bool isCounted; ///< a match writes its place in the list instead, counted from 1
    MaskPlane mask;
};

/// How many pixels match each listed colour and none before it.
using MatchCounts = std::array<int64_t, 4>;

/// Assigns a fresh plane of `rect`'s size to `mask`: 1 where a pixel of non-zero alpha is near any listed
/// colour. The plane is handed over whatever the host's code is, which is returned.
///
/// Colours are compared with the resolution of 8 bits in every format, and a conversion is made only where
/// the colour changes along a band. A band whose first pixel is transparent starts from a colour made up from
/// that pixel; an opaque pixel that happens to have exactly it stays out, so the result there depends on the
/// number of iterations.
///
/// `counts`, where it is not null and the list no longer than it, is filled; the plane is the same with it and without. The
/// counting is done on the calling thread, after the host's iterations.
[[nodiscard]] PF_Err extractColors8(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                                    const FrameRect& rect, const ColorMatches& matches,
                                    MatchCounts* counts = nullptr);
[[nodiscard]] PF_Err extractColors16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                                     const FrameRect& rect, const ColorMatches& matches,
                                     MatchCounts* counts = nullptr);
[[nodiscard]] PF_Err extractColors32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                                     const FrameRect& rect, const ColorMatches& matches,
                                     MatchCounts* counts = nullptr);

} // namespace kovalune
