#include "effect/pipeline/Frame.h"

#include "effect/pipeline/ReportSource.h"

#include <algorithm>

namespace kovalune {
namespace {

MaskPlane newPlane(const RenderSettings& settings) {
    return {settings.inData, settings.extentRect.width(), settings.extentRect.height()};
}

MaskPlane newPlane(const RenderSettings& settings, uint8_t content) {
    MaskPlane plane = newPlane(settings);
    plane.clearTo(content);
    return plane;
}

/// Every world has the size of the output.
AEUtil::EffectWorldPtr newWorld(const RenderSettings& settings, PF_PixelFormat format, char cleared = 0) {
    const PF_EffectWorld& output = *settings.outputWorld;
    return AEUtil::WorldSuite::newWorld(settings.inData, output.width, output.height, cleared, format);
}

AEUtil::EffectWorldPtr newWideWorld(const RenderSettings& settings, const FramePasses& passes) {
    return passes.worksWidened ? newWorld(settings, PF_PixelFormat_ARGB64) : AEUtil::EffectWorldPtr();
}

constexpr char kCleared = 1;
constexpr char kUncleared = 0;

/// Nothing writes the masked pixels' world outside the rectangle, but boundary smoothing reads all of it: what it finds
/// there must be transparent.
char clearingOfMasked(const RenderSettings& s) {
    const FrameRect& rect = s.extentRect;
    const PF_EffectWorld& world = *s.outputWorld;
    const bool isWhole =
        rect.left == 0 && rect.top == 0 && rect.right == world.width && rect.bottom == world.height;
    return isWhole ? kUncleared : kCleared;
}

/// Whether a "Process" view will show the last layer although no stage makes one: then it must be transparent.
char clearingOfPreviousLayer(const RenderSettings& s, const FramePasses& passes) {
    if (passes.worksWidened || s.view < kViewProcess1) {
        return kUncleared;
    }
    const int32_t chosen = std::min<int32_t>(s.view, kViewProcess4) - kViewBase;
    const bool anyEnabled = std::any_of(&s.stages[1], &s.stages[1] + chosen,
                                        [](const StageSettings& stage) { return stage.enableProcess != 0; });
    return anyEnabled ? kUncleared : kCleared;
}

/// What the frame fills.
FrameReport* newReport(const FrameRect& rect) {
    FrameReport* const report = askedReport();
    if (report != nullptr) {
        report->pixels = int64_t{rect.width()} * rect.height();
    }
    return report;
}

} // namespace

FramePlanes::FramePlanes(const RenderSettings& s)
    : extractMask(newPlane(s)), extendLimitMask(newPlane(s)), processUnionMask(newPlane(s, 0)),
      sparePlane0(newPlane(s, 0)), sparePlane1(newPlane(s, 0)), stageMask(newPlane(s, 0)),
      allColorsMask(newPlane(s, 0)), fullMask(newPlane(s, 1)), inputCoverage(newPlane(s)),
      layerLimitMask(newPlane(s, 0)), regionMask(newPlane(s, 0)), extendedCoverage(newPlane(s)),
      stageCopyMask(newPlane(s)), outsideMask(newPlane(s)) {}

FrameWorlds::FrameWorlds(const RenderSettings& s, const FramePasses& passes)
    : maskedWorld(newWorld(s, passes.workFormat, clearingOfMasked(s))),
      baseSmoothWorld(newWorld(s, passes.workFormat)), wideSource(newWideWorld(s, passes)),
      wideTarget(newWideWorld(s, passes)), spareWide(newWideWorld(s, passes)),
      extendedWorld(newWorld(s, passes.workFormat, kCleared)),
      smoothedWorld(newWorld(s, passes.workFormat, kCleared)),
      layerWorld(newWorld(s, passes.workFormat, kCleared)), blurScratchWorld(newWorld(s, passes.workFormat)),
      extendScratchWorld(newWorld(s, passes.workFormat)), spareWork(newWorld(s, passes.workFormat)),
      previousLayerWorld(newWorld(s, passes.workFormat, clearingOfPreviousLayer(s, passes))) {}

Frame::Frame(const FramePasses& framePasses, const RenderSettings& frameSettings, const FrameOpening& opening,
             PF_Err soFar)
    : passes(framePasses), settings(frameSettings), stages(opening.stages), planes(settings),
      err(soFar), progress{settings.inData, settings.inData->effect_ref, opening.stepTotal, 0},
      source(settings.inputWorld), target(settings.outputWorld), report(newReport(rect())) {}

void Frame::open() {
    attempt(
        [&] { return passes.coverageOfInput(planes.inputCoverage, inData(), settings.inputWorld, rect()); });
    worlds = FrameWorlds(settings, passes);
}

} // namespace kovalune
