// A frame as the plug-in for OpenFX hosts makes it, between images in a host's own order: what the two passes of its pixels take
// is the difference to the rows of the same setting in FrameBench.cpp.

#include "bench/BenchScene.h"
#include "bench/CopyTime.h"
#include "bench/FrameSettings.h"

#include "adapters/openfx/PixelPasses.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "hostapi/EntryPoint.h"

#include <stdexcept>
#include <string>
#include <vector>

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
        : bytes_(openfx::bytesOf(depth) * 4 * static_cast<std::size_t>(width) *
                 static_cast<std::size_t>(height)) {
        block_.data = bytes_.data();
        block_.rowBytes = static_cast<std::ptrdiff_t>(openfx::bytesOf(depth) * 4) * width;
        block_.bounds = {0, 0, width, height};
        block_.depth = depth;
        block_.alpha = alpha;
    }

    const PixelBlock& block() const { return block_; }

private:
    std::vector<std::byte> bytes_;
    PixelBlock block_;
};

/// The bench's picture as the host would hand it in: a frame that nothing has changed yet, on its way out.
void fill(const PixelBlock& block, const host::Image& picture, const host::RowWork& work) {
    host::Image black(picture.format(), picture.width(), picture.height());
    openfx::giveOut(block, block.bounds, {picture, black, block, false}, work);
}

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
    const auto renderOne = [&] {
        openfx::takeIn(image, source.block(), false, host.rowWork());
        if (!session.render(image.view(), result.view()).ok()) {
            throw std::runtime_error("a frame failed");
        }
        openfx::giveOut(output.block(), output.block().bounds, {result, image, source.block(), false},
                        host.rowWork());
    };
    renderOne(); // the first one finds all memory new
    for (auto step : state) {
        renderOne();
    }
    report(state, state.range(0), kFullHd);
    reportCopies(state, format, kFullHd);
}

template <PF_PixelFormat format>
void registerFrames(const std::string& name) {
    const auto add = [&name](const char* row, void (*bench)(benchmark::State&)) {
        benchmark::RegisterBenchmark((name + row).c_str(), bench)
            ->Arg(kDrawing)
            ->Arg(kNoise)
            ->UseRealTime()
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
