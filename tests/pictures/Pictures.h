// Pictures for tests, with plain numbers for their samples.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>
#include <vector>

namespace kovalune::test {

/// In rows of `width`; 0 where `values` ends before the first row does.
pictures::Picture pictureWith(pictures::SampleType type, pictures::Channels channels, uint32_t width,
                              const std::vector<double>& values);

/// Random bits in every sample, floats of all kinds among them; the same for the same seed. Alpha is 0 or full in
/// some pixels.
pictures::Picture randomPicture(pictures::SampleType type, pictures::Channels channels, uint32_t width,
                                uint32_t height, uint32_t seed);

/// As the file has them.
std::vector<double> valuesOf(const pictures::Picture& picture);

/// 0, 1, 2, ...
std::vector<double> countedValues(std::size_t count);

} // namespace kovalune::test
