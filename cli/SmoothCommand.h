// `kovalune smooth`: the effect's boundary smoothing alone, without a host.
#pragma once

#include "cli/Arguments.h"

namespace kovalune {

/// Throws Failure; nothing is written then.
void runSmooth(const SmoothArguments& arguments);

} // namespace kovalune
