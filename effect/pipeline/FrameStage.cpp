#include "effect/pipeline/FrameStage.h"

#include "effect/blur/BlurSequence.h"
#include "effect/share/Integers.h"

#include <algorithm>

namespace kovalune {
namespace {

constexpr double kWholeRangePercent = 100.0;
/// A blur of a Process stage spreads to either side of the border, half of the reach on each.
constexpr double kHalfLengthOfReach = 0.5;

/// A slider's value as whole pixels of the frame, 1 for 0.
double scaledAmount(double amount, double scale) {
    return truncToInt32(amount * scale + 0.5) + 1.0;
}

/// At reduced resolution a stage with many repeats gets a shorter boundary, in proportion.
double reachOf(const StageSettings& stage, double scale) {
    const double reach = scaledAmount(stage.boundaryBlur, scale);
    return scale < 1.0 ? reach - truncToInt32((reach + 4.0) * stage.repeat / 80.0) : reach;
}

FrameStage commonOf(const StageSettings& stage) {
    FrameStage frameStage;
    frameStage.isEnabled = stage.enableProcess != 0;
    for (std::size_t entry = 0; entry < kStageColors; ++entry) {
        const ColorEntry& color = stage.colors[entry];
        frameStage.colors[entry] = {color.enable != 0, color.color, color.range / kWholeRangePercent};
    }
    frameStage.repeat = stage.repeat;
    frameStage.keepDivision = stage.keepDivision != 0;
    return frameStage;
}

FrameStage baseStageOf(const StageSettings& stage, double scale) {
    FrameStage base = commonOf(stage);
    base.halfLengthPixels = scaledAmount(stage.blurAmount, scale);
    return base;
}

FrameStage processStageOf(const StageSettings& stage, double scale) {
    FrameStage process = commonOf(stage);
    process.reachPixels = reachOf(stage, scale);
    process.halfLengthPixels = process.reachPixels * kHalfLengthOfReach;
    process.biasPercent = stage.boundaryBias;
    process.keepProcess = stage.keepProcess != 0;
    return process;
}

/// A stage ticks before its blur, and a blur that is no copy reports after each of its passes.
int32_t progressCallsOf(const FrameStage& stage) {
    return blurIsCopy(stage.halfLengthPixels, stage.repeat) ? 1 : 2 + std::max(stage.repeat, 1);
}

} // namespace

double frameScale(const PF_RationalScale& horizontal, const PF_RationalScale& vertical) {
    const auto ratio = [](const PF_RationalScale& scale) {
        return static_cast<double>(scale.num) / static_cast<double>(scale.den);
    };
    return ratio(vertical) < ratio(horizontal) ? ratio(vertical) : ratio(horizontal);
}

FrameOpening::FrameOpening(const RenderSettings& settings, double scale) {
    stages[0] = baseStageOf(settings.stages[0], scale);
    for (std::size_t number = 1; number < kStageCount; ++number) {
        stages[number] = processStageOf(settings.stages[number], scale);
    }
    for (const FrameStage& stage : stages) {
        if (stage.isEnabled) {
            stepTotal = wrappingAdd(stepTotal, wrappingAdd(wrappingMul(3, stage.repeat), 1));
        }
    }
}

std::array<int32_t, kStageCount> progressCallsOf(const RenderSettings& settings, double scale) {
    const FrameOpening opening(settings, scale);
    std::array<int32_t, kStageCount> calls = {};
    // Base runs whatever its switch says.
    calls[0] = progressCallsOf(opening.stages[0]);
    if (settings.view == kViewBase) {
        return calls;
    }
    for (std::size_t number = 1; number < kStageCount; ++number) {
        const FrameStage& stage = opening.stages[number];
        calls[number] = stage.isEnabled ? progressCallsOf(stage) : 0;
        if (settings.view == viewOfStage(number)) {
            break;
        }
    }
    return calls;
}

} // namespace kovalune
