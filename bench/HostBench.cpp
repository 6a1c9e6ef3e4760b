// What an effect asks its host for most: worlds, clears, copies, iterations, colours.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"
#include "bench/FrameSettings.h"

#include "effect/share/HostCode.h"

#include <stdexcept>

namespace kovalune::bench {
namespace {

void require(PF_Err code) {
    if (code != PF_Err_NONE) {
        throw std::runtime_error("a host call failed");
    }
}

template <class Call>
void measure(benchmark::State& state, Call&& call) {
    for (auto step : state) {
        call();
        benchmark::ClobberMemory();
    }
}

const PFWorldSuite2& worldSuite(PF_InData* inData) {
    const void* suite = nullptr;
    require(inData->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &suite));
    return *static_cast<const PFWorldSuite2*>(suite);
}

/// A world of the size of a picture, as an effect makes it.
class HostWorld {
public:
    HostWorld(PF_InData* inData, PF_PixelFormat format, int64_t scale, bool cleared)
        : ref_(inData->effect_ref), suite_(worldSuite(inData)) {
        const auto factor = static_cast<A_long>(scale);
        require(suite_.PF_NewWorld(ref_, kWidth * factor, kHeight * factor, cleared ? 1 : 0, format, &world));
    }
    ~HostWorld() { suite_.PF_DisposeWorld(ref_, &world); }
    HostWorld(const HostWorld&) = delete;
    HostWorld& operator=(const HostWorld&) = delete;

    PF_EffectWorld world{};

private:
    PF_ProgPtr ref_;
    const PFWorldSuite2& suite_;
};

/// Argument: scale.
template <PF_PixelFormat format>
void hostFill(benchmark::State& state) {
    runInHost([&](PF_InData* inData) {
        HostWorld target(inData, format, state.range(0), true);
        measure(state,
                [&] { require(inData->utils->fill(inData->effect_ref, nullptr, nullptr, &target.world)); });
    });
    report(state, kDrawing, state.range(0));
    reportCopies(state, format, state.range(0));
}

/// Argument: scale.
template <PF_PixelFormat format>
void hostCopy(benchmark::State& state) {
    runInHost([&](PF_InData* inData) {
        HostWorld source(inData, format, state.range(0), true);
        HostWorld target(inData, format, state.range(0), true);
        measure(state, [&] {
            require(inData->utils->copy(inData->effect_ref, &source.world, &target.world, nullptr, nullptr));
        });
    });
    report(state, kDrawing, state.range(0));
    reportCopies(state, format, state.range(0));
}

/// Argument: scale.
template <PF_PixelFormat format>
void hostClearedWorld(benchmark::State& state) {
    runInHost([&](PF_InData* inData) {
        measure(state, [&] { const HostWorld world(inData, format, state.range(0), true); });
    });
    report(state, kDrawing, state.range(0));
    reportCopies(state, format, state.range(0));
}

/// An iterate_generic over passes that do nothing: what a pass costs before it has done anything.
void hostIterate(benchmark::State& state) {
    const PF_IterateGenericFunc nothing = [](void*, A_long, A_long, A_long) -> PF_Err { return PF_Err_NONE; };
    runInHost([&](PF_InData* inData) {
        measure(state, [&] {
            require(inData->utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, nullptr, nothing));
        });
    });
}

void hostColour(benchmark::State& state) {
    runInHost([&](PF_InData* inData) {
        PF_Pixel colour = kPicked[0];
        PF_Fixed hls[3];
        measure(state, [&] {
            require(inData->utils->colorCB.RGBtoHLS(inData->effect_ref, &colour, hls));
            ++colour.red;
        });
    });
}

void onBothScales(benchmark::internal::Benchmark* bench) {
    bench->Arg(kFullHd)->Arg(kUltraHd)->UseRealTime();
}

BENCHMARK(hostFill<PF_PixelFormat_ARGB32>)->Name("hostFill8")->Apply(onBothScales);
BENCHMARK(hostFill<PF_PixelFormat_ARGB64>)->Name("hostFill16")->Apply(onBothScales);
BENCHMARK(hostFill<PF_PixelFormat_ARGB128>)->Name("hostFill32")->Apply(onBothScales);
BENCHMARK(hostCopy<PF_PixelFormat_ARGB32>)->Name("hostCopy8")->Apply(onBothScales);
BENCHMARK(hostCopy<PF_PixelFormat_ARGB64>)->Name("hostCopy16")->Apply(onBothScales);
BENCHMARK(hostCopy<PF_PixelFormat_ARGB128>)->Name("hostCopy32")->Apply(onBothScales);
BENCHMARK(hostClearedWorld<PF_PixelFormat_ARGB32>)->Name("hostClearedWorld8")->Apply(onBothScales);
BENCHMARK(hostClearedWorld<PF_PixelFormat_ARGB64>)->Name("hostClearedWorld16")->Apply(onBothScales);
BENCHMARK(hostClearedWorld<PF_PixelFormat_ARGB128>)->Name("hostClearedWorld32")->Apply(onBothScales);
BENCHMARK(hostIterate)->UseRealTime();
BENCHMARK(hostColour)->UseRealTime();

} // namespace
} // namespace kovalune::bench
