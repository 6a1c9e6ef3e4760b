// Whole frames through the entry point and the SmartFX flow, in the three depths.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"
#include "bench/FrameSettings.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"
#include "render/LinkedEffect.h"

#include <stdexcept>
#include <string>

namespace kovalune::bench {
namespace {

/// A reference host as a test has it: one band a thread.
host::HostOptions oneBandAThread() {
    return {};
}

/// As the tools have it, which divide a pass finely, so that a frame is the same on every machine.
host::HostOptions bandsOfTools() {
    return render::toolOptions();
}

/// In the memory that the pictures lie in, as a tool that has them in the effect's own formats renders them. Argument:
/// source.
template <PF_PixelFormat format, FrameSetting setting, int64_t scale = kFullHd,
          host::HostOptions (*hostOptions)() = oneBandAThread>
void frame(benchmark::State& state) {
    host::Host host(hostOptions());
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    host::Session session(host, module);
    setting(session);
    const host::Image& input = picture(state.range(0), format, scale);
    host::Image output = input;
    const auto renderOne = [&] {
        if (!session.render(input.view(), output.view()).ok()) {
            throw std::runtime_error("a frame failed");
        }
    };
    renderOne(); // the first one finds all memory new
    for (auto step : state) {
        renderOne();
    }
    report(state, state.range(0), scale);
    reportCopies(state, format, scale);
}

void onBoth(benchmark::internal::Benchmark* bench) {
    bench->Arg(kDrawing)->Arg(kNoise)->UseRealTime()->Unit(benchmark::kMillisecond);
}

template <PF_PixelFormat format>
void registerFrames(const std::string& name) {
    const auto add = [&name](const char* setting, void (*bench)(benchmark::State&)) {
        onBoth(benchmark::RegisterBenchmark((name + " " + setting).c_str(), bench));
    };
    add("defaults", frame<format, useDefaults>);
    add("base 10", frame<format, useBase<10>>);
    add("base 40", frame<format, useBase<40>>);
    add("base 1000", frame<format, useBase<1000>>);
    add("all stages", frame<format, useAllStages>);
    add("largest", frame<format, useLargest>);
}

/// How the cost grows with the pixels: four times those of the rows above.
template <PF_PixelFormat format>
void registerLargeFrames(const std::string& name) {
    onBoth(benchmark::RegisterBenchmark((name + " defaults").c_str(), frame<format, useDefaults, kUltraHd>));
    onBoth(
        benchmark::RegisterBenchmark((name + " all stages").c_str(), frame<format, useAllStages, kUltraHd>));
}

template <PF_PixelFormat format>
void registerToolFrames(const std::string& name) {
    const auto add = [&name](const char* setting, void (*bench)(benchmark::State&)) {
        onBoth(benchmark::RegisterBenchmark((name + " " + setting).c_str(), bench));
    };
    add("defaults", frame<format, useDefaults, kFullHd, bandsOfTools>);
    add("base 10", frame<format, useBase<10>, kFullHd, bandsOfTools>);
    add("all stages", frame<format, useAllStages, kFullHd, bandsOfTools>);
    add("largest", frame<format, useLargest, kFullHd, bandsOfTools>);
}

[[maybe_unused]] const bool kRegistered = [] {
    registerFrames<PF_PixelFormat_ARGB32>("frame8");
    registerFrames<PF_PixelFormat_ARGB64>("frame16");
    registerFrames<PF_PixelFormat_ARGB128>("frame32");
    registerToolFrames<PF_PixelFormat_ARGB32>("frameTool8");
    registerToolFrames<PF_PixelFormat_ARGB64>("frameTool16");
    registerToolFrames<PF_PixelFormat_ARGB128>("frameTool32");
    registerLargeFrames<PF_PixelFormat_ARGB32>("frameUhd8");
    registerLargeFrames<PF_PixelFormat_ARGB64>("frameUhd16");
    registerLargeFrames<PF_PixelFormat_ARGB128>("frameUhd32");
    return true;
}();

} // namespace
} // namespace kovalune::bench
