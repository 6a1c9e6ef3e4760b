// The region blur: single passes by kernel length, and whole sequences; and the making of kernels.

#include "bench/BenchScene.h"

#include "effect/blur/GaussKernel.h"
#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"

#include <cmath>

namespace kovalune::bench {
namespace {

template <PF_PixelFormat format>
struct BlurWorlds {
    explicit BlurWorlds(std::int64_t source)
        : input(picture(source, format)), output(input), between(input), src(worldOn(input)),
          dst(worldOn(output)), tmp(worldOn(between)) {}

    host::Image input;
    host::Image output;
    host::Image between;
    PF_EffectWorld src;
    PF_EffectWorld dst;
    PF_EffectWorld tmp;
};

/// Arguments: source, amount.
template <PF_PixelFormat format, PassFunction pass>
void singlePass(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto amount = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const GaussKernel kernel =
            makeGaussKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125);
        BlurPassRecord record{&worlds.dst, &worlds.src, kWhole, regionMask(inData, state.range(0)), kernel};
        for (auto step : state) {
            iterate(inData, record, pass);
        }
    });
    report(state, state.range(0));
}

/// Arguments: source, amount. Five repeats, as "Blur Repeat Num" has them by default: six passes.
template <PF_PixelFormat format, RegionBlur* blur>
void wholeBlur(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto amount = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        for (auto step : state) {
            blur(&worlds.dst, inData, PF_Iterations_ONCE_PER_PROCESSOR, &worlds.src, &worlds.tmp, kWhole,
                 mask, 5, nullptr, amount);
        }
    });
    report(state, state.range(0));
}

/// Argument: amount.
void kernel(benchmark::State& state) {
    const auto amount = static_cast<double>(state.range(0));
    for (auto step : state) {
        benchmark::DoNotOptimize(
            makeGaussKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125));
    }
}

void onBoth(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {11, 41, 501}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

constexpr PF_PixelFormat k16 = PF_PixelFormat_ARGB64;
constexpr PF_PixelFormat k32 = PF_PixelFormat_ARGB128;

BENCHMARK((singlePass<k16, passRunH16>))->Name("passRunH16")->Apply(onBoth);
BENCHMARK((singlePass<k16, passRunV16>))->Name("passRunV16")->Apply(onBoth);
BENCHMARK((singlePass<k16, passWindowH16>))->Name("passWindowH16")->Apply(onBoth);
BENCHMARK((singlePass<k16, passWindowV16>))->Name("passWindowV16")->Apply(onBoth);
BENCHMARK((singlePass<k32, passRunH32>))->Name("passRunH32")->Apply(onBoth);
BENCHMARK((singlePass<k32, passRunV32>))->Name("passRunV32")->Apply(onBoth);
BENCHMARK((singlePass<k32, passWindowH32>))->Name("passWindowH32")->Apply(onBoth);
BENCHMARK((singlePass<k32, passWindowV32>))->Name("passWindowV32")->Apply(onBoth);
BENCHMARK((wholeBlur<k16, blurRegionRun16>))->Name("blurRegionRun16")->Apply(onBoth);
BENCHMARK((wholeBlur<k16, blurRegionWindow16>))->Name("blurRegionWindow16")->Apply(onBoth);
BENCHMARK((wholeBlur<k32, blurRegionRun32>))->Name("blurRegionRun32")->Apply(onBoth);
BENCHMARK((wholeBlur<k32, blurRegionWindow32>))->Name("blurRegionWindow32")->Apply(onBoth);
BENCHMARK(kernel)->Name("makeGaussKernel")->Arg(11)->Arg(41)->Arg(501)->Arg(1001);

} // namespace
} // namespace kovalune::bench
