#include "effect/pipeline/FramePasses.h"

#include "effect/blur/FinishingPasses.h"

namespace kovalune {

const FramePasses kFramePasses8 = {
    .workFormat = PF_PixelFormat_ARGB64,
    .worksWidened = true,
    .coverageOfInput = coverage8,
    .extractColors = extractColors8,
    .copyMasked = copyMasked16,
    .blurRegionRun = blurRegionRun16,
    .blurRegionWindow = blurRegionWindow16,
    .clearAlphaOutsideOutput = clearAlphaOutside8,
};

const FramePasses kFramePasses16 = {
    .workFormat = PF_PixelFormat_ARGB64,
    .worksWidened = false,
    .coverageOfInput = coverage16,
    .extractColors = extractColors16,
    .copyMasked = copyMasked16,
    .blurRegionRun = blurRegionRun16,
    .blurRegionWindow = blurRegionWindow16,
    .clearAlphaOutsideOutput = clearAlphaOutside16,
};

const FramePasses kFramePasses32 = {
    .workFormat = PF_PixelFormat_ARGB128,
    .worksWidened = false,
    .coverageOfInput = coverage32,
    .extractColors = extractColors32,
    .copyMasked = copyMasked32,
    .blurRegionRun = blurRegionRun32,
    .blurRegionWindow = blurRegionWindow32,
    .clearAlphaOutsideOutput = clearAlphaOutside32,
};

} // namespace kovalune
