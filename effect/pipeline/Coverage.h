// Alpha coverage: the mask of the pixels of a world that are not fully transparent.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

struct CoverageRecord {
    PF_EffectWorld* src;
    FrameRect rect;
    uint8_t value; ///< what a covered pixel writes; always 1
    MaskPlane mask;
};

/// Assigns a fresh plane of `rect`'s size to `mask`: 1 where alpha is not 0 (in float any value but 0, also a
/// negative one or a NaN), with true summaries. Other handles on the old plane keep it. The plane is handed
/// over whatever the host's code is, which is returned.
[[nodiscard]] PF_Err coverage8(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                               const FrameRect& rect);
[[nodiscard]] PF_Err coverage16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                                const FrameRect& rect);
[[nodiscard]] PF_Err coverage32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src,
                                const FrameRect& rect);

} // namespace kovalune
