// The boundary blur written out plainly, line by line and step by step, in doubles for both depths.
#pragma once

#include "effect/share/FrameRect.h"
#include "tests/reference/PlainKernel.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

#include <limits>

namespace kovalune::test {

struct PlainBoundaryBlur {
    bool keepDivision = true; ///< run scan; otherwise window scan
    FrameRect rect;
    Mask regionMask;
    Mask alphaKeepMask;
    int32_t repeat = 1;
    double amount = 0.0;
    int32_t steps = std::numeric_limits<int32_t>::max(); ///< stop after this many passes, the gain being one
};

/// The whole sequence of passes. `dst` and `tmp` end as the effect's worlds would.
void plainBoundaryBlur(const PlainBoundaryBlur& blur, const PlainPicture& src, PlainPicture& dst,
                       PlainPicture& tmp);

void plainBoundaryPass(const PlainBoundaryBlur& blur, const PlainKernel& kernel, bool horizontal,
                       const PlainPicture& src, PlainPicture& dst);

void plainAlphaGain(const FrameRect& rect, double amount, PlainPicture& picture);

} // namespace kovalune::test
