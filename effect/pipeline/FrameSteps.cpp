#include "effect/pipeline/FrameSteps.h"

#include "effect/blur/BlurSequence.h"
#include "effect/pipeline/StageAmounts.h"

#include <algorithm>

namespace kovalune {
namespace {

/// A stage ticks before its blur, and a blur that is no copy reports behind each of its passes.
int32_t stageCalls(double amount, int32_t repeat) {
    return blurIsCopy(amount, repeat) ? 1 : 2 + std::max(repeat, 1);
}

} // namespace

std::array<int32_t, kStageCount> progressCallsOf(const RenderSettings& settings, double scale) {
    std::array<int32_t, kStageCount> calls = {};
    const StageSettings& base = settings.stages[0];
    calls[0] = stageCalls(scaledAmount(base.blurAmount, scale), base.repeat);
    if (settings.view == kViewBase) {
        return calls;
    }
    for (int32_t number = 1; number <= 4; ++number) {
        const StageSettings& stage = settings.stages[number];
        if (stage.enableProcess != 0) {
            const double reach = extensionReach(scaledAmount(stage.boundaryBlur, scale), stage.repeat, scale);
            calls[static_cast<std::size_t>(number)] = stageCalls(boundaryAmount(reach), stage.repeat);
        }
        if (settings.view == kViewBase + number) {
            break;
        }
    }
    return calls;
}

} // namespace kovalune
