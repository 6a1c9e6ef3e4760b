// How two pictures of one size differ: exactly, sample by sample, as fractions of white.
#pragma once

#include "pictures/Picture.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kovalune::pictures {

struct ChannelDifference {
    std::string name;
    double units = 0.0;    ///< of the files, where both have the same sample type
    double fraction = 0.0; ///< of white; NaN where one value is NaN and the other is not
};

struct PictureDifference {
    std::size_t pixels = 0; ///< that differ in any channel by more than the tolerance
    std::size_t first = 0;  ///< the first of them in reading order
    std::size_t within = 0; ///< pixels that differ too, but by no more than that in any channel
    std::vector<ChannelDifference> largest; ///< of both kinds
};

/// `differing` is called for every pixel that differs by more than the tolerance, which is of 255, in reading order. NaN
/// is farther from everything than any tolerance.
PictureDifference differenceOf(const Picture& a, const Picture& b,
                               const std::function<void(std::size_t pixel)>& differing,
                               double tolerance = 0.0);

} // namespace kovalune::pictures
