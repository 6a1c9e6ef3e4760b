// Colour extension: grows a region (the core) over a wider area, before a Process stage blurs its boundary.
// Every pixel of the area outside the core takes the colour of a nearby core pixel, found along a row and a
// column, and an alpha that falls to zero with the distance. Core pixels stay as they are.
//
// The time is in proportion to the pixels, whatever the reach is, and the result is the same for any number of
// iterations. The 8-bit frames are worked on in 16 bits.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Handed to the three steps, which run in this order: spreadH, spreadV, resolve. A distance of
/// MaskPlane16::kFar means that a spread did not get there.
struct ExtendRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    PF_EffectWorld* spreadWorld; ///< colours where a spread left a distance
    FrameRect rect;
    MaskView limitMask; ///< its row bytes gate the rows of spreadH and resolve
    MaskView seedMask;
    MaskPlane16 horizontalReach; ///< distance from the core along the row; 0 in the core
    MaskPlane16 verticalReach;   ///< along the column; in the core that of a stretch above it, not 0
    MaskPlane16 nearestInColumn; ///< row of the nearest entry of horizontalReach, or kNoRow
    double reach;
    bool stopAtGap;

    static constexpr uint16_t kNoRow = 0xFFFF;
};

// Extends the colour of `seedMask` over `limitMask`, both with the origin of `rect`, from `src` to `dst`.
//   spreadWorld  a scratch world as large as `dst`. Where a pixel finds no core, it takes the colour that this
//                one holds at the rectangle's first pixel
//   stopAtGap    colour does not cross what lies outside the area; otherwise it passes under it, but a pixel
//                still looks no further than to the next gap
//   reach        the distance in pixels at which alpha reaches zero, also the limit of every walk
// Pixels outside both masks are not written. Returns the first error of the host's iteration calls, or
// PF_Err_OUT_OF_MEMORY where a world is missing or a step found no scratch memory. Throws what the planes'
// construction throws; nothing stays behind then.
using ColorExtension = PF_Err(PF_EffectWorld* src, PF_EffectWorld* dst, PF_EffectWorld* spreadWorld,
                              PF_InData* inData, const FrameRect& rect, bool stopAtGap,
                              const MaskPlane& seedMask, const MaskPlane& limitMask, double reach);
ColorExtension extendColors16;
ColorExtension extendColors32;

// The single steps, in the form that the host iterates over an ExtendRecord.
PF_Err spreadH16(void* record, A_long thread, A_long i, A_long n);
PF_Err spreadV16(void* record, A_long thread, A_long i, A_long n);
PF_Err resolve16(void* record, A_long thread, A_long i, A_long n);
PF_Err spreadH32(void* record, A_long thread, A_long i, A_long n);
PF_Err spreadV32(void* record, A_long thread, A_long i, A_long n);
PF_Err resolve32(void* record, A_long thread, A_long i, A_long n);

} // namespace kovalune
