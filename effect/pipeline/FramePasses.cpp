#include "effect/pipeline/FramePasses.h"

namespace kovalune {

const FramePasses kFramePasses8 = {
    .workFormat = PF_PixelFormat_ARGB64,
    .worksWidened = true,
    .coverageOfInput = coverage8,
    .extractColors = extractColors8,
    .coverageOfWork = coverage16,
    .copyMasked = copyMasked16,
    .blurRegionRun = blurRegionRun16,
    .blurRegionWindow = blurRegionWindow16,
    .blurBoundaryRun = blurBoundaryRun16,
    .blurBoundaryWindow = blurBoundaryWindow16,
    .extendColors = extendColors16,
    .restoreMasked = restoreMasked16,
    .applyBoundaryBias = applyBoundaryBias16,
    .clearAlphaOutsideLayer = clearAlphaOutside16,
    .multiplyAlphaOutside = multiplyAlphaOutside16,
    .composeOver = composeOver16,
    .clearAlphaOutsideOutput = clearAlphaOutside8,
};

const FramePasses kFramePasses16 = {
    .workFormat = PF_PixelFormat_ARGB64,
    .worksWidened = false,
    .coverageOfInput = coverage16,
    .extractColors = extractColors16,
    .coverageOfWork = coverage16,
    .copyMasked = copyMasked16,
    .blurRegionRun = blurRegionRun16,
    .blurRegionWindow = blurRegionWindow16,
    .blurBoundaryRun = blurBoundaryRun16,
    .blurBoundaryWindow = blurBoundaryWindow16,
    .extendColors = extendColors16,
    .restoreMasked = restoreMasked16,
    .applyBoundaryBias = applyBoundaryBias16,
    .clearAlphaOutsideLayer = clearAlphaOutside16,
    .multiplyAlphaOutside = multiplyAlphaOutside16,
    .composeOver = composeOver16,
    .clearAlphaOutsideOutput = clearAlphaOutside16,
};

const FramePasses kFramePasses32 = {
    .workFormat = PF_PixelFormat_ARGB128,
    .worksWidened = false,
    .coverageOfInput = coverage32,
    .extractColors = extractColors32,
    .coverageOfWork = coverage32,
    .copyMasked = copyMasked32,
    .blurRegionRun = blurRegionRun32,
    .blurRegionWindow = blurRegionWindow32,
    .blurBoundaryRun = blurBoundaryRun32,
    .blurBoundaryWindow = blurBoundaryWindow32,
    .extendColors = extendColors32,
    .restoreMasked = restoreMasked32,
    .applyBoundaryBias = applyBoundaryBias32,
    .clearAlphaOutsideLayer = clearAlphaOutside32,
    .multiplyAlphaOutside = multiplyAlphaOutside32,
    .composeOver = composeOver32,
    .clearAlphaOutsideOutput = clearAlphaOutside32,
};

} // namespace kovalune
