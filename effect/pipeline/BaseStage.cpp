#include "effect/pipeline/StageRegion.h"
#include "effect/pipeline/Stages.h"

namespace kovalune {
namespace {

/// Blurs that are short enough for stair-steps to show through.
constexpr double kSmoothedFromPixels = 2.0;
constexpr double kSmoothedToPixels = 15.0;

ColorMatches baseColors(Frame& frame) {
    ColorMatches matches;
    HlsColor hls;
    for (const FrameColor& color : frame.stages[0].colors) {
        if (color.isEnabled) {
            addColorMatch(frame, matches, color, hls);
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
        if (frame.stages[0].colors[entry].isEnabled) {
            report.selected[entry] = counts[match++];
        }
    }
}

void reportChanged(Frame& frame) {
    if (frame.report != nullptr && frame.report->countsChanges && !frame.failed()) {
        frame.report->stages[0].changed =
            frame.passes.countChanged(*frame.source, *frame.target, frame.rect());
    }
}

} // namespace

StageEnd runBaseStage(Frame& frame) {
    const FrameStage& base = frame.stages[0];
    reportSelected(frame, extractColors(frame, baseColors(frame)));
    frame.planes.stageMask.unionWith(frame.planes.extractMask);
    mergeStageMask(frame);
    PF_EffectWorld* blurInput = frame.source;
    const bool smoothBase =
        base.halfLengthPixels >= kSmoothedFromPixels && base.halfLengthPixels <= kSmoothedToPixels;
    if (smoothBase) {
        blurInput = frame.worlds.baseSmoothWorld.get();
        smoothMasked(frame, frame.source, frame.planes.stageMask, blurInput);
    }
    frame.attempt([&] { return frame.progress.tick(); });
    if (frame.failed()) {
        return StageEnd::kAbandon;
    }
    const auto blur = base.keepDivision ? frame.passes.blurRegionRun : frame.passes.blurRegionWindow;
    frame.note(blur(frame.inData(), {.dst = frame.target,
                                     .src = blurInput,
                                     .tmp = frame.worlds.maskedWorld.get(),
                                     .rect = frame.rect(),
                                     .mask = frame.planes.stageMask,
                                     .repeat = base.repeat,
                                     .amount = base.halfLengthPixels,
                                     .progress = &frame.progress,
                                     .workbench = &frame.workbench}));
    reportChanged(frame);
    return frame.settings.view == kViewBase ? StageEnd::kFinish : StageEnd::kNextStage;
}

} // namespace kovalune
