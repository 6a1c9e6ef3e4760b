// The record of the passes that move pixels from one world to another under a mask, and the simplest of them.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Both worlds are as large as `rect` asks; element (x, y) of the mask stands for pixel (x, y) of the
/// rectangle.
struct MaskedPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView mask;
    bool clearOutside; ///< pixels of `dst` inside `rect` that the mask leaves out become all zero bytes
};

/// Whole pixels from `src` to `dst` where the mask is not 0. Every row is visited, whatever the mask's
/// summary says. Each returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is missing.
PF_Err copyMasked16(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                    const MaskPlane& mask, bool clearOutside);
PF_Err copyMasked32(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                    const MaskPlane& mask, bool clearOutside);

} // namespace kovalune
