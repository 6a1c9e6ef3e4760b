// One horizontal and one vertical pass of the region blur beside what a user would pick instead: a general library's Gaussian
// with normalised convolution, blur(mask * picture) / blur(mask), of as many taps and the same standard deviation. One thread
// each, 1920 by 1080, the best of several tries in turn, so that both meet the same machine.
//
//   kovalune_rivals [--cpu SET]
//
// Scenes: dense (noise, all masked in), half (the same, every second pixel masked in at random) and the drawing (four of its
// colours masked in).
#include "bench/BenchScene.h"
#include "effect/Kovalune.h"
#include "effect/blur/GaussKernel.h"
#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace kovalune::bench {
namespace {

struct Scene {
    const char* name;
    Source source;
    bool allIn;
};

constexpr std::array<Scene, 3> kScenes = {
    {{"dense", kNoise, true}, {"half", kNoise, false}, {"drawing", kDrawing, false}}};
constexpr std::array<int32_t, 3> kTaps = {21, 99, 599};

double millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The best of each piece of work, tried in turn for two seconds and at least three times.
template <std::size_t kCount>
std::array<double, kCount> bestOf(const std::array<std::function<void()>, kCount>& works) {
    std::array<double, kCount> best;
    best.fill(1e9);
    double all = 0.0;
    for (int round = 0; round < 3 || all < 2000.0; ++round) {
        for (std::size_t i = 0; i < kCount; ++i) {
            const double taken = millisecondsOf(works[i]);
            best[i] = std::min(best[i], taken);
            all += taken;
        }
    }
    return best;
}

template <class Channel>
struct Rival {
    static constexpr int kDepth = sizeof(Channel) == 2 ? CV_16U : CV_32F;
    static constexpr double kFull = sizeof(Channel) == 2 ? 32768.0 : 1.0;
    cv::Mat masked; ///< red, green, blue and the mask as a fourth channel
    cv::Mat blurred;

    Rival(const PF_EffectWorld& world, const MaskPlane& mask)
        : masked(kHeight, kWidth, CV_MAKETYPE(kDepth, 4)), blurred(kHeight, kWidth, CV_MAKETYPE(kDepth, 4)) {
        for (int32_t y = 0; y < kHeight; ++y) {
            const uint8_t* const bytes = static_cast<const uint8_t*>(static_cast<const void*>(world.data)) +
                                         static_cast<std::ptrdiff_t>(y) * world.rowbytes;
            for (int32_t x = 0; x < kWidth; ++x) {
                std::array<Channel, 4> argb;
                std::memcpy(argb.data(), bytes + static_cast<std::size_t>(x) * sizeof argb, sizeof argb);
                const bool in = mask.row(y)[x] != 0;
                Channel* const to = masked.ptr<Channel>(y) + 4 * x;
                for (std::size_t c = 0; c < 3; ++c) {
                    to[c] = in ? argb[c + 1] : Channel{0};
                }
                to[3] = in ? static_cast<Channel>(kFull) : Channel{0};
            }
        }
    }

    void blur(const MaskPlane& mask, int32_t taps) {
        const double deviation = (taps + 1) / 2 * std::sqrt(0.125);
        cv::GaussianBlur(masked, blurred, cv::Size(taps, taps), deviation, deviation, cv::BORDER_CONSTANT);
        for (int32_t y = 0; y < kHeight; ++y) {
            const uint8_t* const in = mask.row(y);
            Channel* pixel = blurred.ptr<Channel>(y);
            for (int32_t x = 0; x < kWidth; ++x, pixel += 4) {
                if (in[x] == 0 || !(pixel[3] > 0)) {
                    continue;
                }
                for (int c = 0; c < 3; ++c) {
                    if constexpr (sizeof(Channel) == 2) {
                        pixel[c] = static_cast<Channel>(uint32_t{pixel[c]} * 32768U / pixel[3]);
                    } else {
                        pixel[c] /= pixel[3];
                    }
                }
            }
        }
    }
};

/// A row of the table.
template <PF_PixelFormat format, class Channel>
void compare(PF_InData* inData, const Scene& scene, int32_t taps) {
    constexpr bool kDeep = sizeof(Channel) == 2;
    BlurWorlds<format> worlds(scene.source);
    MaskPlane mask = regionMask(inData, scene.source);
    if (scene.allIn) {
        mask.clearTo(1);
    }
    const int32_t half = (taps + 1) / 2;
    const GaussKernel kernel = makeGaussKernel(half, static_cast<double>(half) * half * 0.125);
    const auto passes = [&](PassFunction horizontal, PassFunction vertical) {
        return [&, horizontal, vertical] {
            BlurPassRecord across{&worlds.tmp, &worlds.src, kWhole, mask, kernel};
            BlurPassRecord down{&worlds.dst, &worlds.tmp, kWhole, mask, kernel};
            static_cast<void>(horizontal(&across, 0, 0, 1));
            static_cast<void>(vertical(&down, 0, 0, 1));
        };
    };
    Rival<Channel> rival(worlds.src, mask);
    std::vector<uint8_t> copied(static_cast<std::size_t>(kWidth) * kHeight * 4 * sizeof(Channel));
    const std::array<std::function<void()>, 4> works = {
        passes(kDeep ? passWindowH16 : passWindowH32, kDeep ? passWindowV16 : passWindowV32),
        passes(kDeep ? passRunH16 : passRunH32, kDeep ? passRunV16 : passRunV32),
        [&] { rival.blur(mask, taps); },
        [&] { std::memcpy(copied.data(), rival.masked.data, copied.size()); }};
    const auto best = bestOf(works);
    std::printf("%-8s %-6s %5d %11.2f %11.2f %11.2f %9.2fx %9.1f\n", scene.name, kDeep ? "16" : "float", taps,
                best[0], best[1], best[2], best[2] / best[0], best[0] / best[3]);
    std::fflush(stdout);
}

int run(const std::vector<std::string>& words) {
    if (words.size() == 2 && words[0] == "--cpu") {
        if (!useInstructionSet(words[1])) {
            std::fprintf(stderr, "kovalune_rivals: --cpu: this machine has no '%s'\n", words[1].c_str());
            return 2;
        }
    } else if (!words.empty()) {
        std::fprintf(stderr, "usage: kovalune_rivals [--cpu SET]\n");
        return 2;
    }
    cv::setNumThreads(1);
    std::printf("one horizontal and one vertical pass, milliseconds, one thread, %dx%d, %s\n", int{kWidth},
                int{kHeight}, instructionSet().c_str());
    std::printf("%-8s %-6s %5s %11s %11s %11s %10s %9s\n", "scene", "depth", "taps", "window", "run",
                "OpenCV", "ratio", "copies");
    runInHost([](PF_InData* inData) {
        for (const int32_t taps : kTaps) {
            for (const Scene& scene : kScenes) {
                compare<PF_PixelFormat_ARGB64, uint16_t>(inData, scene, taps);
                compare<PF_PixelFormat_ARGB128, float>(inData, scene, taps);
            }
        }
    });
    return 0;
}

} // namespace
} // namespace kovalune::bench

int main(int count, char** arguments) {
    return kovalune::bench::run({arguments + 1, arguments + count});
}
