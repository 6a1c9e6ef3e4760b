// A weight that falls along a stair-step: linear, from a peak at the step to nothing, bent by an S-curve.
#pragma once

#include "effect/share/Integers.h"
#include "effect/smoothing/SmoothOf.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// How long a ramp is: it reaches zero after `(length + 1) * stretch / 100` pixels.
///   stretch  percent; below 1 counts as 1
inline int32_t rampDivisor(int32_t stretch, int32_t length) {
    return wrappingMul(std::max(stretch, 1), length + 1);
}

template <class Format>
struct WeightRamp {
    using Weight = typename SmoothOf<Format>::Weight;

    bool finished = false; ///< the ramp has reached zero
    Weight peak;           ///< start value; the unit of the curve
    Weight level;          ///< the weight at the start of the next pixel
    Weight step;           ///< fall a pixel
    int32_t curve;         ///< -100 to 100: positive holds back the middle, negative is its point reflection

    WeightRamp(Weight start, Weight fall, int32_t bend)
        : peak(start), level(start), step(fall), curve(bend) {}
};

/// The mean weight over the next pixel; advances the ramp.
template <class Format>
typename SmoothOf<Format>::Weight nextWeight(WeightRamp<Format>& ramp) {
    const auto before = ramp.level;
    ramp.level = before - ramp.step;
    ramp.finished = SmoothOf<Format>::isSpent(ramp.level);
    const auto weight = ramp.finished ? SmoothOf<Format>::lastTriangle(before, ramp.step)
                                      : SmoothOf<Format>::meanOfFall(before, ramp.step);
    if (ramp.curve == 0) {
        return weight;
    }
    const auto peak = static_cast<float>(ramp.peak);
    const float t = static_cast<float>(weight) / peak;
    const auto bend = static_cast<float>(ramp.curve);
    if (ramp.curve > 0) {
        return SmoothOf<Format>::fromCurve(
            peak * ((t * t * t * bend + static_cast<float>(100 - ramp.curve) * t) / 100.0F));
    }
    const float u = 1.0F - t;
    return SmoothOf<Format>::fromCurve(
        peak * (1.0F - (u * u * u * -bend + static_cast<float>(ramp.curve + 100) * u) / 100.0F));
}

} // namespace kovalune
