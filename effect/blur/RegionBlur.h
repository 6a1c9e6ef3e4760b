// The blur of the Base stage: a Gaussian mean of colour inside a region, normalised over the weights that
// fell inside it, so that a pixel at the region's edge keeps its brightness and nothing outside the region
// contributes. Alpha is left alone, and straight colour is averaged as it stands.
//
// The 8-bit frames are worked on in 16 bits. The run scan keeps the parts of a region apart that a gap
// divides, the window scan does not ("Keep Division" on and off).
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
class RegionPass;

/// Handed to every iteration of a pass. The border of `rect` acts like a masked-out pixel.
struct BlurPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView mask; ///< its row and column bytes gate the lines
    GaussKernel kernel;
    Workbench* workbench = nullptr; ///< of the frame, or null: an iteration then takes memory of its own
};

/// What a region blur is to do. It blurs the masked-in pixels of `rect` from `src` into `dst`; `tmp`, a second world of
/// the size and depth of `dst`, holds an intermediate state. `src` is never written. `dst` and `tmp` must already hold
/// what is to remain in pixels that the blur does not write: masked-out pixels, and the alpha of masked-in ones.
struct RegionBlurJob {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    PF_EffectWorld* tmp;
    FrameRect rect;
    MaskView mask;
    /// "Blur Repeat Num", not negative: `repeat` + 1 passes; 0 copies the masked-in pixels instead.
    int32_t repeat;
    /// Half-length of the first kernel in pixels; below 2.0 copies the masked-in pixels instead.
    double amount;
    /// Reported to after each pass, or null.
    const ProgressCounter* progress = nullptr;
    /// What the host is asked for.
    A_long iterations = PF_Iterations_ONCE_PER_PROCESSOR;
    /// Where the passes find scratch memory; null: each iteration takes its own.
    Workbench* workbench = nullptr;
};

using RegionBlur = PF_Err(PF_InData* inData, const RegionBlurJob& job);

/// Returns the first error of the host's iteration or progress calls, or PF_Err_OUT_OF_MEMORY where a world
/// that the blur needs is missing or a pass found no scratch memory; `dst` then holds a partial result.
template <class Format, class Scan>
[[nodiscard]] PF_Err blurRegion(PF_InData* inData, const RegionBlurJob& job);

extern template PF_Err blurRegion<Argb16, RunScan>(PF_InData*, const RegionBlurJob&);
extern template PF_Err blurRegion<Argb16, WindowScan>(PF_InData*, const RegionBlurJob&);
extern template PF_Err blurRegion<Argb32, RunScan>(PF_InData*, const RegionBlurJob&);
extern template PF_Err blurRegion<Argb32, WindowScan>(PF_InData*, const RegionBlurJob&);

inline constexpr RegionBlur& blurRegionRun16 = blurRegion<Argb16, RunScan>;
inline constexpr RegionBlur& blurRegionWindow16 = blurRegion<Argb16, WindowScan>;
inline constexpr RegionBlur& blurRegionRun32 = blurRegion<Argb32, RunScan>;
inline constexpr RegionBlur& blurRegionWindow32 = blurRegion<Argb32, WindowScan>;

extern template PF_Err blurRows<RegionPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<RegionPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<RegionPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<RegionPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<RegionPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<RegionPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurRows<RegionPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);
extern template PF_Err blurColumns<RegionPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);

// The single passes, in the form that the host iterates over a BlurPassRecord.
inline constexpr auto& passRunH16 = blurRows<RegionPass<Argb16, RunScan>>;
inline constexpr auto& passRunV16 = blurColumns<RegionPass<Argb16, RunScan>>;
inline constexpr auto& passWindowH16 = blurRows<RegionPass<Argb16, WindowScan>>;
inline constexpr auto& passWindowV16 = blurColumns<RegionPass<Argb16, WindowScan>>;
inline constexpr auto& passRunH32 = blurRows<RegionPass<Argb32, RunScan>>;
inline constexpr auto& passRunV32 = blurColumns<RegionPass<Argb32, RunScan>>;
inline constexpr auto& passWindowH32 = blurRows<RegionPass<Argb32, WindowScan>>;
inline constexpr auto& passWindowV32 = blurColumns<RegionPass<Argb32, WindowScan>>;

} // namespace kovalune
