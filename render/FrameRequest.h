// What is asked for when a frame is rendered through an effect, whoever asks. A plain record.
#pragma once

#include "effect/Kovalune.h"
#include "host/ParamValue.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace kovalune::render {

class FrameArea;

struct Fraction {
    int32_t numerator = 1;
    int32_t denominator = 1;
};

/// Of a proxy, across and down; at most 1.
using Downsample = std::array<Fraction, 2>;

/// Each request has its own progress and can be given up on its own, so several may be under way at once.
struct FrameRequest {
    std::string name; ///< of the picture, for messages
    Downsample downsample = {};
    bool legacy = false; ///< by the host's older command, also where the effect knows the newer ones
    /// Called as the frame goes on, on several threads at once; false gives it up.
    std::function<bool(int current, int total)> onProgress;
    host::ParamValues values;        ///< in place of the session's own, for this frame alone
    const FrameArea* area = nullptr; ///< where the effect may work, of the picture's size; null: everywhere
    FrameReport* counts = nullptr;   ///< filled by the built-in effect, if it is not null
};

} // namespace kovalune::render
