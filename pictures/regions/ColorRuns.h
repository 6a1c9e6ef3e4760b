// A picture's rows as runs of one colour, as the effect sees colours: straight, and whatever their alpha is above 0.
#pragma once

#include "pictures/Picture.h"
#include "pictures/regions/ColorTable.h"

#include <cstdint>
#include <vector>

namespace kovalune::pictures {

/// Pixels beside each other in one row.
struct ColorRun {
    uint32_t start = 0;
    uint32_t end = 0;         ///< the first pixel that is not of it
    bool transparent = false; ///< alpha is 0, whatever the colour
    ColorBits bits{};         ///< where it is not
};

/// Fills `runs` with those of the row, from left to right; neighbours differ. Colours of premultiplied pixels are divided
/// by alpha in the file's type; -0 counts as 0.
void readRuns(const Picture& picture, uint32_t row, std::vector<ColorRun>& runs);

} // namespace kovalune::pictures
