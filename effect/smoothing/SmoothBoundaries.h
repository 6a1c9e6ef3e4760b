// Boundary smoothing: the pass that turns the stair-steps of hard borders into ramps. It knows nothing of
// masks, stages or the frame; it reads one world and fills another.
//
// For now every picture goes through as it is: source to destination, as at strength 0.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// The context of a call; the caller owns it and all that it points to. Both worlds are of `pixelFormat`.
struct SmoothParams {
    int32_t threshold = 10; ///< colour difference limit, 0 to 255 in every format
    int32_t strength = 70;  ///< percent, 0 to 100; 0 copies only
    int32_t curve = 0;      ///< -100 to 100
    int32_t keyEnabled = 0;
    int32_t keyRed = 255;
    int32_t keyGreen = 255;
    int32_t keyBlue = 255;
    int32_t keyTolerance = 0;
    int32_t keyOnly = 0;
    int32_t reserved0 = 0;
    int32_t reserved1 = 0;
    PF_InData* inData = nullptr;
    PF_PixelFormat pixelFormat = PF_PixelFormat_INVALID;
    PF_EffectWorld* srcWorld = nullptr; ///< never written
    PF_EffectWorld* dstWorld = nullptr; ///< its former contents are discarded
};

/// Fills `dstWorld` from `srcWorld`. Returns the host's code of the copy, PF_Err_UNRECOGNIZED_PARAM_TYPE for
/// an unknown format, PF_Err_BAD_CALLBACK_PARAM for worlds of different size or one that is missing; nothing
/// is written then. Throws where the host lacks the transform suite.
PF_Err smoothBoundaries(const SmoothParams& params);

} // namespace kovalune
