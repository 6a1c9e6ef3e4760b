// The blur of the Base stage: a Gaussian mean of colour inside a region, normalised over the weights that
// fell inside it, so that a pixel at the region's edge keeps its brightness and nothing outside the region
// contributes. Alpha is left alone, and straight colour is averaged as it stands.
//
// The 8-bit frames are worked on in 16 bits. The run scan keeps the parts of a region apart that a gap
// divides, the window scan does not ("Keep Division" on and off).
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// Handed to every iteration of a pass. The border of `rect` acts like a masked-out pixel.
struct BlurPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView mask; ///< its row and column bytes gate the lines
    GaussKernel kernel;
};

// A region blur. Each blurs the masked-in pixels of `rect` from `src` into `dst`; `tmp`, a second world of the size and
// depth of `dst`, holds an intermediate state. `src` is never written. `dst` and `tmp` must already hold what
// is to remain in pixels that the blur does not write: masked-out pixels, and the alpha of masked-in ones.
//   iterations  what the host is asked for, PF_Iterations_ONCE_PER_PROCESSOR in a frame
//   repeat      "Blur Repeat Num", not negative: `repeat` + 1 passes; 0 copies the masked-in pixels instead
//   progress    reported to after each pass, or null
//   amount      half-length of the first kernel in pixels; below 2.0 copies the masked-in pixels instead
// Returns the first error of the host's iteration or progress calls, or PF_Err_OUT_OF_MEMORY where a world
// that the blur needs is missing or a pass found no scratch memory; `dst` then holds a partial result.
using RegionBlur = PF_Err(PF_EffectWorld* dst, PF_InData* inData, A_long iterations, PF_EffectWorld* src,
                          PF_EffectWorld* tmp, const FrameRect& rect, const MaskPlane& mask, int32_t repeat,
                          const ProgressCounter* progress, double amount);
RegionBlur blurRegionRun16;
RegionBlur blurRegionWindow16;
RegionBlur blurRegionRun32;
RegionBlur blurRegionWindow32;

// The single passes, in the form that the host iterates over a BlurPassRecord.
PF_Err passRunH16(void* record, A_long thread, A_long i, A_long n);
PF_Err passRunV16(void* record, A_long thread, A_long i, A_long n);
PF_Err passWindowH16(void* record, A_long thread, A_long i, A_long n);
PF_Err passWindowV16(void* record, A_long thread, A_long i, A_long n);
PF_Err passRunH32(void* record, A_long thread, A_long i, A_long n);
PF_Err passRunV32(void* record, A_long thread, A_long i, A_long n);
PF_Err passWindowH32(void* record, A_long thread, A_long i, A_long n);
PF_Err passWindowV32(void* record, A_long thread, A_long i, A_long n);

} // namespace kovalune
