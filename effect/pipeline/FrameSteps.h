// How often a frame reports its progress, as far as its settings decide that.
#pragma once

#include "effect/Kovalune.h"
#include "effect/share/RenderSettings.h"

#include <array>
#include <cstdint>

namespace kovalune {

/// The calls of the host's progress function that each stage makes in a frame that neither fails nor is cancelled.
/// Of the settings the view counts, and of the stages the switch, the amounts and the repeats, all as they are read.
std::array<int32_t, kStageCount> progressCallsOf(const RenderSettings& settings, double scale);

} // namespace kovalune
