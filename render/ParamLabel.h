// Finds a parameter by the label that the effect gave it.
#pragma once

#include "hostapi/Params.h"

#include <string_view>
#include <vector>

namespace kovalune::render {

/// Whether a value can be given to parameters of this type; groups, layers and the like have none.
bool isSettable(const PF_ParamDef& def);

/// Whether two texts are the same label: without case, and whatever blanks stand around a colon.
bool sameLabel(std::string_view a, std::string_view b);

/// The index of the settable parameter with this label, as sameLabel has it; where two differ by no more, the one
/// that is spelled so. Throws Failure for an unknown label, naming the nearest ones, for that of a group, and
/// for one that several parameters have.
int findSettable(const std::vector<PF_ParamDef>& params, std::string_view label);

} // namespace kovalune::render
