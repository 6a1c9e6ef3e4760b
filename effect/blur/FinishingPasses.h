// The small passes that finish a stage, row by row over a rectangle.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Handed to every iteration of a finishing pass; element (x, y) of the mask stands for pixel (x, y) of
/// `rect`.
struct FinishPassRecord {
    PF_EffectWorld* dst;
    FrameRect rect;
    MaskPlane mask;
};

/// The alpha of `dst` becomes 0 where the mask is 0. Each returns the host's code, or PF_Err_OUT_OF_MEMORY
/// where the world is missing.
PF_Err clearAlphaOutside8(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                          const MaskPlane& mask);
PF_Err clearAlphaOutside16(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask);
PF_Err clearAlphaOutside32(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask);

} // namespace kovalune
