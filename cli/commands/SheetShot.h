// The contact sheet of a shot: one view of each frame with its number.
#pragma once

#include "cli/arguments/Arguments.h"
#include "render/shots/SequencePlan.h"

namespace kovalune::cli {

/// Throws Failure of the first frame that fails, and Interruption; nothing is written then.
void drawShot(const SheetArguments& arguments, const shots::SequencePlan& plan, pictures::FileFormat format);

} // namespace kovalune::cli
