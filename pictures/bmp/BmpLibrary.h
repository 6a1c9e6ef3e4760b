// The foreign code for BMP files behind one function. It checks little: its callers have checked what they give it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kovalune::pictures {

struct BmpSamples {
    int channels = 0; ///< red, green, blue, then alpha if there are four; 0 where the file is refused
    std::vector<uint8_t> samples;
};

/// All rows from the top down. Throws std::bad_alloc.
BmpSamples loadBmp(std::span<const uint8_t> bytes);

} // namespace kovalune::pictures
