// Boundary smoothing with the values that frames are smoothed with: the edge flag map, the visit of its flagged pixels, and
// the whole call on a picture of its own; all in copies of the whole picture, so that parts add up.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"

#include "effect/Kovalune.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/PixelProcedure.h"
#include "effect/smoothing/SmoothBoundaries.h"
#include "effect/smoothing/SmoothContext.h"

#include <cstring>
#include <stdexcept>

namespace kovalune::bench {
namespace {

/// A source, a destination that starts as its copy, and memory for the map.
class SmoothScene {
public:
    SmoothScene(PF_PixelFormat format, benchmark::State& state)
        : input_(picture(state.range(0), format, state.range(1))), output_(input_), src_(worldOn(input_)),
          dst_(worldOn(output_)), cells_(cellBytes()) {
        params.pixelFormat = format;
        params.srcWorld = &src_;
        params.dstWorld = &dst_;
    }

    /// Every map is made in the same memory.
    EdgeFlagMap emptyMap() {
        PF_EffectWorld memory = {};
        memory.data = static_cast<PF_PixelPtr>(static_cast<void*>(cells_.memory()));
        memory.rowbytes = EdgeFlagMap::rowCells(dst_.width);
        return EdgeFlagMap(memory, dst_.width, dst_.height);
    }

    void restoreDestination() {
        std::memcpy(output_.row(0), input_.row(0),
                    input_.rowBytes() * static_cast<std::size_t>(input_.height()));
    }

    SmoothParams params;

private:
    std::size_t cellBytes() const {
        return static_cast<std::size_t>(EdgeFlagMap::rowCells(dst_.width)) *
               static_cast<std::size_t>(EdgeFlagMap::rowCount(dst_.height));
    }

    host::Image input_;
    host::Image output_;
    PF_EffectWorld src_;
    PF_EffectWorld dst_;
    ScratchBlock cells_;
};

template <class Format>
void fill(EdgeFlagMap& map, const SmoothParams& params) {
    fillEdgeFlags<Format>(map, *params.dstWorld, SmoothOf<Format>::limitOf(params.threshold));
}

/// Arguments: source, scale.
template <PF_PixelFormat format, class Format>
void edgeFlagMap(benchmark::State& state) {
    SmoothScene scene(format, state);
    for (auto step : state) {
        EdgeFlagMap map = scene.emptyMap();
        fill<Format>(map, scene.params);
        benchmark::ClobberMemory();
    }
    reportCopies(state, format, state.range(1));
    report(state, state.range(0), state.range(1));
}

/// Arguments: source, scale. The destination is a fresh copy each time, which does not count.
template <PF_PixelFormat format, class Format>
void visit(benchmark::State& state) {
    SmoothScene scene(format, state);
    EdgeFlagMap map = scene.emptyMap();
    fill<Format>(map, scene.params);
    const PixelSource<Format, KeyMode::kPlain> source(scene.params);
    for (auto step : state) {
        state.PauseTiming();
        scene.restoreDestination();
        state.ResumeTiming();
        visitFlagged(SmoothContext<Format, KeyMode::kPlain>(scene.params, source, map));
        benchmark::ClobberMemory();
    }
    reportCopies(state, format, state.range(1));
    report(state, state.range(0), state.range(1));
}

PictureView viewOf(const host::Image& image) {
    return {image.format(), image.width(), image.height(), static_cast<int32_t>(image.rowBytes()),
            image.row(0)};
}

/// Arguments: source, scale. Copy, map and visit.
template <PF_PixelFormat format>
void wholeCall(benchmark::State& state) {
    const PictureView source = viewOf(picture(state.range(0), format, state.range(1)));
    host::Image output(format, source.width, source.height);
    const WritablePictureView destination = {format, source.width, source.height, source.rowbytes,
                                             output.row(0)};
    for (auto step : state) {
        if (smoothPicture(source, destination, {}) != PF_Err_NONE) {
            throw std::runtime_error("the smoothing failed");
        }
    }
    reportCopies(state, format, state.range(1));
    report(state, state.range(0), state.range(1));
}

void onAll(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise, kFlat}, {kFullHd, kUltraHd}})
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

constexpr PF_PixelFormat k8 = PF_PixelFormat_ARGB32;
constexpr PF_PixelFormat k16 = PF_PixelFormat_ARGB64;
constexpr PF_PixelFormat k32 = PF_PixelFormat_ARGB128;

BENCHMARK((edgeFlagMap<k8, Argb8>))->Name("edgeFlagMap8")->Apply(onAll);
BENCHMARK((edgeFlagMap<k16, Argb16>))->Name("edgeFlagMap16")->Apply(onAll);
BENCHMARK((edgeFlagMap<k32, Argb32>))->Name("edgeFlagMap32")->Apply(onAll);
BENCHMARK((visit<k8, Argb8>))->Name("visitFlagged8")->Apply(onAll);
BENCHMARK((visit<k16, Argb16>))->Name("visitFlagged16")->Apply(onAll);
BENCHMARK((visit<k32, Argb32>))->Name("visitFlagged32")->Apply(onAll);
BENCHMARK(wholeCall<k8>)->Name("smoothPicture8")->Apply(onAll);
BENCHMARK(wholeCall<k16>)->Name("smoothPicture16")->Apply(onAll);
BENCHMARK(wholeCall<k32>)->Name("smoothPicture32")->Apply(onAll);

} // namespace
} // namespace kovalune::bench
