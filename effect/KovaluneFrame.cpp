// What tools ask about frames.

#include "effect/Kovalune.h"

#include "effect/pipeline/DepthConversion.h"
#include "effect/pipeline/FrameStage.h"
#include "effect/pipeline/ReportSource.h"

#include <utility>

namespace kovalune {
namespace {

/// Of the thread: frames may be rendered on several at once.
thread_local FrameReport* threadReport = nullptr;

} // namespace

uint8_t matchedLevel(uint8_t channel) {
    return to8Bits(channel);
}
uint8_t matchedLevel(uint16_t channel) {
    return to8Bits(channel);
}
uint8_t matchedLevel(float channel) {
    return to8Bits(channel);
}

std::array<int32_t, kStageCount> progressCalls(const ProgressSettings& settings) {
    RenderSettings record;
    record.view = settings.view;
    record.stages[0].blurAmount = settings.stages[0].amount;
    for (std::size_t number = 0; number < kStageCount; ++number) {
        const ProgressSettings::Stage& stage = settings.stages[number];
        record.stages[number].enableProcess = stage.enabled ? 1 : 0;
        record.stages[number].boundaryBlur = stage.amount;
        record.stages[number].repeat = stage.repeat;
    }
    return progressCallsOf(record, frameScale(settings.downsampleX, settings.downsampleY));
}

FrameReportScope::FrameReportScope(FrameReport& report) : outer_(std::exchange(threadReport, &report)) {
    report.clear();
    reportSource.store([] { return threadReport; }, std::memory_order_release);
}

FrameReportScope::~FrameReportScope() {
    threadReport = outer_;
}

} // namespace kovalune
