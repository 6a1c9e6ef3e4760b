// The stages of a frame: Base first, then the Process stages 1 to 4, in order.
#pragma once

#include "effect/pipeline/Frame.h"

namespace kovalune {

/// Where a frame goes on after a stage.
enum class StageEnd {
    kNextStage,
    kFinish,  ///< to the finish: no further stage
    kAbandon, ///< neither stages nor finish; the frame releases what it holds and returns its code
};

/// Selects the pixels of up to four colours and blurs their colour in place, each region inside itself. Leaves the region
/// in the frame's `stageMask`.
StageEnd runBaseStage(Frame& frame);

/// Each enabled one selects the pixels of one colour, extends the colour beyond its region, blurs that into a layer with a
/// soft alpha edge and lays the layer's colour over the image built so far. Runs the stages up to the one that the view
/// chooses; the frame goes on to its finish whatever fails.
void runProcessStages(Frame& frame);

} // namespace kovalune
