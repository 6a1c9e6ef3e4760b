// The record of the passes that move pixels from one world to another under a mask, and the simplest of them.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/raster/PixelTraits.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// What a masked pass is to do, and what the host iterates over. Both worlds are as large as `rect` asks; element (x, y) of
/// the mask stands for pixel (x, y) of the rectangle.
struct MaskedPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView mask;
    bool clearOutside =
        false; ///< pixels of `dst` inside `rect` that the mask leaves out become all zero bytes
};

using MaskedPass = PF_Err(PF_InData* inData, MaskedPassRecord record);

/// Whole pixels from `src` to `dst` where the mask is not 0. Every row is visited, whatever the mask's
/// summary says. Returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is missing.
template <class Format>
[[nodiscard]] PF_Err copyMasked(PF_InData* inData, MaskedPassRecord record);

extern template PF_Err copyMasked<Argb16>(PF_InData*, MaskedPassRecord);
extern template PF_Err copyMasked<Argb32>(PF_InData*, MaskedPassRecord);

inline constexpr MaskedPass& copyMasked16 = copyMasked<Argb16>;
inline constexpr MaskedPass& copyMasked32 = copyMasked<Argb32>;

} // namespace kovalune
