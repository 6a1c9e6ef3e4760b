// What the opening of a frame makes of its settings. RenderSettings holds what the controls show; here the same values stand
// in the units that the passes work in, converted once for a frame.
#pragma once

#include "effect/Kovalune.h"
#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kovalune {

/// How many of the frame's pixels a pixel at full resolution becomes: the smaller of the two downsample factors serves for
/// both directions.
double frameScale(const PF_RationalScale& horizontal, const PF_RationalScale& vertical);

/// The view that ends with a stage; 0 is Base.
constexpr int32_t viewOfStage(std::size_t number) {
    return kViewBase + static_cast<int32_t>(number);
}

struct FrameColor {
    bool isEnabled = false; ///< of Base; a Process stage has its first colour alone, whatever this says
    PF_Pixel color = {};
    double rangeFraction = 0.0; ///< 1.0 matches every colour, 0.0 the very colour
};

/// A stage of one frame. Lengths are in pixels of the frame.
struct FrameStage {
    bool isEnabled = false;
    std::array<FrameColor, kStageColors> colors = {};
    double reachPixels = 0.0; ///< how far a Process stage extends its colour; 0 in Base, which extends none
    double halfLengthPixels = 0.0; ///< of the blur's first kernel: from its centre, which counts, to its end
    int32_t repeat = 0;            ///< the blur makes one pass more
    double biasPercent = 0.0;      ///< what shapes the alpha of a Process stage's layer
    bool keepDivision = false;     ///< colours do not cross the gaps between regions
    bool keepProcess = false;      ///< the layer stays inside the one of the stage before
};

struct FrameOpening {
    FrameOpening(const RenderSettings& settings, double scale);

    std::array<FrameStage, kStageCount> stages;
    int32_t stepTotal =
        0; ///< estimate of the progress steps; wraps around, and is 0 where no stage is enabled
};

/// The calls of the host's progress function that each stage makes in a frame that neither fails nor is cancelled.
/// Of the settings the view counts, and of the stages the switch, the amounts and the repeats, all as they are read.
std::array<int32_t, kStageCount> progressCallsOf(const RenderSettings& settings, double scale);

} // namespace kovalune
