// Texts of the user and of the system as messages show them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::text {

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

/// "a, b or c"
std::string oneOf(const std::vector<std::string>& texts);

} // namespace kovalune::text
