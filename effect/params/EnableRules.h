// Greys out the controls that the current settings make meaningless. A control that is greyed out keeps its
// value, and renders read it all the same.
#pragma once

#include "hostapi/HostApi.h"

namespace kovalune {

/// Works on the host's parameter array of the current command. Errors of single updates are ignored; returns
/// 0. Throws a value of an unnamed type where the host has no parameter suite.
[[nodiscard]] PF_Err updateParamEnables(PF_InData* inData, PF_ParamDef** params);

} // namespace kovalune
