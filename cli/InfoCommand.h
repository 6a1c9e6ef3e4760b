// `kovalune info`: what the effect says of itself, and what the command was built with and runs on.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

/// Lines of a title and a value; further lines of a value are indented. Throws Failure.
std::string infoText(const InfoArguments& arguments);

} // namespace kovalune
