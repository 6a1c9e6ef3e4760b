// A frame of the Base stage put together from the plain twins: what stands in the output at its end.
#pragma once

#include "effect/share/RenderSettings.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

#include <limits>

namespace kovalune::test {

struct PlainFrame {
    const RenderSettings& settings;
    int32_t iterations = 1;
    double scale = 1.0;
    int32_t blurPasses = std::numeric_limits<int32_t>::max(); ///< the blur ends after this many
    bool narrowed = true;                                     ///< an 8-bit frame reached its end
    bool cut = true;                                          ///< so did the cut of "Extract" and "Base"
};

/// For amounts that boundary smoothing leaves out.
PlainPicture plainOutput(const PlainFrame& frame, const PlainPicture& input);

/// The pixels that the Base colours select.
Mask plainRegion(const PlainFrame& frame, const PlainPicture& input);

PlainPicture plainWiden(const PlainPicture& picture);
PlainPicture plainNarrow(const PlainPicture& picture);

} // namespace kovalune::test
