// The blur of a Process stage, which makes a region's edge soft: a Gaussian mean of alpha, normalised over
// the weights that fell inside the region, and beside it the plain mean of the colour of all pixels in the
// window that are not transparent. Once, behind the first pass, alpha is raised by a gain and cut at full
// scale.
//
// The 8-bit frames are worked on in 16 bits. The run scan keeps the parts of a region apart that a gap
// divides, the window scan does not ("Keep Division" on and off). The window scan also streaks: a pixel that
// leaves the window is added to the colour once more instead of being taken off, so that a line drags every
// colour along that it has passed.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// Handed to every iteration of a pass. The border of `rect` acts like a masked-out pixel.
struct BoundaryPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView regionMask;    ///< which pixels are computed and which count; its row and column bytes gate the
                            ///< lines, but for the rows of a window scan
    MaskView alphaKeepMask; ///< where not 0 a pixel keeps its alpha; only the elements are read
    GaussKernel kernel;
};

/// Handed to every iteration of the gain.
struct AlphaGainRecord {
    PF_EffectWorld* world;
    FrameRect rect;
    double amount; ///< of the whole blur, in pixels: alpha is multiplied by (2 amount + 1) / (amount + 1)
};

// A boundary blur. Each blurs the pixels of `rect` under `regionMask` from `src` into `dst`; `tmp`, a second
// world of the size and depth of `dst`, holds an intermediate state. `src` is never written. All four
// channels of those pixels are written, and no others but for the gain, which goes over every pixel of `rect`
// in the world that the first pass wrote: `dst` and `tmp` must already hold what is to remain elsewhere.
//   alphaKeepMask  where not 0, alpha is left as it is, but for the gain
//   repeat         "Blur Repeat Num", not negative: `repeat` + 1 passes; 0 copies the masked-in pixels
//   progress       reported to after each pass, but not after the gain; or null
//   amount         half-length of the first kernel in pixels; below 2.0 copies the masked-in pixels
// Returns the first error of the host's iteration or progress calls, or PF_Err_OUT_OF_MEMORY where a world
// that the blur needs is missing or a pass found no scratch memory; `dst` then holds a partial result.
using BoundaryBlur = PF_Err(PF_EffectWorld* dst, PF_InData* inData, PF_EffectWorld* src, PF_EffectWorld* tmp,
                            const FrameRect& rect, const MaskPlane& regionMask,
                            const MaskPlane& alphaKeepMask, int32_t repeat, const ProgressCounter* progress,
                            double amount);
BoundaryBlur blurBoundaryRun16;
BoundaryBlur blurBoundaryWindow16;
BoundaryBlur blurBoundaryRun32;
BoundaryBlur blurBoundaryWindow32;

// The single passes, in the form that the host iterates over a BoundaryPassRecord.
PF_Err boundaryRunH16(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryRunV16(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryWindowH16(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryWindowV16(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryRunH32(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryRunV32(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryWindowH32(void* record, A_long thread, A_long i, A_long n);
PF_Err boundaryWindowV32(void* record, A_long thread, A_long i, A_long n);

// The gain, in the form that the host iterates over an AlphaGainRecord.
PF_Err alphaGain16(void* record, A_long thread, A_long i, A_long n);
PF_Err alphaGain32(void* record, A_long thread, A_long i, A_long n);

} // namespace kovalune
