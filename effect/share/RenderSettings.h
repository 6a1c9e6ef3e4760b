// The plain record of all that a render needs to know: parameter values as the host holds them, worlds,
// format and rectangles. It crosses from the frame to the pipeline, and in the SmartFX flow it waits in a
// host handle between two commands, so it owns nothing and may be copied byte by byte. Its layout is frozen, with the members
// that nothing reads.
#pragma once

#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <cstdint>
#include <type_traits>

namespace kovalune {

struct ColorEntry {
    uint8_t enable = 0;
    PF_Pixel color = {};
    double range = 0.0; ///< percent, 0 to 100
};

/// Stage 0 is Base, stages 1 to 4 are Process 1 to 4; each reads the fields that its controls feed.
struct StageSettings {
    ColorEntry colors[4];
    double blurAmount = 0.0; ///< in the slider's own units
    int32_t repeat = 0;
    double boundaryBlur = 0.0;  ///< in the slider's own units
    int32_t stageReserved0 = 0; ///< frozen, as its likes below
    double boundaryBias = 0.0;
    uint8_t keepDivision = 0;
    uint8_t stageReserved1 = 0;
    uint8_t keepProcess = 0;
    uint8_t enableProcess = 0;
    int32_t stageReserved2 = 0;
    int32_t stageReserved3 = 0;
};

/// Values of the "View" popup. The value 2 is a separator line of the host's menu and cannot be chosen.
enum View : int32_t {
    kViewNormal = 1,
    kViewExtract = 3,
    kViewBase = 4,
    kViewProcess1 = 5,
    kViewProcess4 = 8,
};

struct RenderSettings {
    int32_t view = kViewNormal;
    StageSettings stages[5];
    double boundaryScale = 1.5; ///< frozen
    PF_InData* inData = nullptr;
    PF_OutData* outData = nullptr; ///< frozen
    PF_EffectWorld* inputWorld = nullptr;
    PF_EffectWorld* outputWorld = nullptr;
    PF_PixelFormat pixelFormat = PF_PixelFormat_INVALID;
    FrameRect extentRect;
    FrameRect originRect;      ///< frozen
    uint8_t fromPreRender = 0; ///< frozen

    /// Base is always on. The other ones stay where no parameter overwrites them: the Process stages are
    /// gated by `enableProcess`, and the pipeline takes the entries' `enable` as it stands.
    RenderSettings() {
        stages[0].enableProcess = 1;
        stages[0].colors[0].enable = 1;
        stages[0].colors[1].enable = 1;
        stages[1].colors[0].enable = 1;
        stages[1].colors[1].enable = 1;
    }
};

static_assert(std::is_standard_layout_v<RenderSettings>, "parameters address its fields by their place");
static_assert(std::is_trivially_copyable_v<RenderSettings>, "it lives in a host handle");
static_assert(std::is_trivially_destructible_v<RenderSettings>, "nobody destroys the one in the handle");

} // namespace kovalune
