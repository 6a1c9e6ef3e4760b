#include "effect/pipeline/BaseStage.h"

#include "effect/pipeline/ColorMatch.h"
#include "effect/share/Truncate.h"
#include "effect/smoothing/SmoothBoundaries.h"

namespace kovalune {
namespace {

/// Amounts of blur, in pixels, that are small enough for stair-steps to show through.
constexpr double kSmoothedFrom = 2.0;
constexpr double kSmoothedTo = 15.0;

/// A conversion that fails is the frame's failure; the list then goes on with what the conversions left
/// behind.
ColorMatches baseColors(Frame& frame) {
    ColorMatches matches;
    HlsColor hls;
    for (const ColorEntry& entry : frame.settings.stages[0].colors) {
        if (entry.enable == 0) {
            continue;
        }
        frame.attempt([&] { return convertToHls(frame.inData(), entry.color, hls); });
        matches.push_back(makeColorMatch(hls, entry.range));
    }
    return matches;
}

/// The matching always reads the input, so that a stage does not depend on the blur of one before it. The
/// masks are merged whatever has failed.
void selectRegion(Frame& frame) {
    FramePlanes& planes = frame.planes;
    const ColorMatches matches = baseColors(frame);
    frame.attempt([&] {
        return frame.passes.extractColors(planes.extractMask, frame.inData(), frame.settings.inputWorld,
                                          frame.rect(), matches);
    });
    planes.stageMask.unionWith(planes.extractMask);
    planes.allColorsMask.unionWith(planes.stageMask);
    planes.regionMask.unionWith(planes.stageMask);
    planes.layerLimitMask.unionWith(planes.stageMask);
}

/// The selected pixels alone, smoothed. The smoothing runs, and its failure is ignored, whatever has failed
/// before.
PF_EffectWorld* smoothRegion(Frame& frame) {
    PF_EffectWorld* const masked = frame.worlds.maskedWorld.get();
    PF_EffectWorld* const smoothed = frame.worlds.baseSmoothWorld.get();
    frame.attempt([&] {
        return frame.passes.copyMasked(frame.inData(), masked, frame.source, frame.rect(),
                                       frame.planes.stageMask, true);
    });
    SmoothParams params;
    params.inData = frame.inData();
    params.pixelFormat = frame.passes.workFormat;
    params.srcWorld = masked;
    params.dstWorld = smoothed;
    smoothBoundaries(params);
    return smoothed;
}

} // namespace

StageEnd runBaseStage(Frame& frame) {
    const StageSettings& base = frame.settings.stages[0];
    const double amount = truncToInt32(base.blurAmount * frame.scale + 0.5) + 1.0;
    selectRegion(frame);
    const bool smoothBase = amount >= kSmoothedFrom && amount <= kSmoothedTo;
    PF_EffectWorld* const blurInput = smoothBase ? smoothRegion(frame) : frame.source;
    frame.attempt([&] { return frame.progress.tick(); });
    if (frame.err != PF_Err_NONE) {
        return StageEnd::kAbandon;
    }
    const auto blur = base.keepDivision != 0 ? frame.passes.blurRegionRun : frame.passes.blurRegionWindow;
    frame.err = blur(frame.target, frame.inData(), PF_Iterations_ONCE_PER_PROCESSOR, blurInput,
                     frame.worlds.maskedWorld.get(), frame.rect(), frame.planes.stageMask, base.repeat,
                     &frame.progress, amount);
    return frame.settings.view == kViewBase ? StageEnd::kFinish : StageEnd::kNextStage;
}

} // namespace kovalune
