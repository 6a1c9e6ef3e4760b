// The measure beside passes and frames: how long a plain copy takes on one thread, in this very run.
#pragma once

#include "bench/BenchScene.h"

namespace kovalune::bench {

/// What a pass cannot do without, in bytes.
struct Traffic {
    int64_t read;
    int64_t written;
};

// Each sets the counter `copies`: how many plain copies take as long as one iteration. Called after a benchmark's loop, it
// copies right then, when the machine is as fast as it was in the loop.

/// Copies that read and write as many bytes together.
void reportCopies(benchmark::State& state, const Traffic& traffic);

/// Copies of such a picture.
void reportCopies(benchmark::State& state, PF_PixelFormat format, int64_t scale = kFullHd);

} // namespace kovalune::bench
