// A scene of the golden frames, rendered and hashed.
#pragma once

#include "host/EffectModule.h"
#include "host/judge/JudgedHost.h"
#include "tests/golden/GoldenScene.h"

#include <string>

namespace kovalune::test {

/// Of all bytes of the result, with its size and format; 32 digits. A result with a code has the code in its place.
/// `options` say how the host works; its number of iterations is the scene's own where that has one.
std::string goldenHash(const GoldenScene& scene, host::EffectModule& module,
                       host::judge::JudgeOptions options);

} // namespace kovalune::test
