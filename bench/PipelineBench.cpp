// The passes of the frame's plumbing: extraction, coverage, depth conversion, masked copy.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"

#include "effect/pipeline/ColorExtraction.h"
#include "effect/pipeline/Coverage.h"
#include "effect/pipeline/DepthConversion.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/share/HostCode.h"

namespace kovalune::bench {
namespace {

constexpr int64_t kPixels = int64_t{kWidth} * kHeight;

int64_t bytesOf(const host::Image& image) {
    return static_cast<int64_t>(image.rowBytes()) * image.height();
}

template <PF_PixelFormat format, auto extractColors>
void extraction(benchmark::State& state) {
    host::Image image = picture(state.range(0), format);
    PF_EffectWorld world = worldOn(image);
    runInHost([&](PF_InData* inData) {
        const ColorMatches matches = pickedMatches(inData);
        MaskPlane mask;
        for (auto step : state) {
            ignored(extractColors(mask, inData, &world, kWhole, matches, nullptr));
        }
        reportCopies(state, {bytesOf(image), kPixels});
    });
    report(state, state.range(0));
}

template <PF_PixelFormat format, auto coverage>
void coverageOf(benchmark::State& state) {
    host::Image image = picture(state.range(0), format);
    PF_EffectWorld world = worldOn(image);
    runInHost([&](PF_InData* inData) {
        MaskPlane mask;
        for (auto step : state) {
            ignored(coverage(mask, inData, &world, kWhole));
        }
        reportCopies(state, {bytesOf(image), kPixels});
    });
    report(state, state.range(0));
}

/// A pass from one world to another under a mask; outside pixels stay.
template <PF_PixelFormat from, PF_PixelFormat to, auto pass>
void masked(benchmark::State& state) {
    host::Image source = picture(state.range(0), from);
    host::Image target = picture(state.range(0), to);
    PF_EffectWorld src = worldOn(source);
    PF_EffectWorld dst = worldOn(target);
    runInHost([&](PF_InData* inData) {
        const MaskPlane mask = regionMask(inData, state.range(0));
        for (auto step : state) {
            benchmark::DoNotOptimize(pass(inData, {&dst, &src, kWhole, mask}));
        }
        const int64_t selected = selectedBy(mask);
        reportCopies(state,
                     {kPixels + selected * bytesOf(source) / kPixels, selected * bytesOf(target) / kPixels});
    });
    report(state, state.range(0));
}

constexpr PF_PixelFormat k8 = PF_PixelFormat_ARGB32;
constexpr PF_PixelFormat k16 = PF_PixelFormat_ARGB64;
constexpr PF_PixelFormat k32 = PF_PixelFormat_ARGB128;

void onBoth(benchmark::internal::Benchmark* bench) {
    bench->DenseRange(kDrawing, kNoise)->UseRealTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK((extraction<k8, extractColors8>))->Name("extractColors8")->Apply(onBoth);
BENCHMARK((extraction<k16, extractColors16>))->Name("extractColors16")->Apply(onBoth);
BENCHMARK((extraction<k32, extractColors32>))->Name("extractColors32")->Apply(onBoth);
BENCHMARK((coverageOf<k8, coverage8>))->Name("coverage8")->Apply(onBoth);
BENCHMARK((coverageOf<k16, coverage16>))->Name("coverage16")->Apply(onBoth);
BENCHMARK((coverageOf<k32, coverage32>))->Name("coverage32")->Apply(onBoth);
BENCHMARK((masked<k8, k16, widenTo16>))->Name("widenTo16")->Apply(onBoth);
BENCHMARK((masked<k16, k8, narrowTo8>))->Name("narrowTo8")->Apply(onBoth);
BENCHMARK((masked<k16, k16, copyMasked16>))->Name("copyMasked16")->Apply(onBoth);
BENCHMARK((masked<k32, k32, copyMasked32>))->Name("copyMasked32")->Apply(onBoth);

} // namespace
} // namespace kovalune::bench
