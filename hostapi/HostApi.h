// The whole of the host's effect interface.
#pragma once

#include "hostapi/Callbacks.h"  // IWYU pragma: export
#include "hostapi/Constants.h"  // IWYU pragma: export
#include "hostapi/EntryPoint.h" // IWYU pragma: export
#include "hostapi/InOutData.h"  // IWYU pragma: export
#include "hostapi/Params.h"     // IWYU pragma: export
#include "hostapi/SmartFX.h"    // IWYU pragma: export
#include "hostapi/Suites.h"     // IWYU pragma: export
#include "hostapi/Types.h"      // IWYU pragma: export
