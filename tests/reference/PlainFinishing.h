// The passes that finish a stage, pixel by pixel on plain pictures.
#pragma once

#include "effect/share/FrameRect.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"

namespace kovalune::test {

void plainRestoreMasked(const FrameRect& rect, const Mask& mask, const PlainPicture& src, PlainPicture& dst);
void plainClearAlphaOutside(const FrameRect& rect, const Mask& mask, PlainPicture& dst);
void plainMultiplyAlphaOutside(const FrameRect& rect, const Mask& mask, const PlainPicture& src,
                               PlainPicture& dst);
void plainApplyBoundaryBias(const FrameRect& rect, const Mask& mask, double bias, PlainPicture& dst);
void plainComposeOver(const FrameRect& rect, const PlainPicture& src, PlainPicture& dst);

} // namespace kovalune::test
