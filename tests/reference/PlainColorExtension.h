// The colour extension written out plainly: every walk takes its steps one by one, in the order of the passes,
// with distances in whole planes and lengths as floats.
#pragma once

#include "effect/share/FrameRect.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

namespace kovalune::test {

struct PlainExtension {
    FrameRect rect;
    Mask seed;  ///< of the rectangle's size, as `limit`
    Mask limit; ///< a row without any element takes no part in the horizontal spread and the resolve
    double reach = 1.0;
    bool stopAtGap = false;
};

/// `spread` and `dst` end as the effect's worlds would.
void plainExtendColors(const PlainExtension& job, const PlainPicture& src, PlainPicture& dst,
                       PlainPicture& spread);

} // namespace kovalune::test
