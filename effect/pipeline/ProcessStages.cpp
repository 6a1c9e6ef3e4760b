#include "effect/pipeline/StageRegion.h"
#include "effect/pipeline/Stages.h"
#include "effect/share/AEUtil/WorldBasics.h"

#include <utility>

namespace kovalune {
namespace {

/// Reaches that are short enough for stair-steps to show through.
constexpr double kSmoothedAbovePixels = 1.0;
constexpr double kSmoothedToPixels = 30.0;

/// Whether the loop goes on after a stage.
enum class LoopEnd { kNextStage, kFinish };

PF_Err copyWhole(Frame& frame, PF_EffectWorld* from, PF_EffectWorld* to) {
    return from == nullptr || to == nullptr ? PF_Err{PF_Err_OUT_OF_MEMORY}
                                            : AEUtil::copyWorld(frame.inData(), from, to);
}

/// One Process stage of a frame.
class ProcessStage {
public:
    ProcessStage(Frame& frame, std::size_t number)
        : frame_(frame), passes_(frame.passes), planes_(frame.planes), worlds_(frame.worlds),
          stage_(frame.stages[number]), number_(number),
          report_(frame.report != nullptr ? &frame.report->stages[number] : nullptr) {}

    /// Also for a disabled stage.
    void clearWorlds() {
        for (PF_EffectWorld* world :
             {worlds_.extendedWorld.get(), worlds_.smoothedWorld.get(), worlds_.layerWorld.get(),
              worlds_.blurScratchWorld.get(), worlds_.extendScratchWorld.get()}) {
            frame_.attempt([&] {
                return world == nullptr ? PF_Err{PF_Err_OUT_OF_MEMORY}
                                        : AEUtil::clearWorld(frame_.inData(), world);
            });
        }
    }

    /// `lastNumber` is that of the last stage that has made a layer, 0 as long as none has, and becomes this one's once
    /// it does.
    LoopEnd run(std::size_t& lastNumber) {
        selectRegion();
        extendRegion();
        const bool smoothStage =
            stage_.reachPixels > kSmoothedAbovePixels && stage_.reachPixels <= kSmoothedToPixels;
        if (smoothStage) {
            smoothBeyondRegion();
        }
        frame_.attempt([&] { return frame_.progress.tick(); });
        if (frame_.failed()) {
            return LoopEnd::kFinish;
        }
        const bool keepProcess = stage_.keepProcess && lastNumber != 0;
        blurIntoLayer();
        const std::size_t limitedBy = std::exchange(lastNumber, number_);
        if (keepProcess) {
            reportBeforeLimit(limitedBy);
            limitToLastLayer();
        }
        layOver();
        return LoopEnd::kNextStage;
    }

private:
    PF_InData* inData() const { return frame_.inData(); }
    const FrameRect& rect() const { return frame_.rect(); }

    /// The merges are made whatever has failed.
    void selectRegion() {
        ColorMatches matches;
        HlsColor hls;
        addColorMatch(frame_, matches, stage_.colors[0], hls);
        const MatchCounts counts = extractColors(frame_, matches);
        if (report_ != nullptr) {
            report_->ran = true;
            report_->selected[0] = counts[0];
        }
        planes_.processUnionMask.unionWith(planes_.extractMask);
        planes_.stageMask.copyFrom(planes_.extractMask);
        mergeStageMask(frame_);
        planes_.stageCopyMask.copyFrom(planes_.extractMask);
        planes_.extendLimitMask.shareOf(planes_.regionMask);
    }

    void extendRegion() {
        frame_.attempt([&] {
            return passes_.extendColors(inData(), {.dst = worlds_.extendedWorld.get(),
                                                   .src = frame_.source,
                                                   .spreadWorld = worlds_.extendScratchWorld.get(),
                                                   .rect = rect(),
                                                   .limitMask = planes_.extendLimitMask,
                                                   .seedMask = planes_.stageCopyMask,
                                                   .reach = stage_.reachPixels,
                                                   .stopAtGap = stage_.keepDivision,
                                                   .workbench = &frame_.workbench});
        });
        frame_.attempt([&] {
            return passes_.coverageOfWork(planes_.extendedCoverage, inData(), worlds_.extendedWorld.get(),
                                          rect());
        });
    }

    /// The pixels of the region itself are put back after the smoothing, so that it reaches only what lies
    /// beyond it.
    void smoothBeyondRegion() {
        PF_EffectWorld* const extended = worlds_.extendedWorld.get();
        PF_EffectWorld* const smoothed = worlds_.smoothedWorld.get();
        smoothMasked(frame_, extended, planes_.extendedCoverage, smoothed);
        frame_.attempt([&] {
            return passes_.restoreMasked(
                inData(), {.dst = smoothed, .src = extended, .rect = rect(), .mask = planes_.extractMask});
        });
        frame_.attempt([&] { return copyWhole(frame_, smoothed, extended); });
    }

