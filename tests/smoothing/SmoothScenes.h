// Random pictures and settings for the smoothing, made so that every one of its patterns comes up.
#pragma once

#include "effect/smoothing/SmoothBoundaries.h"
#include "tests/support/PlainPicture.h"

#include <string>

namespace kovalune::test {

enum class SmoothMode { kPlain, kKeyRemoved, kKeyOnly };

struct SmoothScene {
    PlainPicture picture;
    SmoothParams params; ///< without host and worlds
    std::string text;    ///< what to say of it when a test fails
};

/// One of shapes, lines, staircases, dots, noise and gradients, with settings of the mode.
SmoothScene randomSmoothScene(PF_PixelFormat format, SmoothMode mode, int32_t width, int32_t height,
                              Random& random);

} // namespace kovalune::test
