// `kovalune colors`: the flat colours of a picture by their share.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

/// One line a colour: share of all pixels, pixels, #RRGGBB, a swatch where the standard output is a terminal with
/// colours, and for more than 8 bits the exact values. Transparent pixels have a line of their own at the end. The
/// picture that the arguments name is written first. Throws Failure.
std::string colorsText(const ColorsArguments& arguments);

} // namespace kovalune
