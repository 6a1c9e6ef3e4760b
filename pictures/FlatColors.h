// The flat colours of a picture and how many pixels have each.
#pragma once

#include "pictures/Picture.h"
#include "pictures/regions/ColorTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::pictures {

struct FlatColor {
    ColorBits bits{};
    std::size_t pixels = 0;
};

struct FlatColors {
    std::vector<FlatColor> colors; ///< the most frequent first, equally frequent ones as they first appear
    std::size_t transparent = 0;   ///< pixels of alpha 0, whatever their colour
    std::size_t untold = 0;        ///< pixels of colours that a list of so many pictures had no place for
    std::size_t pixels = 0;        ///< all
};

/// Colours are counted as the effect sees them: straight, and whatever their alpha is above 0. Colours of
/// premultiplied pixels are divided by alpha in the file's type; -0 counts as 0.
FlatColors flatColorsOf(const Picture& picture);

/// As FlatColors has them.
void sortByShare(std::vector<FlatColor>& colors);

/// The nearest one in 8 bits.
std::array<uint8_t, 3> nearestRgb(const FlatColor& color, SampleType type);

/// The exact values, "61680, 51400, 41120".
std::string exactText(const FlatColor& color, SampleType type);

} // namespace kovalune::pictures
