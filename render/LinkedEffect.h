// The effect that is linked into the process, and the host options that every tool opens it with.
#pragma once

#include "host/EffectModule.h"
#include "host/Options.h"

namespace kovalune::render {

/// One for the whole process and all its sessions, which may be open at once. It is never set down: after that the effect
/// would render no more. The process's locale is after its first call what it was before.
host::EffectModule& linkedEffect();

/// The effect divides a picture into one band an iteration, and what a band's first pixel becomes after a transparent one
/// depends on where the bands meet. With a fixed number a picture comes out the same on every machine and in every tool;
/// this one keeps the most threads busy.
inline constexpr int kToolIterations = 64;

/// `threads` 0 is what the machine has.
host::HostOptions toolOptions(int threads = 0);

} // namespace kovalune::render
