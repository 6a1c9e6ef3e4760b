// What a command line that is wrong in form is answered with.
#pragma once

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace kovalune {

// Throws Failure for what `app` could not parse, naming what may have been meant. The parser only says that something
// is missing or was not expected.
[[noreturn]] void failUsage(const CLI::App& app, const CLI::ParseError& error);

} // namespace kovalune
