// Pictures for tests, with plain numbers for their samples.
#pragma once

#include "cli/picture/Picture.h"

#include <cstdint>
#include <vector>

namespace kovalune::tests {

/// In rows of `width`; 0 where `values` ends before the first row does.
Picture pictureWith(SampleType type, Channels channels, uint32_t width, const std::vector<double>& values);

/// Random bits in every sample, floats of all kinds among them; the same for the same seed. Alpha is 0 or full in
/// some pixels.
Picture randomPicture(SampleType type, Channels channels, uint32_t width, uint32_t height, uint32_t seed);

/// As the file has them.
std::vector<double> valuesOf(const Picture& picture);

/// 0, 1, 2, ...
std::vector<double> countedValues(std::size_t count);

} // namespace kovalune::tests
