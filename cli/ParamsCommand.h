// `kovalune params`: the effect's table of parameters as text or JSON.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

/// One line a parameter: label, kind, default, and what it takes. Groups are headed by their label, their
/// members stand to the right of it. As JSON: see paramsJson. Throws Failure.
std::string paramsText(const ParamsArguments& arguments);

} // namespace kovalune
