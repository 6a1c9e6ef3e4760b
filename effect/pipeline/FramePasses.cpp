#include "effect/pipeline/FramePasses.h"

namespace kovalune {

namespace {

constexpr FramePasses kPasses16 = {
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
    .copyPixels = copyPixels16,
    .countChanged = countChanged16,
    .countOutside = countOutside16,
};

/// An 8-bit frame is a 16-bit one but for what touches its input and its output, or tells of it.
constexpr FramePasses widened(FramePasses passes) {
    passes.worksWidened = true;
    passes.coverageOfInput = coverage8;
    passes.extractColors = extractColors8;
    passes.clearAlphaOutsideOutput = clearAlphaOutside8;
    passes.countChanged = countChanged8;
    return passes;
}

} // namespace

constinit const FramePasses kFramePasses8 = widened(kPasses16);

constinit const FramePasses kFramePasses16 = kPasses16;

constinit const FramePasses kFramePasses32 = {
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
    .copyPixels = copyPixels32,
    .countChanged = countChanged32,
    .countOutside = countOutside32,
};

} // namespace kovalune
