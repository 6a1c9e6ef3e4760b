// The measure beside every frame: how long a plain copy of its bytes takes on one thread, in this very run.
#pragma once

#include "bench/BenchScene.h"

namespace kovalune::bench {

/// Sets the counter `copies`: how many plain copies of such a picture take as long as one iteration. Called after a
/// benchmark's loop, it copies right then, when the machine is as fast as it was in the loop.
void reportCopies(benchmark::State& state, PF_PixelFormat format, int64_t scale = kFullHd);

} // namespace kovalune::bench
