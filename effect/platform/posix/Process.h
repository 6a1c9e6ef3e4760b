// How the POSIX side reads what it knows about the process, apart from where it reads it.
#pragma once

#include <string>
#include <string_view>

namespace kovalune::platform {

// The command line from a file that holds the arguments with a NUL after each; empty if it cannot be read.
std::string commandLineFrom(const char* path);

// Whether the language of a locale's name ("ja_JP.UTF-8") is Japanese: the part before '_', '.' or '@', in
// any case.
bool localeNameIsJapanese(std::string_view name);

} // namespace kovalune::platform
