// The outermost frame of the command: reports a failure as one line on standard error, with an exit code that
// tells whose it is, and ends the process by the signal that interrupted it.
#pragma once

#include "cli/Failure.h"

#include <functional>

namespace kovalune {

// The exit code that `body` returns, or that of what it throws. What the effect does wrong comes as a Failure that
// says so; any other exception but an Interruption is of the files and the memory. After an Interruption, which is
// told too, the signal strikes, and this does not come back.
int reporting(const std::function<ExitCode()>& body) noexcept;

} // namespace kovalune
