// The standard output as the command writes to it: a loss is a failure.
#pragma once

#include <string_view>

namespace kovalune::cli {

/// All of it has left the process at the end. Throws Failure if it cannot be written.
void printOut(std::string_view text);

} // namespace kovalune::cli
