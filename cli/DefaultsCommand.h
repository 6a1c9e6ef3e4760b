// `kovalune defaults`: what the user has made the defaults of new instances, as the effect's own dialog does it.
#pragma once

#include "cli/Arguments.h"

#include <string>

namespace kovalune {

/// Does it and returns what to print. Throws Failure: for labels and values that the effect does not take, and for a
/// file that cannot be written or deleted. Where there is nothing to forget or to show, the text says so.
std::string defaultsText(const DefaultsArguments& arguments);

} // namespace kovalune
