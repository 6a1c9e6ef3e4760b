// The Base stage, the first of every frame: it selects the pixels of up to four colours and blurs their
// colour in place, each region inside itself.
#pragma once

#include "effect/pipeline/Frame.h"

namespace kovalune {

/// A blur amount that smooths boundaries first: small enough for stair-steps to show through it.
inline bool baseIsSmoothed(double scaledAmount) {
    return scaledAmount >= 2.0 && scaledAmount <= 15.0;
}

/// Leaves the region in the frame's `stageMask`.
StageEnd runBaseStage(Frame& frame);

} // namespace kovalune
