// `kovalune sheet`: all views of a picture side by side in one picture, each with its name above.
#pragma once

#include "cli/Arguments.h"

namespace kovalune {

/// The views are those that can be chosen, in the effect's order. The sheet is opaque and of the depth that
/// `kovalune render` would write; transparent parts are laid over a checkerboard. Throws Failure, also where the
/// sheet would be too large; nothing is written then.
void runSheet(const SheetArguments& arguments);

} // namespace kovalune
