// A frame through the effect of a session.
#pragma once

#include "host/Image.h"
#include "render/FrameRequest.h"
#include "render/OpenEffect.h"

namespace kovalune::render {

/// 8, 16 or 32 bits a channel as the host's format for them.
PF_PixelFormat formatOfDepth(int bits);

/// The frame that the request's values, or else the session's, make of `image`. With an area the effect gets the picture with
/// every sample outside set to 0; outside, the result is `image` in the view "Normal" and transparent in the others. Throws Failure if the effect cannot work in this depth, reports
/// an error or finds too little memory, host and effect alike; one that the request gave up is such an error.
host::Image renderFrame(OpenEffect& effect, const host::Image& image, const FrameRequest& request);

} // namespace kovalune::render
