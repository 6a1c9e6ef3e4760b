#include "cli/text/Swatch.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace kovalune::cli {

namespace {

using Rgb = std::array<uint8_t, 3>;

constexpr char kPatch[] = "      ";
constexpr char kReset[] = "\x1b[0m";

std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

int distance(const Rgb& a, const Rgb& b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    }
    return sum;
}

/// The palette's fixed part: a cube of 6 steps a channel from 16 on, then 24 greys.
Rgb paletteColor(int index) {
    if (index >= 232) {
        const auto grey = static_cast<uint8_t>(8 + 10 * (index - 232));
        return {grey, grey, grey};
    }
    const auto step = [](int place) { return static_cast<uint8_t>(place == 0 ? 0 : 55 + 40 * place); };
    const int place = index - 16;
    return {step(place / 36), step(place / 6 % 6), step(place % 6)};
}

int nearestIndex(const Rgb& rgb) {
    int best = 16;
    for (int index = 17; index < 256; ++index) {
        if (distance(paletteColor(index), rgb) < distance(paletteColor(best), rgb)) {
            best = index;
        }
    }
    return best;
}

} // namespace

TerminalColors terminalColors() {
    if (isatty(STDOUT_FILENO) == 0 || !variable("NO_COLOR").empty()) {
        return TerminalColors::kNone;
    }
    const std::string_view kind = variable("COLORTERM");
    if (kind == "truecolor" || kind == "24bit") {
        return TerminalColors::kTrue;
    }
    return variable("TERM").find("256color") != std::string_view::npos ? TerminalColors::kIndexed256
                                                                       : TerminalColors::kNone;
}

std::string swatch(const Rgb& rgb, TerminalColors colors) {
    if (colors == TerminalColors::kNone) {
        return {};
    }
    std::string code = "\x1b[48;5;" + std::to_string(nearestIndex(rgb));
    if (colors == TerminalColors::kTrue) {
        code = "\x1b[48;2;" + std::to_string(rgb[0]) + ';' + std::to_string(rgb[1]) + ';' +
               std::to_string(rgb[2]);
    }
    return code + 'm' + kPatch + kReset;
}

} // namespace kovalune::cli
