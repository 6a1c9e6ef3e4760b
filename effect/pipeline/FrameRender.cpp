#include "effect/pipeline/FrameRender.h"

#include "effect/pipeline/BaseStage.h"
#include "effect/pipeline/DepthConversion.h"
#include "effect/pipeline/Frame.h"
#include "effect/pipeline/ProcessStages.h"
#include "effect/pipeline/ReportSource.h"
#include "effect/pipeline/StageAmounts.h"
#include "effect/share/AEUtil/WorldBasics.h"
#include "effect/share/Wrapping.h"

namespace kovalune {
namespace {

bool worldsFit(const RenderSettings& settings) {
    const PF_EffectWorld& input = *settings.inputWorld;
    const PF_EffectWorld& output = *settings.outputWorld;
    return input.width == output.width && input.height == output.height && input.width <= kLargestWorld &&
           input.height <= kLargestWorld;
}

bool rectFits(const RenderSettings& settings) {
    const FrameRect& rect = settings.extentRect;
    return rect.left >= 0 && rect.top >= 0 && rect.left < rect.right && rect.top < rect.bottom &&
           rect.right <= settings.inputWorld->width && rect.bottom <= settings.inputWorld->height;
}

/// Brings the stages' values to the frame's scale and counts the progress steps.
FrameStart scaledStart(const RenderSettings& settings) {
    FrameStart start;
    start.settings = settings;
    start.scale = frameScale(settings.inData->downsample_x, settings.inData->downsample_y);
    for (StageSettings& stage : start.settings.stages) {
        for (ColorEntry& entry : stage.colors) {
            entry.range /= 100.0;
        }
        stage.boundaryBlur = scaledAmount(stage.boundaryBlur, start.scale);
        if (stage.enableProcess != 0) {
            const int32_t steps = wrappingAdd(wrappingMul(3, stage.repeat), 1);
            start.stepTotal = wrappingAdd(start.stepTotal, steps);
        }
    }
    return start;
}

/// Takes an 8-bit frame into its 16-bit worlds.
void widen(Frame& frame) {
    PF_EffectWorld* const wideSource = frame.worlds.wideSource.get();
    PF_EffectWorld* const wideTarget = frame.worlds.wideTarget.get();
    frame.attempt([&] {
        return widenTo16(frame.inData(), {.dst = wideSource,
                                          .src = frame.settings.inputWorld,
                                          .rect = frame.rect(),
                                          .mask = frame.planes.fullMask});
    });
    frame.attempt([&] {
        return widenTo16(frame.inData(), {.dst = wideTarget,
                                          .src = frame.settings.outputWorld,
                                          .rect = frame.rect(),
                                          .mask = frame.planes.fullMask});
    });
    frame.source = wideSource;
    frame.target = wideTarget;
}

void narrow(Frame& frame, PF_EffectWorld* from) {
    frame.attempt([&] {
        return narrowTo8(frame.inData(), {.dst = frame.settings.outputWorld,
                                          .src = from,
                                          .rect = frame.rect(),
                                          .mask = frame.planes.fullMask});
    });
}

/// The "Base" and "Extract" views show their region alone. The cut is made whatever has failed, and its own
/// failure is ignored.
void cutToRegion(Frame& frame) {
    const int32_t view = frame.settings.view;
    if (view == kViewBase || view == kViewExtract) {
        const MaskPlane& region = view == kViewBase ? frame.planes.stageMask : frame.planes.allColorsMask;
        frame.passes.clearAlphaOutsideOutput(
            frame.inData(), {.dst = frame.settings.outputWorld, .rect = frame.rect(), .mask = region});
    }
}

/// A "Process" view shows the chosen stage's layer alone. For a chosen stage that is disabled a widened frame
/// shows nothing, the others the last layer that was made, or nothing where none was.
void showLayer(Frame& frame) {
    if (frame.passes.worksWidened) {
        narrow(frame, frame.worlds.layerWorld.get());
        return;
    }
    PF_EffectWorld* const layer = frame.worlds.previousLayerWorld.get();
    frame.attempt([&] {
        return layer == nullptr ? PF_Err{PF_Err_OUT_OF_MEMORY}
                                : AEUtil::copyWorld(frame.inData(), layer, frame.settings.outputWorld);
    });
}

void finish(Frame& frame) {
    if (frame.passes.worksWidened) {
        narrow(frame, frame.target);
    }
    cutToRegion(frame);
    if (frame.settings.view >= kViewProcess1) {
        showLayer(frame);
    }
}

PF_Err renderStages(const FramePasses& passes, const FrameStart& start) {
    Frame frame(passes, start);
    if (passes.worksWidened) {
        widen(frame);
    }
    switch (runBaseStage(frame)) {
    case StageEnd::kAbandon:
        return frame.err;
    case StageEnd::kNextStage:
        runProcessStages(frame);
        break;
    case StageEnd::kFinish:
        break;
    }
    finish(frame);
    return frame.err;
}

PF_Err renderFrame(const FramePasses& passes, const RenderSettings& settings) {
    // Also for a frame that ends before it has one.
    if (FrameReport* const report = askedReport(); report != nullptr) {
        report->clear();
    }
    if (settings.inputWorld == nullptr || settings.outputWorld == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    if (!worldsFit(settings)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (settings.extentRect.width() == 0 || settings.extentRect.height() == 0) {
        return PF_Err_NONE;
    }
    if (!rectFits(settings)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (settings.inputWorld->data == nullptr || settings.outputWorld->data == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    FrameStart start = scaledStart(settings);
    if (start.stepTotal == 0) {
        return settings.view == kViewNormal
                   ? AEUtil::copyWorld(settings.inData, settings.inputWorld, settings.outputWorld)
                   : AEUtil::clearWorld(settings.inData, settings.outputWorld);
    }
    start.err = AEUtil::copyWorld(settings.inData, settings.inputWorld, settings.outputWorld);
    return renderStages(passes, start);
}

} // namespace

PF_Err renderFrame8(RenderSettings settings) {
    return renderFrame(kFramePasses8, settings);
}
PF_Err renderFrame16(RenderSettings settings) {
    return renderFrame(kFramePasses16, settings);
}
PF_Err renderFrame32(RenderSettings settings) {
    return renderFrame(kFramePasses32, settings);
}

} // namespace kovalune
