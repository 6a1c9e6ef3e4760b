// The standard output as the command writes words to it: a loss is a failure.
#pragma once

#include <string_view>

namespace kovalune::cli {

/// From now on what is printed goes to standard error, since a picture goes to the standard output.
void leaveOutputToPictures();

/// All of it has left the process at the end. Throws Failure if it cannot be written.
void printOut(std::string_view text);

} // namespace kovalune::cli
