// The Process stages, 1 to 4 in order. Each enabled one selects the pixels of one colour, extends the colour
// beyond its region, blurs that into a layer with a soft alpha edge and lays the layer's colour over the image
// built so far.
#pragma once

#include "effect/pipeline/Frame.h"

namespace kovalune {

/// Runs the stages up to the one that the view chooses; the frame goes on to its finish whatever fails.
void runProcessStages(Frame& frame);

} // namespace kovalune
