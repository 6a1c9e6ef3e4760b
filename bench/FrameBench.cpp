// Whole frames through the entry point and the SmartFX flow, in the three depths.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"

#include <stdexcept>
#include <string>

namespace kovalune::bench {
namespace {

using Setting = void (*)(host::Session&);

void set(host::Session& session, const std::string& label, host::ParamValue value) {
    session.setValue(session.findParam(label).value(), value);
}

/// As the effect comes, all stages on; few pixels match its default colours.
void useDefaults(host::Session&) {}

/// The Base stage alone, on the four picked colours.
template <int amount>
void useBase(host::Session& session) {
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, "Enable " + number, A_long{1});
        set(session, "Color " + number, kPicked[i]);
        set(session, number + " : Enable Process", A_long{0});
    }
    set(session, "Blur Amount", static_cast<double>(amount));
}

/// Base on the picked colours and each Process stage on one of them, with the default amounts.
void useAllStages(host::Session& session) {
    useBase<10>(session);
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, number + " : Enable Process", A_long{1});
        set(session, number + " : Color", kPicked[i]);
    }
}

/// The same with every amount and repeat at its largest.
void useLargest(host::Session& session) {
    useAllStages(session);
    set(session, "Blur Amount", 1000.0);
    set(session, "Blur Repeat Num", A_long{10});
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, number + " : Boundary Blur", 1000.0);
        set(session, number + " : Blur Repeat Num", A_long{10});
    }
}

/// In the memory that the pictures lie in, as a tool that has them in the effect's own formats renders them. Argument:
/// source.
template <PF_PixelFormat format, Setting setting, int64_t scale = kFullHd>
void frame(benchmark::State& state) {
    host::HostOptions options;
    host::Host host(options);
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

[[maybe_unused]] const bool kRegistered = [] {
    registerFrames<PF_PixelFormat_ARGB32>("frame8");
    registerFrames<PF_PixelFormat_ARGB64>("frame16");
    registerFrames<PF_PixelFormat_ARGB128>("frame32");
    registerLargeFrames<PF_PixelFormat_ARGB32>("frameUhd8");
    registerLargeFrames<PF_PixelFormat_ARGB64>("frameUhd16");
    registerLargeFrames<PF_PixelFormat_ARGB128>("frameUhd32");
    return true;
}();

} // namespace
} // namespace kovalune::bench
