// The flat colours of a picture or a shot as `kovalune colors` tells them: as lines, or as JSON for programs.
#pragma once

#include "cli/text/Swatch.h"
#include "pictures/FlatColors.h"
#include "pictures/regions/ColorPairs.h"
#include "pictures/regions/ShotColors.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kovalune::cli {

/// What was found, of pictures with samples of this type.
struct ColorsFound {
    pictures::FlatColors counted;
    pictures::SampleType type = pictures::SampleType::kUint8;
    bool where = false;                        ///< the places were asked for
    std::vector<pictures::ShotRegion> regions; ///< then; of the colours that are followed
    std::vector<pictures::ColorPair> pairs;    ///< then; of the regions
    std::size_t frames = 0;                    ///< of a shot; 0: one picture, whose frames say nothing
    int frameWidth = 1;                        ///< of their numbers in texts
};

/// "  5.730 %", aligned for a list.
std::string shareText(std::size_t part, std::size_t whole);

/// A line a colour for the first `listed`: share, pixels, #RRGGBB, a swatch, exact values of more than 8 bits; where places
/// are asked for, indented lines with these below it, and the pairs at the end.
std::string colorsText(const ColorsFound& found, std::size_t listed, TerminalColors terminal);

/// One object. Shares are of 1; boxes are [left, top, width, height]; frames are [first, last].
std::string colorsJson(const ColorsFound& found, std::size_t listed, const std::string& name);

} // namespace kovalune::cli
