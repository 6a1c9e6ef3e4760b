// Two shots compared frame by frame, as `kovalune compare` does it: frames belong together by their numbers.
#pragma once

#include "cli/Commands.h"
#include "cli/arguments/Arguments.h"
#include "render/shots/SequenceInput.h"

namespace kovalune::cli {

/// Both are sequences. Throws Failure for a file that cannot be read, and for a frame of --frames that neither has.
Comparison compareShots(const CompareArguments& arguments, const shots::SequenceInput& a,
                        const shots::SequenceInput& b);

} // namespace kovalune::cli
