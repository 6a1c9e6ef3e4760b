// The small passes that finish a stage, row by row over a rectangle: putting pixels back, shaping the alpha of
// a stage's layer, and laying the layer over the picture.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/raster/PixelTraits.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// What a finishing pass is to do, and what the host iterates over; element (x, y) of the mask stands for pixel (x, y) of
/// `rect`. What a pass does not use stays empty.
struct FinishPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src = nullptr;
    FrameRect rect;
    MaskView mask = {};
    double bias = 0.0; ///< percent, -100 to 100
};

using FinishingPass = PF_Err(PF_InData* inData, FinishPassRecord record);

/// Takes `Step` to the pixels that it applies to. Returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is
/// missing. Nothing outside `rect` is read or written, and `src` never.
template <class Step>
[[nodiscard]] PF_Err finish(PF_InData* inData, FinishPassRecord record);

/// Whole pixels from `src` to `dst` where the mask is not 0; rows without activity are not looked at.
template <class Format>
struct Restore;
extern template PF_Err finish<Restore<Argb16>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<Restore<Argb32>>(PF_InData*, FinishPassRecord);
inline constexpr FinishingPass& restoreMasked16 = finish<Restore<Argb16>>;
inline constexpr FinishingPass& restoreMasked32 = finish<Restore<Argb32>>;

/// Where the mask is 0, the alpha of `dst` is multiplied by that of `src`.
template <class Format>
struct MultiplyAlpha;
extern template PF_Err finish<MultiplyAlpha<Argb16>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<MultiplyAlpha<Argb32>>(PF_InData*, FinishPassRecord);
inline constexpr FinishingPass& multiplyAlphaOutside16 = finish<MultiplyAlpha<Argb16>>;
inline constexpr FinishingPass& multiplyAlphaOutside32 = finish<MultiplyAlpha<Argb32>>;

/// The alpha of `dst` becomes 0 where the mask is 0.
template <class Format>
struct ClearAlpha;
extern template PF_Err finish<ClearAlpha<Argb8>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<ClearAlpha<Argb16>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<ClearAlpha<Argb32>>(PF_InData*, FinishPassRecord);
inline constexpr FinishingPass& clearAlphaOutside8 = finish<ClearAlpha<Argb8>>;
inline constexpr FinishingPass& clearAlphaOutside16 = finish<ClearAlpha<Argb16>>;
inline constexpr FinishingPass& clearAlphaOutside32 = finish<ClearAlpha<Argb32>>;

/// A tone curve on the alpha of `dst`, where the mask is not 0 and alpha is not 0. A `bias` of 0 to 100 is a raised
/// cosine that narrows to a step near a tenth, and already steepens the middle at 0; below 0 to -100 is a straight ramp
/// that keeps full alpha and pulls the rest down.
template <class Format>
struct ShapeAlpha;
extern template PF_Err finish<ShapeAlpha<Argb16>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<ShapeAlpha<Argb32>>(PF_InData*, FinishPassRecord);
inline constexpr FinishingPass& applyBoundaryBias16 = finish<ShapeAlpha<Argb16>>;
inline constexpr FinishingPass& applyBoundaryBias32 = finish<ShapeAlpha<Argb32>>;

/// Lays `src` over `dst`: where the alpha of `src` is not 0, the colour of `dst` becomes the straight colour of
/// the two composed. The alpha of `dst` stays.
template <class Format>
struct ComposeOver;
extern template PF_Err finish<ComposeOver<Argb16>>(PF_InData*, FinishPassRecord);
extern template PF_Err finish<ComposeOver<Argb32>>(PF_InData*, FinishPassRecord);
inline constexpr FinishingPass& composeOver16 = finish<ComposeOver<Argb16>>;
inline constexpr FinishingPass& composeOver32 = finish<ComposeOver<Argb32>>;

} // namespace kovalune
