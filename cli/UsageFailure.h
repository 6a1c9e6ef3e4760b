// What a command line that is wrong in form is answered with: what is wrong with it, and what to write instead.
#pragma once

#include <span>
#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace kovalune {

/// Throws Failure for a setting or a view that the shell has cut at its blanks, naming it with quotes. `words` are the
/// whole command line.
void checkQuotes(std::span<const char* const> words);

/// Throws Failure for a word that is no command, naming the nearest command or option of `app`.
[[noreturn]] void failUnknownCommand(const CLI::App& app, const std::string& word);

/// Throws Failure for what `app` could not parse, naming what may have been meant. The parser only says that something
/// is missing or was not expected.
[[noreturn]] void failUsage(const CLI::App& app, const CLI::ParseError& error);

} // namespace kovalune
