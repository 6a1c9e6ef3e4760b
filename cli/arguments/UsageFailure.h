// What a command line that is wrong in form is answered with: what is wrong with it, and what to write instead.
#pragma once

#include "cli/arguments/Parser.h"

#include <span>
#include <string>

namespace kovalune::cli {

/// Throws Failure for a setting or a view that the shell has cut at its blanks, naming it with quotes. `words` are the
/// whole command line.
void checkQuotes(std::span<const char* const> words);

/// Throws Failure for a word that is no command, naming the nearest command or option.
[[noreturn]] void failUnknownCommand(const Parser& parser, const std::string& word);

/// Throws Failure for what could not be parsed, naming what may have been meant. The parser only says that something is
/// missing or was not expected.
[[noreturn]] void failUsage(const Parser& parser, const ParseResult& result);

} // namespace kovalune::cli
