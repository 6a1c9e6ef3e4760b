// What the command's own help lists, for tests of whatever is made of it.
#pragma once

#include <string>
#include <vector>

namespace kovalune::test {

/// Sorted.
std::vector<std::string> subCommands();

/// Every word of the help that begins with a dash at the start of an option's line, sorted. Without a sub-command those of
/// the command itself.
std::vector<std::string> optionsOf(const std::string& subCommand = {});

} // namespace kovalune::test
