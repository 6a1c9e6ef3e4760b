// The frame render drivers, one for each pixel format: they turn a settings record and two host worlds into
// the output image. They know the order of the passes; all pixel work lies in the passes.
#pragma once

#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// The largest width and height of a world: what the frame's 16-bit rectangles hold.
inline constexpr int32_t kLargestWorld = 32767;

// Each renders the frame of `settings`, whose worlds are of its format, to the end on the calling thread; the passes
// spread over the host's threads. Only red, green and blue change in the "Normal" view. On success the output world
// holds the frame. A frame of width or height 0 succeeds with the output untouched.
//
// Returns the first failure; the output may then hold a partial image:
// - PF_Err_BAD_CALLBACK_PARAM: input and output differ in size or are larger than `kLargestWorld`; or the working
//   rectangle, which PF_Cmd_RENDER takes from the host, is inside out or not inside the worlds. Nothing was touched.
// - PF_Err_OUT_OF_MEMORY: input or output is missing or has no pixels; nothing was touched. Or a world that a pass needs
//   does not exist.
//   In this order: a missing world, sizes, no width or height, the rectangle, worlds without pixels.
// - Any code of a host call, also of the one that cancels the frame.
// Throws what AEMemory and WorldSuite throw.
[[nodiscard]] PF_Err renderFrame8(RenderSettings settings);
[[nodiscard]] PF_Err renderFrame16(RenderSettings settings);
[[nodiscard]] PF_Err renderFrame32(RenderSettings settings);

} // namespace kovalune
