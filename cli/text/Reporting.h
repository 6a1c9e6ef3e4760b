// What the command says on standard error, a line each; and its outermost frame, which reports a failure so, with an
// exit code that tells whose it is, and ends the process by the signal that interrupted it.
#pragma once

#include "cli/ExitCode.h"

#include <functional>
#include <string_view>

namespace kovalune::cli {

/// One line on standard error after the command's name, whatever bytes `text` holds.
void tell(std::string_view text) noexcept;

/// The exit code that `body` returns, or that of what it throws. What the effect does wrong comes as a Failure that
/// says so; any other exception but an Interruption is of the files and the memory. After an Interruption, which is
/// told too, the signal strikes, and this does not come back.
int reporting(const std::function<ExitCode()>& body) noexcept;

} // namespace kovalune::cli
