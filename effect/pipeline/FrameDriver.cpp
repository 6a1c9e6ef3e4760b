#include "effect/pipeline/FrameDriver.h"

#include "effect/pipeline/DepthConversion.h"
#include "effect/pipeline/ReportSource.h"
#include "effect/pipeline/Stages.h"
#include "effect/share/AEUtil/WorldBasics.h"

#include <optional>

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

/// The "Base" and "Extract" views show their region alone.
void cutToRegion(Frame& frame) {
    const int32_t view = frame.settings.view;
    if (view == kViewBase || view == kViewExtract) {
        const MaskPlane& region = view == kViewBase ? frame.planes.stageMask : frame.planes.allColorsMask;
        frame.regardless([&] {
            return frame.passes.clearAlphaOutsideOutput(
                frame.inData(), {.dst = frame.settings.outputWorld, .rect = frame.rect(), .mask = region});
        });
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

/// The code of a frame that has no pixels or cannot be rendered; none for all others.
std::optional<PF_Err> endAtOnce(const RenderSettings& settings) {
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
    return std::nullopt;
}

PF_Err renderFrame(const FramePasses& passes, const RenderSettings& settings) {
    // Also for a frame that ends before it has one.
    if (FrameReport* const report = askedReport(); report != nullptr) {
        report->clear();
    }
    if (const std::optional<PF_Err> end = endAtOnce(settings)) {
        return *end;
    }
    PF_InData* const inData = settings.inData;
    const FrameOpening opening(settings, frameScale(inData->downsample_x, inData->downsample_y));
    if (opening.stepTotal == 0) {
        return settings.view == kViewNormal
                   ? AEUtil::copyWorld(inData, settings.inputWorld, settings.outputWorld)
                   : AEUtil::clearWorld(inData, settings.outputWorld);
    }
    const PF_Err copied = AEUtil::copyWorld(inData, settings.inputWorld, settings.outputWorld);
    Frame frame(passes, settings, opening, copied);
    frame.open();
    if (passes.worksWidened) {
        widen(frame);
    }
    const StageEnd baseEnd = runBaseStage(frame);
    if (baseEnd == StageEnd::kNextStage) {
        runProcessStages(frame);
    }
    if (baseEnd != StageEnd::kAbandon) {
        finish(frame);
    }
    return frame.err;
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
