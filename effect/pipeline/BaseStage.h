// The Base stage, the first of every frame: it selects the pixels of up to four colours and blurs their
// colour in place, each region inside itself.
#pragma once

#include "effect/pipeline/Frame.h"

namespace kovalune {

/// Leaves the region in the frame's `stageMask`.
StageEnd runBaseStage(Frame& frame);

} // namespace kovalune
