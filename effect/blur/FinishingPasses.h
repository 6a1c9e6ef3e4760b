// The small passes that finish a stage, row by row over a rectangle: putting pixels back, shaping the alpha of
// a stage's layer, and laying the layer over the picture.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Handed to every iteration of a finishing pass; element (x, y) of the mask stands for pixel (x, y) of
/// `rect`. What a pass does not use stays empty.
struct FinishPassRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    FrameRect rect;
    MaskView mask;
    double bias = 0.0;
};

// Each returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is missing. Nothing outside `rect` is
// read or written, and `src` never.
using MaskedFinish = PF_Err(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src,
                            const FrameRect& rect, const MaskPlane& mask);

/// Whole pixels from `src` to `dst` where the mask is not 0; rows without activity are not looked at.
MaskedFinish restoreMasked16;
MaskedFinish restoreMasked32;

/// Where the mask is 0, the alpha of `dst` is multiplied by that of `src`.
MaskedFinish multiplyAlphaOutside16;
MaskedFinish multiplyAlphaOutside32;

/// The alpha of `dst` becomes 0 where the mask is 0.
using AlphaClearing = PF_Err(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                             const MaskPlane& mask);
AlphaClearing clearAlphaOutside8;
AlphaClearing clearAlphaOutside16;
AlphaClearing clearAlphaOutside32;

/// A tone curve on the alpha of `dst`, where the mask is not 0 and alpha is not 0. `bias` is a percentage: 0 to
/// 100 is a raised cosine that narrows to a step near a tenth, and already steepens the middle at 0; below 0
/// to -100 is a straight ramp that keeps full alpha and pulls the rest down.
using BoundaryBias = PF_Err(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                            const MaskPlane& mask, double bias);
BoundaryBias applyBoundaryBias16;
BoundaryBias applyBoundaryBias32;

/// Lays `src` over `dst`: where the alpha of `src` is not 0, the colour of `dst` becomes the straight colour of
/// the two composed. The alpha of `dst` stays.
using LayerOver = PF_Err(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect);
LayerOver composeOver16;
LayerOver composeOver32;

} // namespace kovalune
