// The host's C library functions for effects.
#pragma once

#include "hostapi/Callbacks.h"

namespace kovalune::host {

PF_ANSICallbacks ansiCallbacks();

} // namespace kovalune::host
