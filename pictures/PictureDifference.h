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
    std::size_t pixels = 0; ///< that differ in any channel
    std::size_t first = 0;  ///< the first of them in reading order
    std::vector<ChannelDifference> largest;
};

/// `differing` is called for every pixel that differs, in reading order.
PictureDifference differenceOf(const Picture& a, const Picture& b,
                               const std::function<void(std::size_t pixel)>& differing);

} // namespace kovalune::pictures
