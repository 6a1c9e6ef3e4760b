// The value of a parameter, as the host's callers set and read it.
// Plain data; which kind a parameter takes follows from its type.
#pragma once

#include "hostapi/HostApi.h"

#include <utility>
#include <variant>
#include <vector>

namespace kovalune::host {

/// A_long for sliders, checkboxes and popups, double for float sliders, PF_Pixel for colours.
using ParamValue = std::variant<A_long, double, PF_Pixel>;

/// By the index of each parameter.
using ParamValues = std::vector<std::pair<int, ParamValue>>;

} // namespace kovalune::host
