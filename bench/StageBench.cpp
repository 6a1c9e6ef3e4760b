// The passes between the blurs of a stage: the colour extension, and those that finish a layer and lay it over the picture.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"

#include "effect/blur/ColorExtension.h"
#include "effect/blur/FinishingPasses.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

#include <algorithm>

namespace kovalune::bench {
namespace {

constexpr int64_t kPixels = int64_t{kWidth} * kHeight;

/// Arguments: source, reach. Over the whole picture.
template <PF_PixelFormat format, class Format, ColorExtension* extend>
void extension(benchmark::State& state) {
    constexpr auto kPixelBytes = static_cast<int64_t>(sizeof(typename Format::Pixel));
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
        reportCopies(state, {2 * kPixels + selectedBy(seed) * kPixelBytes, kPixels * kPixelBytes});
    });
    report(state, state.range(0));
}

template <class Format>
void setAlpha(typename Format::Pixel& pixel, double share) {
    pixel.alpha = static_cast<typename Format::Channel>(share * static_cast<double>(Format::kFullScale));
}

/// Every pixel's alpha is its own, as no layer has it: nothing is the same twice.
template <class Format>
void scatterAlpha(PF_EffectWorld& world) {
    uint32_t spread = 1;
    for (int32_t y = 0; y < kWhole.height(); ++y) {
        auto* const row = rowOf<Format>(world, kWhole, y);
        for (int32_t x = 0; x < kWhole.width(); ++x) {
            spread = spread * 1664525 + 1013904223;
            setAlpha<Format>(row[x], static_cast<double>(spread >> 8) / 16777216.0);
        }
    }
}

/// Opaque inside the region, transparent outside, with a soft edge: the region's share of some columns around.
template <class Format>
void cutOut(PF_EffectWorld& world, const MaskPlane& region) {
    constexpr int32_t kEdge = 8;
    for (int32_t y = 0; y < kWhole.height(); ++y) {
        auto* const row = rowOf<Format>(world, kWhole, y);
        for (int32_t x = 0; x < kWhole.width(); ++x) {
            const uint8_t* const first = region.row(y) + std::max(x - kEdge, 0);
            const uint8_t* const last = region.row(y) + std::min(x + kEdge, kWhole.width() - 1);
            setAlpha<Format>(row[x], static_cast<double>(std::count(first, last + 1, uint8_t{1})) /
                                         static_cast<double>(last + 1 - first));
        }
    }
}

template <class Format>
void makeLayer(PF_EffectWorld& world, int64_t source, const MaskPlane& region) {
    if (source == kNoise) {
        scatterAlpha<Format>(world);
    } else {
        cutOut<Format>(world, region);
    }
}

template <class Format>
int64_t shownPixels(const PF_EffectWorld& layer) {
    int64_t shown = 0;
    for (int32_t y = 0; y < kWhole.height(); ++y) {
        const auto* const row = rowOf<Format>(layer, kWhole, y);
        shown += std::count_if(row, row + kWhole.width(), [](const auto& pixel) { return pixel.alpha != 0; });
    }
    return shown;
}

/// What a pass does with a pixel that it selects.
enum class Touch { kWrites, kChanges };

/// Argument: source. Where the pass selects what lies outside the mask, `outside` is set.
template <PF_PixelFormat format, class Format, FinishingPass* pass, bool outside, Touch touch>
void maskedFinish(benchmark::State& state) {
    constexpr auto kPixelBytes = static_cast<int64_t>(sizeof(typename Format::Pixel));
    BlurWorlds<format> worlds(state.range(0));
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        makeLayer<Format>(worlds.src, state.range(0), mask);
        for (auto step : state) {
            benchmark::DoNotOptimize(pass(inData, {&worlds.dst, &worlds.src, kWhole, mask}));
        }
        const int64_t inside = selectedBy(mask);
        const int64_t bytes = (outside ? kPixels - inside : inside) * kPixelBytes;
        reportCopies(state, {kPixels + bytes * (touch == Touch::kChanges ? 2 : 1), bytes});
    });
    report(state, state.range(0));
}

