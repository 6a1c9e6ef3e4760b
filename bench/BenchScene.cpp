#include "bench/BenchScene.h"
#include "bench/FrameSettings.h"

#include "effect/pipeline/ColorExtraction.h"
#include "effect/pipeline/DepthConversion.h"
#include "effect/share/HostCode.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>

namespace kovalune::bench {
namespace {

constexpr uint32_t kSeed = 20090101;

host::Image drawing() {
    host::Image image =
        pictures::imageOf(pictures::readPicture(KOVALUNE_EXAMPLES "/cel1.png"), PF_PixelFormat_ARGB32);
    if (image.width() != kWidth || image.height() != kHeight) {
        throw std::runtime_error("the sample picture is not what the benchmarks expect");
    }
    return image;
}

/// The picture that has this pixel at (x, y).
template <class Pixel, class PixelAt>
host::Image painted(PF_PixelFormat format, A_long width, A_long height, PixelAt&& pixelAt) {
    host::Image image(format, width, height);
    for (A_long y = 0; y < height; ++y) {
        for (A_long x = 0; x < width; ++x) {
            image.at<Pixel>(x, y) = pixelAt(x, y);
        }
    }
    return image;
}

host::Image make8(int64_t source, A_long scale) {
    const auto paint = [&](auto&& pixelAt) {
        return painted<PF_Pixel>(PF_PixelFormat_ARGB32, kWidth * scale, kHeight * scale, pixelAt);
    };
    if (source == kNoise) {
        std::mt19937 random(kSeed);
        return paint([&](A_long, A_long) {
            const auto bits = static_cast<uint32_t>(random());
            return PF_Pixel{255, static_cast<A_u_char>(bits), static_cast<A_u_char>(bits >> 8),
                            static_cast<A_u_char>(bits >> 16)};
        });
    }
    if (source == kFlat) {
        return paint([](A_long, A_long) { return kPicked[0]; });
    }
    const host::Image tile = drawing();
    return paint([&](A_long x, A_long y) { return tile.at<PF_Pixel>(x % kWidth, y % kHeight); });
}

template <class Pixel, class Convert>
host::Image converted(const host::Image& narrow, PF_PixelFormat format, Convert&& convert) {
    return painted<Pixel>(format, narrow.width(), narrow.height(), [&](A_long x, A_long y) {
        const PF_Pixel& p = narrow.at<PF_Pixel>(x, y);
        return Pixel{convert(p.alpha), convert(p.red), convert(p.green), convert(p.blue)};
    });
}

host::Image make(int64_t source, PF_PixelFormat format, int64_t scale) {
    if (format == PF_PixelFormat_ARGB32) {
        return make8(source, static_cast<A_long>(scale));
    }
    const host::Image& narrow = picture(source, PF_PixelFormat_ARGB32, scale);
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

const host::Image& picture(int64_t source, PF_PixelFormat format, int64_t scale) {
    static std::map<std::tuple<int64_t, PF_PixelFormat, int64_t>, host::Image> made;
    const auto key = std::make_tuple(source, format, scale);
    const auto found = made.find(key);
    return found != made.end() ? found->second : made.emplace(key, make(source, format, scale)).first->second;
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

MaskPlane regionMask(PF_InData* inData, int64_t source) {
    if (source == kDrawing) {
        host::Image image = picture(kDrawing, PF_PixelFormat_ARGB32);
        PF_EffectWorld world = worldOn(image);
        MaskPlane mask;
        ignored(extractColors8(mask, inData, &world, kWhole, pickedMatches(inData)));
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

int64_t selectedBy(const MaskPlane& mask) {
    int64_t selected = 0;
    for (int32_t y = 0; y < mask.height(); ++y) {
        selected += mask.width() - std::count(mask.row(y), mask.row(y) + mask.width(), uint8_t{0});
    }
    return selected;
}

void report(benchmark::State& state, int64_t source, int64_t scale) {
    const double megapixels = static_cast<double>(scale * kWidth * scale * kHeight) / 1e6;
    state.counters["MP/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
    constexpr const char* names[] = {"drawing", "noise", "flat"};
    state.SetLabel(std::string(names[source]) + (scale == kUltraHd ? " 3840x2160" : ""));
}

} // namespace kovalune::bench
