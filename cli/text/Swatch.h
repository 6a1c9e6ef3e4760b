// A patch of colour for terminals, by the escape codes that the terminal is known to understand.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kovalune::cli {

enum class TerminalColors { kNone, kIndexed256, kTrue };

/// None where the standard output is no terminal or NO_COLOR is set to anything; otherwise as COLORTERM and TERM
/// say.
TerminalColors terminalColors();

/// Empty where the terminal has no colours.
std::string swatch(const std::array<uint8_t, 3>& rgb, TerminalColors colors);

} // namespace kovalune::cli
