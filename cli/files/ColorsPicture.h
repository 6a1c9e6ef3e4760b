// A picture of flat colours: patches with their names and shares beside them, in columns.
#pragma once

#include "pictures/Canvas.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

inline constexpr std::size_t kMostPatches = 2048; // that one picture holds

struct Patch {
    std::optional<pictures::DrawnColor> color; ///< none: a checkerboard
    std::string text;
};

/// From top to bottom, then from left to right. At most kMostPatches, and at least one.
pictures::Picture picturedPatches(const std::vector<Patch>& patches);

} // namespace kovalune::cli
