// What the three frame drivers differ in: which passes they use. The sequence itself exists once.
#pragma once

#include "effect/blur/BoundaryBlur.h"
#include "effect/blur/ColorExtension.h"
#include "effect/blur/FinishingPasses.h"
#include "effect/blur/RegionBlur.h"
#include "effect/pipeline/ColorExtraction.h"
#include "effect/pipeline/Coverage.h"
#include "effect/pipeline/PixelCounts.h"
#include "effect/raster/MaskedCopy.h"
#include "hostapi/HostApi.h"

namespace kovalune {

struct FramePasses {
    PF_PixelFormat workFormat;
    bool worksWidened; ///< the frame is worked on in 16-bit worlds, widened at its start and narrowed at its
                       ///< end
    decltype(&coverage8) coverageOfInput;
    decltype(&extractColors8) extractColors;
    decltype(&coverage16) coverageOfWork;
    MaskedPass* copyMasked;
    RegionBlur* blurRegionRun;
    RegionBlur* blurRegionWindow;
    BoundaryBlur* blurBoundaryRun;
    BoundaryBlur* blurBoundaryWindow;
    ColorExtension* extendColors;
    FinishingPass* restoreMasked;
    FinishingPass* applyBoundaryBias;
    FinishingPass* clearAlphaOutsideLayer;
    FinishingPass* multiplyAlphaOutside;
    FinishingPass* composeOver;
    FinishingPass* clearAlphaOutsideOutput;
    // For a report.
    PixelCopy* copyPixels;
    ChangeCount* countChanged;
    OutsideCount* countOutside;
};

extern const FramePasses kFramePasses8;
extern const FramePasses kFramePasses16;
extern const FramePasses kFramePasses32;

} // namespace kovalune
