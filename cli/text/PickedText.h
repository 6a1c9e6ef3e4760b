// Pixels as `kovalune pick` tells them: as lines, or as JSON for programs.
#pragma once

#include "cli/arguments/Arguments.h"
#include "pictures/Picture.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::cli {

/// A pixel as the effect sees it.
struct EffectPixel {
    using Bytes = std::array<uint8_t, 3>;

    std::array<float, 4> values{}; ///< red, green, blue, alpha; whole numbers but in float
    double white = 1.0;
    Bytes nearest{}; ///< in 8 bits
    Bytes matched{}; ///< that the effect matches by, which wraps around where a float is outside 0 to 1
};

struct PickedPixel {
    PickedPoint point;
    pictures::Picture file; ///< the one pixel as the file holds it
    EffectPixel effect;
    double hue = 0.0;        ///< degrees, of what is matched, as the others
    double lightness = 0.0;  ///< per cent
    double saturation = 0.0; ///< per cent
};

/// Lines of a title and a value, an empty line between two pixels.
std::string pickedText(const std::vector<PickedPixel>& picked, const pictures::Picture& picture);

std::string pickedJson(const std::vector<PickedPixel>& picked, const pictures::Picture& picture,
                       const std::string& name);

} // namespace kovalune::cli
