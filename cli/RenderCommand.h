// `kovalune render`: one picture from a file through the effect into a file.
#pragma once

#include "cli/Arguments.h"

namespace kovalune {

/// Looks at the names and the settings before it reads the picture, and prints the parameters and times that are
/// asked for. Throws Failure; no picture is written then.
void runRender(const RenderArguments& arguments);

} // namespace kovalune
