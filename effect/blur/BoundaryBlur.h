// The blur of a Process stage, which makes a region's edge soft: a Gaussian mean of alpha, normalised over
// the weights that fell inside the region, and beside it the plain mean of the colour of all pixels in the
// window that are not transparent. Once, after the first pass, alpha is raised by a gain and cut at full
// scale.
//
// The 8-bit frames are worked on in 16 bits. The run scan keeps the parts of a region apart that a gap
// divides, the window scan does not ("Keep Division" on and off). The window scan also streaks: a pixel that
// leaves the window is added to the colour once more instead of being taken off, so that a line drags every
// colour along that it has passed.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/blur/LinePassNames.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/raster/Workbench.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

template <class Format, class Scan>
class BoundaryPass;

/// Handed to every iteration of a pass. The border of `rect` acts like a masked-out pixel.
struct BoundaryPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView regionMask;    ///< which pixels are computed and which count; its row and column bytes gate the
                            ///< lines, but for the rows of a window scan
    MaskView alphaKeepMask; ///< where not 0 a pixel keeps its alpha; only the elements are read
    GaussKernel kernel;
    Workbench* workbench = nullptr; ///< of the frame, or null: an iteration then takes memory of its own
};

/// Handed to every iteration of the gain.
struct AlphaGainRecord {
    PF_EffectWorld* world;
    FrameRect rect;
    double amount; ///< of the whole blur, in pixels: alpha is multiplied by (2 amount + 1) / (amount + 1)
};

/// What a boundary blur is to do. It blurs the pixels of `rect` under `regionMask` from `src` into `dst`; `tmp`, a second
/// world of the size and depth of `dst`, holds an intermediate state. `src` is never written. All four channels of those
/// pixels are written, and no others but for the gain, which goes over every pixel of `rect` in the world that the first
/// pass wrote: `dst` and `tmp` must already hold what is to remain elsewhere.
struct BoundaryBlurJob {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    PF_EffectWorld* tmp;
    FrameRect rect;
    MaskView regionMask;
    /// Where not 0, alpha is left as it is, but for the gain.
    MaskView alphaKeepMask;
    /// "Blur Repeat Num", not negative: `repeat` + 1 passes; 0 copies the masked-in pixels.
    int32_t repeat;
    /// Half-length of the first kernel in pixels; below 2.0 copies the masked-in pixels.
    double amount;
    /// Reported to after each pass, but not after the gain; or null.
    const ProgressCounter* progress = nullptr;
    /// What the host is asked for.
    A_long iterations = PF_Iterations_ONCE_PER_PROCESSOR;
    /// Where the passes find scratch memory; null: each iteration takes its own.
    Workbench* workbench = nullptr;
};

using BoundaryBlur = PF_Err(PF_InData* inData, const BoundaryBlurJob& job);

/// Returns the first error of the host's iteration or progress calls, or PF_Err_OUT_OF_MEMORY where a world
/// that the blur needs is missing or a pass found no scratch memory; `dst` then holds a partial result.
template <class Format, class Scan>
[[nodiscard]] PF_Err blurBoundary(PF_InData* inData, const BoundaryBlurJob& job);

extern template PF_Err blurBoundary<Argb16, RunScan>(PF_InData*, const BoundaryBlurJob&);
extern template PF_Err blurBoundary<Argb16, WindowScan>(PF_InData*, const BoundaryBlurJob&);
extern template PF_Err blurBoundary<Argb32, RunScan>(PF_InData*, const BoundaryBlurJob&);
extern template PF_Err blurBoundary<Argb32, WindowScan>(PF_InData*, const BoundaryBlurJob&);

inline constexpr BoundaryBlur& blurBoundaryRun16 = blurBoundary<Argb16, RunScan>;
inline constexpr BoundaryBlur& blurBoundaryWindow16 = blurBoundary<Argb16, WindowScan>;
inline constexpr BoundaryBlur& blurBoundaryRun32 = blurBoundary<Argb32, RunScan>;
inline constexpr BoundaryBlur& blurBoundaryWindow32 = blurBoundary<Argb32, WindowScan>;

extern template PF_Err blurRows<BoundaryPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<BoundaryPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<BoundaryPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<BoundaryPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<BoundaryPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<BoundaryPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<BoundaryPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<BoundaryPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);

// The single passes, in the form that the host iterates over a BoundaryPassRecord.
inline constexpr auto& boundaryRunH16 = blurRows<BoundaryPass<Argb16, RunScan>>;
inline constexpr auto& boundaryRunV16 = blurColumns<BoundaryPass<Argb16, RunScan>>;
inline constexpr auto& boundaryWindowH16 = blurRows<BoundaryPass<Argb16, WindowScan>>;
inline constexpr auto& boundaryWindowV16 = blurColumns<BoundaryPass<Argb16, WindowScan>>;
inline constexpr auto& boundaryRunH32 = blurRows<BoundaryPass<Argb32, RunScan>>;
inline constexpr auto& boundaryRunV32 = blurColumns<BoundaryPass<Argb32, RunScan>>;
inline constexpr auto& boundaryWindowH32 = blurRows<BoundaryPass<Argb32, WindowScan>>;
inline constexpr auto& boundaryWindowV32 = blurColumns<BoundaryPass<Argb32, WindowScan>>;

/// The gain, in the form that the host iterates over an AlphaGainRecord.
template <class Format>
PF_Err alphaGain(void* record, A_long thread, A_long i, A_long n);

extern template PF_Err alphaGain<Argb16>(void*, A_long, A_long, A_long);
extern template PF_Err alphaGain<Argb32>(void*, A_long, A_long, A_long);

inline constexpr auto& alphaGain16 = alphaGain<Argb16>;
inline constexpr auto& alphaGain32 = alphaGain<Argb32>;

} // namespace kovalune
