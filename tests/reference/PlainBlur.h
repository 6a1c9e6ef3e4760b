// The region blur written out plainly: each pixel walks its line anew to find its window, and every line is
// done in one place for both depths, scans and directions.
#pragma once

#include "effect/share/FrameRect.h"
#include "tests/reference/PlainKernel.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

#include <limits>

namespace kovalune::test {

struct PlainBlur {
    bool keepDivision = true; ///< run scan; otherwise window scan
    FrameRect rect;
    Mask mask;
    int32_t repeat = 1;
    double amount = 0.0;
    int32_t passes = std::numeric_limits<int32_t>::max(); ///< stop after this many
};

/// The whole sequence of passes. `dst` and `tmp` end as the effect's worlds would.
void plainBlur(const PlainBlur& blur, const PlainPicture& src, PlainPicture& dst, PlainPicture& tmp);

void plainPass(const PlainBlur& blur, const PlainKernel& kernel, bool horizontal, const PlainPicture& src,
               PlainPicture& dst);

/// Whole pixels where the mask is not 0; elsewhere nothing, or transparent black.
void plainMaskedCopy(const FrameRect& rect, const Mask& mask, bool clearOutside, const PlainPicture& src,
                     PlainPicture& dst);

} // namespace kovalune::test
