// The colour extraction written out plainly, for all three formats.
#pragma once

#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

#include <vector>

namespace kovalune::test {

struct PlainMatch {
    PF_Pixel color;
    double range; ///< 0 to 1
};

struct PlainExtracted {
    Mask mask;
    int32_t conversions = 0; ///< of pixels, without those of the list
};

/// With the reference host's colour conversion.
PlainExtracted plainExtract(const PlainPicture& src, const FrameRect& rect,
                            const std::vector<PlainMatch>& matches, int32_t iterations);

/// The distance of two colours in hue, lightness and saturation.
int64_t plainDistance(const PF_Fixed (&a)[3], const PF_Fixed (&b)[3]);

} // namespace kovalune::test
