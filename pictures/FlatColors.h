// The flat colours of a picture and how many pixels have each.
#pragma once

#include "pictures/Picture.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::pictures {

struct FlatColor {
    std::array<uint32_t, 3> bits{}; ///< of the samples, red, green, blue; grey three times
    std::size_t pixels = 0;
};

struct FlatColors {
    std::vector<FlatColor> colors; ///< the most frequent first, equally frequent ones as they first appear
    std::size_t transparent = 0;   ///< pixels of alpha 0, whatever their colour
    std::size_t pixels = 0;        ///< all
};

/// Colours are counted as the effect sees them: straight, and whatever their alpha is above 0. Colours of
/// premultiplied pixels are divided by alpha in the file's type; -0 counts as 0.
FlatColors flatColorsOf(const Picture& picture);

/// The nearest one in 8 bits.
std::array<uint8_t, 3> nearestRgb(const FlatColor& color, SampleType type);

/// The exact values, "61680, 51400, 41120".
std::string exactText(const FlatColor& color, SampleType type);

} // namespace kovalune::pictures
