// The measure beside passes and frames: how long a plain copy takes on one thread, in this very run.
#pragma once

#include "bench/BenchScene.h"

#include <functional>

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

// What the same work takes in another way, likewise measured right then, as how many iterations of the loop it takes.

/// Sets the counter `plain`: with the plain kernels.
void reportPlain(benchmark::State& state, const std::function<void()>& once);

/// Sets the counter `one thread`; `once` is what does the same on the thread that calls it.
void reportOneThread(benchmark::State& state, const std::function<void()>& once);

} // namespace kovalune::bench
