// The outermost frame of the command: reports a failure as one line on standard error, with an exit code that
// tells whose it is.
#pragma once

#include <functional>

namespace kovalune {

// The exit code of `body`. What the effect does wrong comes as a Failure that says so; any other exception is
// of the files and the memory.
int reporting(const std::function<void()>& body) noexcept;

} // namespace kovalune
