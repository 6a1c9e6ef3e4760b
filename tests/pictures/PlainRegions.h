// Regions of flat colours in the plainest form: pixel by pixel, with a flood for the pieces.
#pragma once

#include "pictures/regions/ColorRegions.h"

#include <vector>

namespace kovalune::test {

std::vector<pictures::ColorRegion> plainRegions(const pictures::Picture& picture,
                                                const pictures::FlatColors& counted, std::size_t most);

} // namespace kovalune::test
