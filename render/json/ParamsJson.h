// The effect's parameters as JSON, for programs.
#pragma once

#include "host/Session.h"

#include <string>

namespace kovalune::render {

/// An object with one array, "parameters": every parameter in the host's order, ends of groups too, but for the
/// input layer. Members that a kind does not have are left out. The text is UTF-8 whatever the effect's texts are:
/// bytes that are none become U+FFFD.
std::string paramsJson(const host::Session& session);

} // namespace kovalune::render