/// Arguments: source, bias. Alpha is put back before each run, which does not count.
template <PF_PixelFormat format, class Format, FinishingPass* putBack, FinishingPass* pass>
void bias(benchmark::State& state) {
    constexpr auto kPixelBytes = static_cast<int64_t>(sizeof(typename Format::Pixel));
    BlurWorlds<format> worlds(state.range(0));
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        makeLayer<Format>(worlds.src, state.range(0), mask);
        for (auto step : state) {
            state.PauseTiming();
            benchmark::DoNotOptimize(putBack(inData, {&worlds.dst, &worlds.src, kWhole, mask}));
            state.ResumeTiming();
            benchmark::DoNotOptimize(pass(inData, {.dst = &worlds.dst,
                                                   .rect = kWhole,
                                                   .mask = mask,
                                                   .bias = static_cast<double>(state.range(1))}));
        }
        const int64_t bytes = selectedBy(mask) * kPixelBytes;
        reportCopies(state, {kPixels + bytes, bytes});
    });
    report(state, state.range(0));
}

/// Argument: source.
template <PF_PixelFormat format, class Format, FinishingPass* pass>
void layerOver(benchmark::State& state) {
    constexpr auto kPixelBytes = static_cast<int64_t>(sizeof(typename Format::Pixel));
    BlurWorlds<format> worlds(state.range(0));
    runInHost([&](PF_InData* inData) {
        makeLayer<Format>(worlds.src, state.range(0), regionMask(inData, state.range(0)));
        for (auto step : state) {
            benchmark::DoNotOptimize(pass(inData, {.dst = &worlds.dst, .src = &worlds.src, .rect = kWhole}));
        }
        const int64_t shown = shownPixels<Format>(worlds.src);
        reportCopies(state, {(kPixels + shown) * kPixelBytes, shown * kPixelBytes});
    });
    report(state, state.range(0));
}

void bySource(benchmark::internal::Benchmark* bench) {
    bench->Arg(kDrawing)->Arg(kNoise)->UseRealTime()->Unit(benchmark::kMillisecond);
}

void byReach(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {2, 11, 1001}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

void byBias(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {0, 50, -50}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

constexpr PF_PixelFormat k8 = PF_PixelFormat_ARGB32;
constexpr PF_PixelFormat k16 = PF_PixelFormat_ARGB64;
constexpr PF_PixelFormat k32 = PF_PixelFormat_ARGB128;

BENCHMARK((extension<k16, Argb16, extendColors16>))->Name("extendColors16")->Apply(byReach);
BENCHMARK((extension<k32, Argb32, extendColors32>))->Name("extendColors32")->Apply(byReach);
BENCHMARK((maskedFinish<k16, Argb16, restoreMasked16, false, Touch::kWrites>))
    ->Name("restoreMasked16")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k32, Argb32, restoreMasked32, false, Touch::kWrites>))
    ->Name("restoreMasked32")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k16, Argb16, multiplyAlphaOutside16, true, Touch::kChanges>))
    ->Name("multiplyAlphaOutside16")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k32, Argb32, multiplyAlphaOutside32, true, Touch::kChanges>))
    ->Name("multiplyAlphaOutside32")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k8, Argb8, clearAlphaOutside8, true, Touch::kWrites>))
    ->Name("clearAlphaOutside8")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k16, Argb16, clearAlphaOutside16, true, Touch::kWrites>))
    ->Name("clearAlphaOutside16")
    ->Apply(bySource);
BENCHMARK((maskedFinish<k32, Argb32, clearAlphaOutside32, true, Touch::kWrites>))
    ->Name("clearAlphaOutside32")
    ->Apply(bySource);
BENCHMARK((bias<k16, Argb16, restoreMasked16, applyBoundaryBias16>))
    ->Name("applyBoundaryBias16")
    ->Apply(byBias);
BENCHMARK((bias<k32, Argb32, restoreMasked32, applyBoundaryBias32>))
    ->Name("applyBoundaryBias32")
    ->Apply(byBias);
BENCHMARK((layerOver<k16, Argb16, composeOver16>))->Name("composeOver16")->Apply(bySource);
BENCHMARK((layerOver<k32, Argb32, composeOver32>))->Name("composeOver32")->Apply(bySource);

} // namespace
} // namespace kovalune::bench
