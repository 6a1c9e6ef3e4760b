// A sentence about each control of the effect, for hosts that show one beside it: the effect's registration has none.
#pragma once

#include <string_view>

namespace kovalune::render {

/// In UTF-8. Both are empty for a label that is not the effect's.
struct Hint {
    std::string_view english;
    std::string_view japanese;
};

/// Of a control or group by its label; numbers of stages and colours do not matter: "Color 2" has the hint of "Color 1".
Hint hintOf(std::string_view label);

} // namespace kovalune::render
