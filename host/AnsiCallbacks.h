// The host's C library functions for effects. sprintf writes numbers with a decimal point whatever
// the locale; on Windows it follows the C locale, which this host leaves as the program starts with it.
#pragma once

#include "hostapi/Callbacks.h"

namespace kovalune::host {

PF_ANSICallbacks ansiCallbacks();

} // namespace kovalune::host
