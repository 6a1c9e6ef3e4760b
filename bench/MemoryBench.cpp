// The measure beside every other row: a plain copy of a picture's bytes on one thread.

#include "bench/BenchScene.h"

#include <cstring>

namespace kovalune::bench {
namespace {

/// Argument: scale.
template <PF_PixelFormat format>
void copyBytes(benchmark::State& state) {
    const host::Image& source = picture(kDrawing, format, state.range(0));
    host::Image target = source;
    const std::size_t bytes = source.rowBytes() * static_cast<std::size_t>(source.height());
    for (auto step : state) {
        std::memcpy(target.row(0), source.row(0), bytes);
        benchmark::ClobberMemory();
    }
    report(state, kDrawing, state.range(0));
}

void onBothScales(benchmark::internal::Benchmark* bench) {
    bench->Arg(kFullHd)->Arg(kUltraHd)->UseRealTime();
}

BENCHMARK(copyBytes<PF_PixelFormat_ARGB32>)->Name("memcpy8")->Apply(onBothScales);
BENCHMARK(copyBytes<PF_PixelFormat_ARGB64>)->Name("memcpy16")->Apply(onBothScales);
BENCHMARK(copyBytes<PF_PixelFormat_ARGB128>)->Name("memcpy32")->Apply(onBothScales);

} // namespace
} // namespace kovalune::bench
