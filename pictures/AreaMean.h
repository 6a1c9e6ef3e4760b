// A picture made smaller by area means: each pixel is the mean of what it covers of the larger picture, parts of pixels by their
// share.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>

namespace kovalune::pictures {

/// Of at least one pixel a side and no more than `picture` has. Colours count by their alpha, which is straight here and in
/// the result; means are taken in double in the order of rows and rounded once, halves up. Half samples are not taken:
/// convert them to Float. Notes are left out.
Picture shrunk(const Picture& picture, uint32_t width, uint32_t height);

} // namespace kovalune::pictures
