// Milliseconds of whole frames through the plug-in's own file, for Linux and Windows alike: a line for each frame, with its name,
// its bits and the shortest time of some turns. The drawing is made here, since no picture is read on Windows.

#include "bench/FrameSettings.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Image.h"
#include "host/Session.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>

namespace kovalune::bench {
namespace {

constexpr A_long kWidth = 1920;
constexpr A_long kHeight = 1080;

/// Discs of the picked colours with hard borders, beside and over each other on a plain ground.
PF_Pixel colorAt(int32_t x, int32_t y) {
    constexpr PF_Pixel kGround = {255, 0xf2, 0xee, 0xe0};
    struct Disc {
        int32_t x, y, radius;
        int color;
    };
    constexpr Disc kDiscs[] = {{420, 400, 260, 0},  {610, 520, 170, 1}, {1150, 350, 230, 2},
                               {1240, 420, 120, 3}, {760, 850, 200, 0}, {1550, 800, 240, 2},
                               {1480, 860, 130, 1}, {200, 900, 90, 3}};
    PF_Pixel color = kGround;
    for (const Disc& disc : kDiscs) {
        const int32_t right = x - disc.x;
        const int32_t down = y - disc.y;
        if (right * right + down * down < disc.radius * disc.radius) {
            color = kPicked[disc.color];
        }
    }
    return color;
}

void putPixel(host::Image& image, A_long x, A_long y, PF_Pixel color) {
    switch (image.format()) {
    case PF_PixelFormat_ARGB128: {
        const auto share = [](uint8_t channel) { return static_cast<float>(channel) / 255.0F; };
        image.at<PF_PixelFloat>(x, y) = {share(color.alpha), share(color.red), share(color.green),
                                         share(color.blue)};
        return;
    }
    case PF_PixelFormat_ARGB64: {
        const auto wide = [](uint8_t channel) { return static_cast<uint16_t>(channel * 32768 / 255); };
        image.at<PF_Pixel16>(x, y) = {wide(color.alpha), wide(color.red), wide(color.green),
                                      wide(color.blue)};
        return;
    }
    default:
        image.at<PF_Pixel>(x, y) = color;
    }
}

host::Image drawing(PF_PixelFormat format) {
    host::Image image(format, kWidth, kHeight);
    for (A_long y = 0; y < kHeight; ++y) {
        for (A_long x = 0; x < kWidth; ++x) {
            putPixel(image, x, y, colorAt(x, y));
        }
    }
    return image;
}

/// The shortest of at least three turns and half a second. Below 0 where a frame fails.
double millisecondsOf(host::EffectModule& module, PF_PixelFormat format, FrameSetting setting) {
    using Clock = std::chrono::steady_clock;
    host::Host host;
    host::Session session(host, module);
    setting(session);
    const host::Image input = drawing(format);
    host::Image output = input;
    double shortest = 1e9;
    double all = 0.0;
    for (int turn = 0; turn < 4 || all < 500.0; ++turn) {
        const Clock::time_point begin = Clock::now();
        if (!session.render(input.view(), output.view()).ok()) {
            return -1.0;
        }
        const double took = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        all += took;
        shortest = std::min(shortest, took);
    }
    return shortest;
}

int run(const char* plugIn) {
    struct Named {
        const char* name;
        FrameSetting setting;
    };
    constexpr Named kFrames[] = {{"defaults", useDefaults},
                                 {"base-10", useBase<10>},
                                 {"all-stages", useAllStages},
                                 {"largest", useLargest}};
    constexpr struct {
        int bits;
        PF_PixelFormat format;
    } kDepths[] = {{8, PF_PixelFormat_ARGB32}, {16, PF_PixelFormat_ARGB64}, {32, PF_PixelFormat_ARGB128}};
    host::EffectModule module = host::EffectModule::load(plugIn, host::SetDown::kNever);
    for (const auto& [name, setting] : kFrames) {
        for (const auto& [bits, format] : kDepths) {
            const double took = millisecondsOf(module, format, setting);
            if (took < 0.0) {
                std::fprintf(stderr, "frame_times: the frame '%s' of %d bits failed\n", name, bits);
                return 1;
            }
            std::printf("%s %d %.2f\n", name, bits, took);
            std::fflush(stdout);
        }
    }
    return 0;
}

} // namespace
} // namespace kovalune::bench

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: kovalune_frame_times PLUGIN\n");
        return 2;
    }
    try {
        return kovalune::bench::run(arguments[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "frame_times: %s\n", error.what());
        return 1;
    }
}
