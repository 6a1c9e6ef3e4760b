#include "effect/pipeline/BaseStage.h"

#include "effect/pipeline/StageAmounts.h"
#include "effect/pipeline/StageRegion.h"

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

void reportSelected(Frame& frame, const MatchCounts& counts) {
    if (frame.report == nullptr) {
        return;
    }
    StageReport& report = frame.report->stages[0];
    report.ran = true;
    std::size_t match = 0;
    for (std::size_t entry = 0; entry < kStageColors; ++entry) {
        if (frame.settings.stages[0].colors[entry].enable != 0) {
            report.selected[entry] = counts[match++];
        }
    }
}

void reportChanged(Frame& frame) {
    if (frame.report != nullptr && frame.report->countsChanges && frame.err == PF_Err_NONE) {
        frame.report->stages[0].changed =
            frame.passes.countChanged(*frame.source, *frame.target, frame.rect());
    }
}

} // namespace

StageEnd runBaseStage(Frame& frame) {
    const StageSettings& base = frame.settings.stages[0];
    const double amount = scaledAmount(base.blurAmount, frame.scale);
    reportSelected(frame, extractColors(frame, baseColors(frame)));
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
    frame.err = blur(frame.inData(), {.dst = frame.target,
                                      .src = blurInput,
                                      .tmp = frame.worlds.maskedWorld.get(),
                                      .rect = frame.rect(),
                                      .mask = frame.planes.stageMask,
                                      .repeat = base.repeat,
                                      .amount = amount,
                                      .progress = &frame.progress});
    reportChanged(frame);
    return frame.settings.view == kViewBase ? StageEnd::kFinish : StageEnd::kNextStage;
}

} // namespace kovalune
