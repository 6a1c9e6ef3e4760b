#include "effect/pipeline/BaseStage.h"

#include "effect/pipeline/StageRegion.h"
#include "effect/share/Truncate.h"

namespace kovalune {
namespace {

/// Amounts of blur, in pixels, that are small enough for stair-steps to show through.
constexpr double kSmoothedFrom = 2.0;
constexpr double kSmoothedTo = 15.0;

ColorMatches baseColors(Frame& frame) {
    ColorMatches matches;
    HlsColor hls;
    for (const ColorEntry& entry : frame.settings.stages[0].colors) {
        if (entry.enable != 0) {
            addColorMatch(frame, matches, entry, hls);
        }
    }
    return matches;
}

} // namespace

StageEnd runBaseStage(Frame& frame) {
    const StageSettings& base = frame.settings.stages[0];
    const double amount = truncToInt32(base.blurAmount * frame.scale + 0.5) + 1.0;
    extractColors(frame, baseColors(frame));
    frame.planes.stageMask.unionWith(frame.planes.extractMask);
    mergeStageMask(frame);
    PF_EffectWorld* blurInput = frame.source;
    const bool smoothBase = amount >= kSmoothedFrom && amount <= kSmoothedTo;
    if (smoothBase) {
        blurInput = frame.worlds.baseSmoothWorld.get();
        smoothMasked(frame, frame.source, frame.planes.stageMask, blurInput);
    }
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
