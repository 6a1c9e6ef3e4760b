// A frame as the plug-in for OpenFX hosts makes it, between images in a host's own order, beside the same frame in the
// reference host: what is more is the two passes of its pixels.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"
#include "bench/FrameSettings.h"

#include "adapters/openfx/PixelPasses.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <stdexcept>
#include <string>

namespace kovalune::bench {
namespace {

using openfx::Components;
using openfx::Depth;
using openfx::PixelBlock;
using samples::AlphaKind;

template <PF_PixelFormat format>
constexpr Depth kDepthOf = format == PF_PixelFormat_ARGB32   ? Depth::kByte
                           : format == PF_PixelFormat_ARGB64 ? Depth::kShort
                                                             : Depth::kFloat;

/// A host's image of RGBA, bottom row first.
class HostImage {
public:
    HostImage(Depth depth, int width, int height, AlphaKind alpha)
        : memory_(openfx::formatOf(depth), width, height) {
        block_.data = memory_.row(0);
        block_.rowBytes = static_cast<std::ptrdiff_t>(openfx::bytesOf(depth) * 4) * width;
        block_.bounds = {0, 0, width, height};
        block_.depth = depth;
        block_.alpha = alpha;
    }

    const PixelBlock& block() const { return block_; }

private:
    host::Image memory_; ///< in as large pages of memory as the reference host's own pictures
    PixelBlock block_;
};

/// The bench's picture as the host would hand it in: a frame that nothing has changed yet, on its way out.
void fill(const PixelBlock& block, const host::Image& picture, const host::RowWork& work) {
    host::Image black(picture.format(), picture.width(), picture.height());
    openfx::giveOut(block, block.bounds, {picture, black, block, false}, work);
}

/// The least of what something took: time, and processor time of all threads, which a busy machine disturbs less.
struct Least {
    double seconds = 1e9;
    double cpuSeconds = 1e9;

    template <class Work>
    double measure(const Work& work) {
        const std::clock_t cpu = std::clock();
        const auto start = std::chrono::steady_clock::now();
        work();
        const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        seconds = std::min(seconds, took);
        cpuSeconds = std::min(cpuSeconds, static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC);
        return took;
    }
};

/// Turn by turn, so that whatever else the machine does counts for both. The counters: the shortest frame of the reference host
/// in milliseconds, of the plug-in, and the second over the first; `cpu_ratio`: the same of processor time.
template <PF_PixelFormat format, FrameSetting setting, AlphaKind alpha>
void openfxFrame(benchmark::State& state) {
    host::HostOptions options;
    host::Host host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    host::Session session(host, module);
    setting(session);
    const host::Image& picture = bench::picture(state.range(0), format, kFullHd);
    const HostImage source(kDepthOf<format>, picture.width(), picture.height(), alpha);
    const HostImage output(kDepthOf<format>, picture.width(), picture.height(), alpha);
    fill(source.block(), picture, host.rowWork());
    host::Image image = picture;
    host::Image result = picture;
    const auto byHost = [&] {
        if (!session.render(picture.view(), result.view()).ok()) {
            throw std::runtime_error("a frame failed");
        }
    };
    const auto byPlugIn = [&] {
        openfx::takeIn(image, source.block(), false, host.rowWork());
        if (!session.render(image.view(), result.view()).ok()) {
            throw std::runtime_error("a frame failed");
        }
        openfx::giveOut(output.block(), output.block().bounds, {result, image, source.block(), false},
                        host.rowWork());
    };
    byHost(); // the first ones find all memory new
    byPlugIn();
    Least leastOfHost;
    Least leastOfPlugIn;
    for (auto step : state) {
        leastOfHost.measure(byHost);
        state.SetIterationTime(leastOfPlugIn.measure(byPlugIn));
    }
    report(state, state.range(0), kFullHd);
    state.counters["host_ms"] = 1e3 * leastOfHost.seconds;
    state.counters["plugin_ms"] = 1e3 * leastOfPlugIn.seconds;
    state.counters["ratio"] = leastOfPlugIn.seconds / leastOfHost.seconds;
    state.counters["cpu_ratio"] = leastOfPlugIn.cpuSeconds / leastOfHost.cpuSeconds;
    reportCopies(state, format, kFullHd);
}

template <PF_PixelFormat format>
void registerFrames(const std::string& name) {
    const auto add = [&name](const char* row, void (*bench)(benchmark::State&)) {
        benchmark::RegisterBenchmark((name + row).c_str(), bench)
            ->Arg(kDrawing)
            ->Arg(kNoise)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add(" defaults", openfxFrame<format, useDefaults, AlphaKind::kStraight>);
    add(" defaults premultiplied", openfxFrame<format, useDefaults, AlphaKind::kPremultiplied>);
    add(" all stages", openfxFrame<format, useAllStages, AlphaKind::kStraight>);
}

[[maybe_unused]] const bool kRegistered = [] {
    registerFrames<PF_PixelFormat_ARGB32>("openfx8");
    registerFrames<PF_PixelFormat_ARGB64>("openfx16");
    registerFrames<PF_PixelFormat_ARGB128>("openfx32");
    return true;
}();

} // namespace
} // namespace kovalune::bench
