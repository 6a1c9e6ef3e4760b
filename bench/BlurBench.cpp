// The region blur and the boundary blur: single passes by kernel length, and whole sequences; and the making of kernels.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"

#include "effect/blur/BoundaryBlur.h"
#include "effect/blur/GaussKernel.h"
#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"

#include <cmath>

namespace kovalune::bench {
namespace {

/// A single pass beside itself with the plain kernels and on one thread, and beside copies of the picture.
template <class Record>
void reportPasses(benchmark::State& state, PF_PixelFormat format, PF_InData* inData, Record& record,
                  PassFunction pass) {
    reportPlain(state, [&] { benchmark::DoNotOptimize(iterate(inData, record, pass)); });
    reportOneThread(state, [&] { benchmark::DoNotOptimize(pass(&record, 0, 0, 1)); });
    reportCopies(state, format);
}

/// Arguments: source, amount.
template <PF_PixelFormat format, PassFunction pass>
void singlePass(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto amount = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const GaussKernel kernel =
            makeGaussKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125);
        const MaskPlane mask = regionMask(inData, state.range(0));
        BlurPassRecord record{&worlds.dst, &worlds.src, kWhole, mask, kernel};
        for (auto step : state) {
            benchmark::DoNotOptimize(iterate(inData, record, pass));
        }
        reportPasses(state, format, inData, record, pass);
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
            benchmark::DoNotOptimize(blur(inData, {.dst = &worlds.dst,
                                                   .src = &worlds.src,
                                                   .tmp = &worlds.tmp,
                                                   .rect = kWhole,
                                                   .mask = mask,
                                                   .repeat = 5,
                                                   .amount = amount}));
        }
    });
    report(state, state.range(0));
}

/// No pixel keeps its alpha, so that every one costs what it can.
MaskPlane noMask(PF_InData* inData) {
    MaskPlane mask(inData, kWidth, kHeight);
    mask.clearTo(0);
    return mask;
}

/// Arguments: source, amount.
template <PF_PixelFormat format, PassFunction pass>
void boundaryPass(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto amount = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const GaussKernel kernel =
            makeGaussKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125);
        const MaskPlane mask = regionMask(inData, state.range(0));
        const MaskPlane keep = noMask(inData);
        BoundaryPassRecord record{&worlds.dst, &worlds.src, kWhole, mask, keep, kernel};
        for (auto step : state) {
            benchmark::DoNotOptimize(iterate(inData, record, pass));
        }
        reportPasses(state, format, inData, record, pass);
    });
    report(state, state.range(0));
}

/// Arguments: source, amount. Five repeats.
template <PF_PixelFormat format, BoundaryBlur* blur>
void wholeBoundaryBlur(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto amount = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        const MaskPlane keep = noMask(inData);
        for (auto step : state) {
            benchmark::DoNotOptimize(blur(inData, {.dst = &worlds.dst,
                                                   .src = &worlds.src,
                                                   .tmp = &worlds.tmp,
                                                   .rect = kWhole,
                                                   .regionMask = mask,
                                                   .alphaKeepMask = keep,
                                                   .repeat = 5,
                                                   .amount = amount}));
        }
    });
    report(state, state.range(0));
}

/// Argument: source.
template <PF_PixelFormat format, PassFunction pass>
void gain(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    runInHost([&](PF_InData* inData) {
        AlphaGainRecord record{&worlds.dst, kWhole, 5.5};
        for (auto step : state) {
            benchmark::DoNotOptimize(iterate(inData, record, pass));
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

/// Half of "Boundary Blur" at its smallest that blurs, its default and its largest.
void byBoundary(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {2, 6, 501}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

void bySource(benchmark::internal::Benchmark* bench) {
    bench->Arg(kDrawing)->Arg(kNoise)->UseRealTime()->Unit(benchmark::kMillisecond);
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
BENCHMARK((boundaryPass<k16, boundaryRunH16>))->Name("boundaryRunH16")->Apply(byBoundary);
BENCHMARK((boundaryPass<k16, boundaryRunV16>))->Name("boundaryRunV16")->Apply(byBoundary);
BENCHMARK((boundaryPass<k16, boundaryWindowH16>))->Name("boundaryWindowH16")->Apply(byBoundary);
BENCHMARK((boundaryPass<k16, boundaryWindowV16>))->Name("boundaryWindowV16")->Apply(byBoundary);
BENCHMARK((boundaryPass<k32, boundaryRunH32>))->Name("boundaryRunH32")->Apply(byBoundary);
BENCHMARK((boundaryPass<k32, boundaryRunV32>))->Name("boundaryRunV32")->Apply(byBoundary);
BENCHMARK((boundaryPass<k32, boundaryWindowH32>))->Name("boundaryWindowH32")->Apply(byBoundary);
BENCHMARK((boundaryPass<k32, boundaryWindowV32>))->Name("boundaryWindowV32")->Apply(byBoundary);
BENCHMARK((gain<k16, alphaGain16>))->Name("alphaGain16")->Apply(bySource);
BENCHMARK((gain<k32, alphaGain32>))->Name("alphaGain32")->Apply(bySource);
BENCHMARK((wholeBoundaryBlur<k16, blurBoundaryRun16>))->Name("blurBoundaryRun16")->Apply(byBoundary);
BENCHMARK((wholeBoundaryBlur<k16, blurBoundaryWindow16>))->Name("blurBoundaryWindow16")->Apply(byBoundary);
BENCHMARK((wholeBoundaryBlur<k32, blurBoundaryRun32>))->Name("blurBoundaryRun32")->Apply(byBoundary);
BENCHMARK((wholeBoundaryBlur<k32, blurBoundaryWindow32>))->Name("blurBoundaryWindow32")->Apply(byBoundary);
BENCHMARK(kernel)->Name("makeGaussKernel")->Arg(11)->Arg(41)->Arg(501)->Arg(1001);

} // namespace
} // namespace kovalune::bench
