// The host's suites and the basic suite through which effects ask for them.
#pragma once

#include "hostapi/Suites.h"

namespace kovalune::host {

/// One table for all commands, as the interface has it by pointer.
SPBasicSuite* basicSuite();

} // namespace kovalune::host
