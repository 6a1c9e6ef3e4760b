// The region blur and the boundary blur: single passes by kernel length, and whole sequences; the colour
// extension; the passes that finish a stage; and the making of kernels.

#include "bench/BenchScene.h"

#include "effect/blur/BoundaryBlur.h"
#include "effect/blur/ColorExtension.h"
#include "effect/blur/FinishingPasses.h"
#include "effect/blur/GaussKernel.h"
#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

#include <cmath>

namespace kovalune::bench {
namespace {

template <PF_PixelFormat format>
struct BlurWorlds {
    explicit BlurWorlds(int64_t source)
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
        const MaskPlane mask = regionMask(inData, state.range(0));
        BlurPassRecord record{&worlds.dst, &worlds.src, kWhole, mask, kernel};
        for (auto step : state) {
            benchmark::DoNotOptimize(iterate(inData, record, pass));
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

/// Arguments: source, reach. Over the whole picture.
template <PF_PixelFormat format, ColorExtension* extend>
void extension(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    const auto reach = static_cast<double>(state.range(1));
    runInHost([&](PF_InData* inData) {
        const MaskPlane seed = regionMask(inData, state.range(0));
        MaskPlane limit(inData, kWidth, kHeight);
        limit.clearTo(1);
        for (auto step : state) {
            benchmark::DoNotOptimize(extend(inData, {.dst = &worlds.dst,
                                                     .src = &worlds.src,
                                                     .spreadWorld = &worlds.tmp,
                                                     .rect = kWhole,
                                                     .limitMask = limit,
                                                     .seedMask = seed,
                                                     .reach = reach,
                                                     .stopAtGap = true}));
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

/// Gives every pixel an alpha of its own, as a layer with the softest of edges has.
template <class Format>
void soften(PF_EffectWorld& world) {
    uint32_t spread = 1;
    for (int32_t y = 0; y < kWhole.height(); ++y) {
        auto* const row = rowOf<Format>(world, kWhole, y);
        for (int32_t x = 0; x < kWhole.width(); ++x) {
            spread = spread * 1664525 + 1013904223;
            const double share = static_cast<double>(spread >> 8) / 16777216.0;
            row[x].alpha =
                static_cast<typename Format::Channel>(share * static_cast<double>(Format::kFullScale));
        }
    }
}

/// Argument: source.
template <PF_PixelFormat format, class Format, FinishingPass* pass>
void maskedFinish(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    soften<Format>(worlds.src);
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        for (auto step : state) {
            benchmark::DoNotOptimize(pass(inData, {&worlds.dst, &worlds.src, kWhole, mask}));
        }
    });
    report(state, state.range(0));
}

/// Arguments: source, bias. Alpha is put back before each run, which costs a copy under the mask.
template <PF_PixelFormat format, class Format, FinishingPass* putBack, FinishingPass* pass>
void bias(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    soften<Format>(worlds.src);
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        for (auto step : state) {
            benchmark::DoNotOptimize(putBack(inData, {&worlds.dst, &worlds.src, kWhole, mask}));
            benchmark::DoNotOptimize(pass(inData, {.dst = &worlds.dst,
                                                   .rect = kWhole,
                                                   .mask = mask,
                                                   .bias = static_cast<double>(state.range(1))}));
        }
    });
    report(state, state.range(0));
}

/// Argument: source.
template <PF_PixelFormat format, class Format, FinishingPass* pass>
void layerOver(benchmark::State& state) {
    BlurWorlds<format> worlds(state.range(0));
    soften<Format>(worlds.src);
    runInHost([&](PF_InData* inData) {
        for (auto step : state) {
            benchmark::DoNotOptimize(pass(inData, {.dst = &worlds.dst, .src = &worlds.src, .rect = kWhole}));
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

void onReaches(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {2, 11, 1001}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

/// Half of "Boundary Blur" at its smallest that blurs, its default and its largest.
void byBoundary(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {2, 6, 501}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

void bySource(benchmark::internal::Benchmark* bench) {
    bench->Arg(kDrawing)->Arg(kNoise)->UseRealTime()->Unit(benchmark::kMillisecond);
}

void byBias(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {0, 50, -50}})->UseRealTime()->Unit(benchmark::kMillisecond);
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
BENCHMARK((extension<k16, extendColors16>))->Name("extendColors16")->Apply(onReaches);
BENCHMARK((extension<k32, extendColors32>))->Name("extendColors32")->Apply(onReaches);
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
BENCHMARK((maskedFinish<k16, Argb16, restoreMasked16>))->Name("restoreMasked16")->Apply(bySource);
BENCHMARK((maskedFinish<k32, Argb32, restoreMasked32>))->Name("restoreMasked32")->Apply(bySource);
BENCHMARK((maskedFinish<k16, Argb16, multiplyAlphaOutside16>))
    ->Name("multiplyAlphaOutside16")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k32, Argb32, multiplyAlphaOutside32>))
    ->Name("multiplyAlphaOutside32")
    ->Apply(bySource);
BENCHMARK((bias<k16, Argb16, restoreMasked16, applyBoundaryBias16>))
    ->Name("applyBoundaryBias16")
    ->Apply(byBias);
BENCHMARK((bias<k32, Argb32, restoreMasked32, applyBoundaryBias32>))
    ->Name("applyBoundaryBias32")
    ->Apply(byBias);
BENCHMARK((layerOver<k16, Argb16, composeOver16>))->Name("composeOver16")->Apply(bySource);
BENCHMARK((layerOver<k32, Argb32, composeOver32>))->Name("composeOver32")->Apply(bySource);
BENCHMARK(kernel)->Name("makeGaussKernel")->Arg(11)->Arg(41)->Arg(501)->Arg(1001);

} // namespace
} // namespace kovalune::bench
