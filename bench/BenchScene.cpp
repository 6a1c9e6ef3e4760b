#include "bench/BenchScene.h"

#include "cli/PictureConversion.h"
#include "cli/PngFile.h"
#include "effect/pipeline/ColorExtraction.h"
#include "effect/pipeline/DepthConversion.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"

#include <map>
#include <random>
#include <stdexcept>
#include <utility>

namespace kovalune::bench {
namespace {

constexpr std::uint32_t kSeed = 20090101;

host::Image noise() {
    host::Image image(PF_PixelFormat_ARGB32, kWidth, kHeight);
    std::mt19937 random(kSeed);
    for (A_long y = 0; y < kHeight; ++y) {
        for (A_long x = 0; x < kWidth; ++x) {
            const auto bits = static_cast<std::uint32_t>(random());
            image.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(bits), static_cast<A_u_char>(bits >> 8),
                                        static_cast<A_u_char>(bits >> 16)};
        }
    }
    return image;
}

host::Image drawing() {
    host::Image image = imageOf(readPng(KOVALUNE_EXAMPLES "/cel1.png"));
    if (image.format() != PF_PixelFormat_ARGB32 || image.width() != kWidth || image.height() != kHeight) {
        throw std::runtime_error("the sample picture is not what the benchmarks expect");
    }
    return image;
}

template <class Pixel, class Convert>
host::Image converted(const host::Image& narrow, PF_PixelFormat format, Convert&& convert) {
    host::Image image(format, kWidth, kHeight);
    for (A_long y = 0; y < kHeight; ++y) {
        for (A_long x = 0; x < kWidth; ++x) {
            const PF_Pixel& p = narrow.at<PF_Pixel>(x, y);
            image.at<Pixel>(x, y) = {convert(p.alpha), convert(p.red), convert(p.green), convert(p.blue)};
        }
    }
    return image;
}

host::Image make(std::int64_t source, PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) {
        return source == kNoise ? noise() : drawing();
    }
    const host::Image& narrow = picture(source, PF_PixelFormat_ARGB32);
    if (format == PF_PixelFormat_ARGB64) {
        return converted<PF_Pixel16>(narrow, format, widenChannel);
    }
    return converted<PF_PixelFloat>(narrow, format,
                                    [](A_u_char c) { return static_cast<float>(c) / 255.0F; });
}

const std::function<void(PF_InData*)>* currentBody = nullptr;

/// An effect that does nothing but lend its host to the body that waits.
PF_Err lendHost(PF_Cmd cmd, PF_InData* inData, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
    if (cmd == PF_Cmd_ABOUT) {
        (*currentBody)(inData);
    }
    return PF_Err_NONE;
}

} // namespace

const host::Image& picture(std::int64_t source, PF_PixelFormat format) {
    static std::map<std::pair<std::int64_t, PF_PixelFormat>, host::Image> made;
    const auto key = std::make_pair(source, format);
    const auto found = made.find(key);
    return found != made.end() ? found->second : made.emplace(key, make(source, format)).first->second;
}

PF_EffectWorld worldOn(host::Image& image) {
    PF_EffectWorld world = {};
    world.data = &image.at<PF_Pixel>(0, 0);
    world.rowbytes = static_cast<A_long>(image.rowBytes());
    world.width = image.width();
    world.height = image.height();
    return world;
}

void runInHost(const std::function<void(PF_InData*)>& body) {
    static host::Host host;
    static host::EffectModule module = host::EffectModule::linked(lendHost);
    host::Session session(host, module);
    currentBody = &body;
    const host::CommandResult result = session.about();
    currentBody = nullptr;
    if (!result.ok()) {
        throw std::runtime_error("a benchmark failed inside the host: " + result.exceptionText);
    }
}

ColorMatches pickedMatches(PF_InData* inData) {
    ColorMatches matches;
    for (const PF_Pixel& color : kPicked) {
        matches.push_back(makeColorMatch(inData, color, 0.0));
    }
    return matches;
}

MaskPlane regionMask(PF_InData* inData, std::int64_t source) {
    if (source == kDrawing) {
        host::Image image = picture(kDrawing, PF_PixelFormat_ARGB32);
        PF_EffectWorld world = worldOn(image);
        MaskPlane mask;
        extractColors8(mask, inData, &world, kWhole, pickedMatches(inData));
        return mask;
    }
    MaskPlane mask(inData, kWidth, kHeight);
    std::mt19937 random(kSeed);
    for (int32_t y = 0; y < kHeight; ++y) {
        for (int32_t x = 0; x < kWidth; ++x) {
            mask.row(y)[x] = static_cast<uint8_t>(random() & 1U);
        }
    }
    mask.refreshActivity();
    return mask;
}

void report(benchmark::State& state, std::int64_t source) {
    constexpr double megapixels = static_cast<double>(kWidth) * kHeight / 1e6;
    state.counters["MP/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
    state.SetLabel(source == kNoise ? "noise" : "drawing");
}

} // namespace kovalune::bench
