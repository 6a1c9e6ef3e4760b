// The walkers, which lay a falling weight along a measured run.
#pragma once

#include "effect/smoothing/SmoothContext.h"
#include "effect/smoothing/WeightRamp.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

template <class Context>
using RampOf = WeightRamp<typename Context::Format>;

/// Blends one colour into pixel after pixel, until the ramp or the image ends: at most `room` pixels.
template <class Context>
void blendRun(const Context& c, const typename Context::Pixel& color, int32_t x, int32_t y, int32_t dx,
              int32_t dy, int32_t room, RampOf<Context> ramp) {
    const std::ptrdiff_t step = c.pixelStep(dx, dy);
    std::ptrdiff_t at = 0;
    auto* const first = &c.dst(x, y);
    for (int32_t i = 0; i < room && !ramp.finished; ++i) {
        auto& target = *objectAt<typename Context::Pixel>(first, at);
        blendPixel<typename Context::Format>(target, color, nextWeight(ramp));
        at += step;
    }
}

template <class Context>
void blendRunLeft(const Context& c, int32_t x, int32_t y, const RampOf<Context>& ramp) {
    blendRun(c, c.src(x + 1, y), x, y, -1, 0, x + 1, ramp);
}
template <class Context>
void blendRunRight(const Context& c, int32_t x, int32_t y, const RampOf<Context>& ramp) {
    blendRun(c, c.src(x, y), x + 1, y, 1, 0, c.width() - 1 - x, ramp);
}
template <class Context>
void blendRunUp(const Context& c, int32_t x, int32_t y, const RampOf<Context>& ramp) {
    blendRun(c, c.src(x, y + 1), x, y, 0, -1, y + 1, ramp);
}
template <class Context>
void blendRunDown(const Context& c, int32_t x, int32_t y, const RampOf<Context>& ramp) {
    blendRun(c, c.src(x, y), x, y + 1, 0, 1, c.height() - 1 - y, ramp);
}

/// Starts at half weight beside a step; `stretch` in percent.
template <class Context>
RampOf<Context> runRamp(const Context& c, int32_t length, int32_t stretch) {
    using Smooth = typename Context::Smooth;
    return {Smooth::kHalf, Smooth::rampStep(rampDivisor(stretch, length)), c.curve};
}

/// Starts at full weight at a line's blunt end.
template <class Context>
RampOf<Context> taperRamp(const Context& c, int32_t length) {
    using Smooth = typename Context::Smooth;
    return {Smooth::kFull, Smooth::rampStep(rampDivisor(c.strength, length)) * 2, c.curveThird};
}

} // namespace kovalune
