// How the command ends when it cannot do what it was asked: one line of text and an exit code.
// A Failure's text names the thing it is about; it may hold any bytes, printable() makes it one line.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kovalune {

enum class ExitCode {
    kSuccess = 0,
    kDifferent = 1, ///< compared pictures are not the same
    kUsage = 2,     ///< the command line, its labels and values
    kFile = 3,      ///< anything about a file, the lack of memory for a picture included
    kEffect = 4,    ///< what the effect reported
};

class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

/// With control characters written as \n, \r, \t or \xNN. Other bytes, UTF-8 among them, stay as they are.
std::string printable(std::string_view text);

/// A message has two texts of the user at the most, which together stay below 300 bytes.
inline constexpr std::size_t kMostShownBytes = 148;

/// A text of the user as messages show it: printable, and where that is longer than kMostShownBytes, its beginning and
/// its end with "..." between them. No character is cut.
std::string shown(std::string_view text);

/// What the system means by an error number, in English whatever the locale, as all texts of the command are.
std::string systemReason(int errorNumber);

/// 'text', the text as shown() has it.
std::string inQuotes(std::string_view text);

} // namespace kovalune
