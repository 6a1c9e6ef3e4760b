// The amounts in pixels that a frame's stages blur by, and the scale that they go by.
#pragma once

#include "effect/share/RenderSettings.h"
#include "effect/share/Truncate.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// The smaller of the two downsample factors serves for everything.
inline double frameScale(const PF_RationalScale& horizontal, const PF_RationalScale& vertical) {
    const auto ratio = [](const PF_RationalScale& scale) {
        return static_cast<double>(scale.num) / static_cast<double>(scale.den);
    };
    return ratio(vertical) < ratio(horizontal) ? ratio(vertical) : ratio(horizontal);
}

/// A slider's value as whole pixels of the frame, 1 for 0.
inline double scaledAmount(double amount, double scale) {
    return truncToInt32(amount * scale + 0.5) + 1.0;
}

/// How far a Process stage extends its colour; `boundaryBlur` is scaled already. At reduced resolution a stage with
/// many repeats gets a shorter boundary, in proportion.
inline double extensionReach(double boundaryBlur, int32_t repeat, double scale) {
    return scale < 1.0 ? boundaryBlur - truncToInt32((boundaryBlur + 4.0) * repeat / 80.0) : boundaryBlur;
}

/// The amount of the blur that makes the layer of a Process stage.
inline double boundaryAmount(double reach) {
    return reach * 0.5;
}

} // namespace kovalune
