// Boundary smoothing: a morphological anti-aliasing pass. It rewrites the pixels along every stair-step of a hard border so
// that the border carries a graded ramp of mixed colour. It looks only at the pattern of differences between neighbouring
// pixels of one image and knows nothing of masks, stages or the frame.
//
// The method follows the idea of A. Reshetov, "Morphological Antialiasing" (2009): find the runs of a border, and blend along
// them as if the border were a straight line through the middles of its steps.
//
//   source --copy--> destination --compare--> EdgeFlagMap (read-only)
//                         ^                        |
//                         +---- blends, row by row-+   colours always from the source
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// The context of a call; the caller owns it and all that it points to. Both worlds are of `pixelFormat`.
struct SmoothParams {
    int32_t threshold = 10;   ///< colour difference limit, 0 to 255 in every format
    int32_t strength = 70;    ///< percent that stretches every ramp, 0 to 100; 0 copies only
    int32_t curve = 0;        ///< S-curve of the ramps, -100 to 100
    int32_t keyEnabled = 0;   ///< not 0: pixels of a key colour, or all others, count as transparent
    int32_t keyRed = 255;     ///< 0 to 255; only the low byte is read
    int32_t keyGreen = 255;   ///< likewise
    int32_t keyBlue = 255;    ///< likewise
    int32_t keyTolerance = 0; ///< 0 to 255, over the sum of the three channels
    int32_t keyOnly = 0;      ///< 0 removes the key colour, anything else keeps only it
    int32_t reserved0 = 0;    ///< frozen
    int32_t reserved1 = 0;    ///< frozen
    PF_InData* inData = nullptr;
    PF_PixelFormat pixelFormat = PF_PixelFormat_INVALID;
    PF_EffectWorld* srcWorld = nullptr; ///< never written
    PF_EffectWorld* dstWorld = nullptr; ///< its former contents are discarded; another world than `srcWorld`
};

/// Fills `dstWorld` with the smoothed image, serially, on the calling thread. Returns a host code:
/// - PF_Err_UNRECOGNIZED_PARAM_TYPE: the format is none of the three. Nothing was written.
/// - PF_Err_BAD_CALLBACK_PARAM: the worlds differ in size, are the same one, or one is missing. Nothing was written.
/// - The host's code of its copy or of the memory for the flag map; the destination then holds what the copy left.
/// Throws where the host lacks a suite.
[[nodiscard]] PF_Err smoothBoundaries(const SmoothParams& params);

} // namespace kovalune
