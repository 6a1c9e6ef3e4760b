// Plain loops on the frame's own thread, without any host call, over what its passes have made: for a report on
// the frame.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

// The worlds of a call are of one size and hold `rect`; the masks are of its size. The 8 counts in the 16-bit worlds
// of a widened frame.

/// Copies the pixels of `rect`.
using PixelCopy = void(PF_EffectWorld& dst, const PF_EffectWorld& src, const FrameRect& rect);
PixelCopy copyPixels16;
PixelCopy copyPixels32;

/// The pixels whose red, green or blue differs: for 8, once both are narrowed.
using ChangeCount = int64_t(const PF_EffectWorld& before, const PF_EffectWorld& after, const FrameRect& rect);
ChangeCount countChanged8;
ChangeCount countChanged16;
ChangeCount countChanged32;

/// The pixels of non-zero alpha that the mask leaves out.
using OutsideCount = int64_t(const PF_EffectWorld& world, const FrameRect& rect, const MaskPlane& mask);
OutsideCount countOutside16;
OutsideCount countOutside32;

} // namespace kovalune
