// Whole frames through the entry point and the SmartFX flow, in the three depths.

#include "bench/BenchScene.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"

#include <stdexcept>
#include <string>

namespace kovalune::bench {
namespace {

void pickColors(host::Session& session) {
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        session.setValue(session.findParam("Enable " + number).value(), A_long{1});
        session.setValue(session.findParam("Color " + number).value(), kPicked[i]);
    }
}

/// Arguments: source, "Blur Amount".
template <PF_PixelFormat format>
void frame(benchmark::State& state) {
    host::HostOptions options;
    options.globalSetdownAtEnd = false; // the linked effect serves every benchmark of this process
    host::Host host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc);
    host::Session session(host, module);
    pickColors(session);
    session.setValue(session.findParam("Blur Amount").value(), static_cast<double>(state.range(1)));
    const host::Image& input = picture(state.range(0), format);
    host::Image output = input;
    for (auto step : state) {
        if (!session.render(input, output).ok()) {
            throw std::runtime_error("a frame failed");
        }
    }
    report(state, state.range(0));
}

void onBoth(benchmark::internal::Benchmark* bench) {
    bench->ArgsProduct({{kDrawing, kNoise}, {10, 40, 1000}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(frame<PF_PixelFormat_ARGB32>)->Name("frame8")->Apply(onBoth);
BENCHMARK(frame<PF_PixelFormat_ARGB64>)->Name("frame16")->Apply(onBoth);
BENCHMARK(frame<PF_PixelFormat_ARGB128>)->Name("frame32")->Apply(onBoth);

} // namespace
} // namespace kovalune::bench
