// A scene of the golden frames, rendered and hashed.
#pragma once

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Image.h"
#include "render/selfcheck/GoldenScene.h"

#include <string>

namespace kovalune::selfcheck {

/// Of all bytes of the result, with its size and format; 32 digits. A result with a code has the code in its place.
/// The host's number of iterations is the scene's own for that time, where the scene has one. No remembered defaults may count.
std::string goldenHash(const GoldenScene& scene, host::EffectModule& module, host::Host& host);

/// Of all bytes of a picture, with its size and format.
std::string pictureHash(const host::Image& image);

} // namespace kovalune::selfcheck