    void blurIntoLayer() {
        planes_.outsideMask.copyFrom(planes_.extractMask);
        planes_.outsideMask.invert();
        const auto blur = stage_.keepDivision ? passes_.blurBoundaryRun : passes_.blurBoundaryWindow;
        frame_.note(blur(inData(), {.dst = worlds_.layerWorld.get(),
                                    .src = worlds_.extendedWorld.get(),
                                    .tmp = worlds_.blurScratchWorld.get(),
                                    .rect = rect(),
                                    .regionMask = planes_.regionMask,
                                    .alphaKeepMask = planes_.stageMask,
                                    .repeat = stage_.repeat,
                                    .amount = stage_.halfLengthPixels,
                                    .progress = &frame_.progress,
                                    .workbench = &frame_.workbench}));
        frame_.attempt([&] {
            return passes_.applyBoundaryBias(inData(), {.dst = worlds_.layerWorld.get(),
                                                        .rect = rect(),
                                                        .mask = planes_.outsideMask,
                                                        .bias = stage_.biasPercent});
        });
    }

    /// Outside the stage's own pixels the new layer cannot be more opaque than the last one.
    void limitToLastLayer() {
        PF_EffectWorld* const layer = worlds_.layerWorld.get();
        frame_.regardless([&] {
            return passes_.clearAlphaOutsideLayer(
                inData(), {.dst = layer, .rect = rect(), .mask = planes_.layerLimitMask});
        });
        frame_.attempt([&] {
            return passes_.multiplyAlphaOutside(inData(), {.dst = layer,
                                                           .src = worlds_.previousLayerWorld.get(),
                                                           .rect = rect(),
                                                           .mask = planes_.extractMask});
        });
    }

    /// Leaves the layer's coverage as what the next stage with "Keep Process" stays inside.
    void layOver() {
        PF_EffectWorld* const layer = worlds_.layerWorld.get();
        frame_.attempt([&] { return copyWhole(frame_, layer, worlds_.previousLayerWorld.get()); });
        reportBeforeLayer();
        frame_.attempt([&] {
            return passes_.composeOver(inData(), {.dst = frame_.target, .src = layer, .rect = rect()});
        });
        reportBehindLayer();
        frame_.attempt(
            [&] { return passes_.coverageOfWork(planes_.layerLimitMask, inData(), layer, rect()); });
    }

    // For a report: what it tells is there whenever nothing has failed.

    bool reports() const { return report_ != nullptr && !frame_.failed(); }
    bool reportsChanges() const { return reports() && frame_.report->countsChanges; }

    /// The picture as it was; null where there was no memory for it.
    PF_EffectWorld* before() const { return worlds_.spareWork.get(); }

    int64_t edgePixels() const {
        return passes_.countOutside(*worlds_.layerWorld.get(), rect(), planes_.extractMask);
    }

    void reportBeforeLimit(std::size_t limitedBy) {
        if (reports()) {
            report_->keptInside = static_cast<int32_t>(limitedBy);
            report_->cut = edgePixels();
        }
    }

    void reportBeforeLayer() {
        const bool isKept = reports() && report_->keptInside != 0;
        if (isKept || reportsChanges()) {
            report_->edge = edgePixels();
            report_->cut = isKept ? report_->cut - report_->edge : 0;
        }
        if (reportsChanges() && before() != nullptr) {
            passes_.copyPixels(*before(), *frame_.target, rect());
        }
    }

    void reportBehindLayer() {
        if (reportsChanges() && before() != nullptr) {
            report_->changed = passes_.countChanged(*before(), *frame_.target, rect());
        }
    }

    Frame& frame_;
    const FramePasses& passes_;
    FramePlanes& planes_;
    FrameWorlds& worlds_;
    const FrameStage& stage_;
    const std::size_t number_;
    StageReport* const report_; ///< null where the frame has none
};

} // namespace

void runProcessStages(Frame& frame) {
    std::size_t lastNumber = 0;
    for (std::size_t number = 1; number < kStageCount; ++number) {
        ProcessStage stage(frame, number);
        stage.clearWorlds();
        if (frame.stages[number].isEnabled && stage.run(lastNumber) == LoopEnd::kFinish) {
            return;
        }
        if (frame.settings.view == viewOfStage(number)) {
            return;
        }
    }
}

} // namespace kovalune
