// The eight blurs by name, of a region and of a boundary, each depth and each scan; and a blur with all that it needs,
// beside its plain twin.
#pragma once

#include "effect/blur/BoundaryBlur.h"
#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"
#include "tests/reference/PlainBlur.h"
#include "tests/reference/PlainBoundaryBlur.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <string>

namespace kovalune::test {

struct BlurDriver {
    const char* name;
    PF_PixelFormat format;
    bool keepDivision;
    RegionBlur* region;     ///< null in a boundary blur
    BoundaryBlur* boundary; ///< null in a region blur
    PassFunction horizontal;
    PassFunction vertical;
    PassFunction gain; ///< null in a region blur

    bool isBoundary() const { return boundary != nullptr; }
};

inline constexpr PF_PixelFormat kDeep = PF_PixelFormat_ARGB64;
inline constexpr PF_PixelFormat kFloat = PF_PixelFormat_ARGB128;

inline constexpr std::array<BlurDriver, 4> kRegionDrivers = {{
    {"RegionRun16", kDeep, true, blurRegionRun16, nullptr, passRunH16, passRunV16, nullptr},
    {"RegionWindow16", kDeep, false, blurRegionWindow16, nullptr, passWindowH16, passWindowV16, nullptr},
    {"RegionRun32", kFloat, true, blurRegionRun32, nullptr, passRunH32, passRunV32, nullptr},
    {"RegionWindow32", kFloat, false, blurRegionWindow32, nullptr, passWindowH32, passWindowV32, nullptr},
}};

inline constexpr std::array<BlurDriver, 4> kBoundaryDrivers = {{
    {"BoundaryRun16", kDeep, true, nullptr, blurBoundaryRun16, boundaryRunH16, boundaryRunV16, alphaGain16},
    {"BoundaryWindow16", kDeep, false, nullptr, blurBoundaryWindow16, boundaryWindowH16, boundaryWindowV16,
     alphaGain16},
    {"BoundaryRun32", kFloat, true, nullptr, blurBoundaryRun32, boundaryRunH32, boundaryRunV32, alphaGain32},
    {"BoundaryWindow32", kFloat, false, nullptr, blurBoundaryWindow32, boundaryWindowH32, boundaryWindowV32,
     alphaGain32},
}};

inline constexpr std::array<BlurDriver, 8> kBlurDrivers = {
    {kRegionDrivers[0], kRegionDrivers[1], kRegionDrivers[2], kRegionDrivers[3], kBoundaryDrivers[0],
     kBoundaryDrivers[1], kBoundaryDrivers[2], kBoundaryDrivers[3]}};

inline std::string driverName(const testing::TestParamInfo<BlurDriver>& test) {
    return test.param.name;
}

/// What a blur is run with, whichever it is.
struct BlurJob {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    PF_EffectWorld* tmp;
    int32_t repeat;
    double amount;
    const ProgressCounter* progress = nullptr;
    A_long iterations = PF_Iterations_ONCE_PER_PROCESSOR;
    Workbench* workbench = nullptr;
};

/// Three worlds of random content in one host, a rectangle in them, a mask, and the pixels that keep their alpha in a
/// boundary blur.
struct BlurScene {
    static constexpr int32_t kAllSteps = std::numeric_limits<int32_t>::max();

    BlurDriver driver;
    StrictHost host;
    TestWorld src;
    TestWorld dst;
    TestWorld tmp;
    FrameRect rect;
    Mask mask;
    Mask keep;
    MaskPlane plane;
    MaskPlane keepPlane;

    BlurScene(const BlurDriver& blur, const host::judge::JudgeOptions& options, const FrameRect& area,
              const Mask& areaMask, const Mask& keepMask, Random& random, Range range = Range::kOrdinary)
        : driver(blur), host(options),
          src(host, blur.format, area.right + random.below(4), area.bottom + random.below(4)),
          dst(host, blur.format, src.width(), src.height()),
          tmp(host, blur.format, src.width(), src.height()), rect(area), mask(areaMask), keep(keepMask),
          plane(planeOf(host, areaMask)), keepPlane(planeOf(host, keepMask)) {
        for (TestWorld* world : {&src, &dst, &tmp}) {
            write(randomPicture(blur.format, src.width(), src.height(), random, range), *world);
        }
    }

    /// The whole picture as one area, in a strict host.
    BlurScene(const BlurDriver& blur, const Mask& areaMask, const Mask& keepMask, Random& random)
        : BlurScene(blur, strictOptions(), wholeRect(areaMask.width, areaMask.height), areaMask, keepMask,
                    random) {}

    /// No pixel keeps its alpha.
    BlurScene(const BlurDriver& blur, const Mask& areaMask, Random& random)
        : BlurScene(blur, areaMask, Mask(areaMask.width, areaMask.height, 0), random) {}

    BlurJob job(int32_t repeat, double amount) {
        return {.dst = dst.get(), .src = src.get(), .tmp = tmp.get(), .repeat = repeat, .amount = amount};
    }

    PF_Err run(const BlurJob& job) {
        if (driver.isBoundary()) {
            return driver.boundary(host.in(), {.dst = job.dst,
                                               .src = job.src,
                                               .tmp = job.tmp,
                                               .rect = rect,
                                               .regionMask = plane,
                                               .alphaKeepMask = keepPlane,
                                               .repeat = job.repeat,
                                               .amount = job.amount,
                                               .progress = job.progress,
                                               .iterations = job.iterations,
                                               .workbench = job.workbench});
        }
        return driver.region(host.in(), {.dst = job.dst,
                                         .src = job.src,
                                         .tmp = job.tmp,
                                         .rect = rect,
                                         .mask = plane,
                                         .repeat = job.repeat,
                                         .amount = job.amount,
                                         .progress = job.progress,
                                         .iterations = job.iterations,
                                         .workbench = job.workbench});
    }

    PF_Err run(int32_t repeat, double amount, const ProgressCounter* progress = nullptr,
               Workbench* workbench = nullptr) {
        BlurJob work = job(repeat, amount);
        work.progress = progress;
        work.workbench = workbench;
        return run(work);
    }

    /// The plain twin of `run`, up to this many steps: passes, and the gain of a boundary blur.
    void plain(int32_t repeat, double amount, const PlainPicture& from, PlainPicture& to,
               PlainPicture& between, int32_t steps = kAllSteps) const {
        if (driver.isBoundary()) {
            plainBoundaryBlur({driver.keepDivision, rect, mask, keep, repeat, amount, steps}, from, to,
                              between);
        } else {
            plainBlur({driver.keepDivision, rect, mask, repeat, amount, steps}, from, to, between);
        }
    }

    /// Iteration `i` of `n` of one pass.
    PF_Err runPass(bool horizontal, const GaussKernel& kernel, A_long i = 0, A_long n = 1) {
        const PassFunction pass = horizontal ? driver.horizontal : driver.vertical;
        if (driver.isBoundary()) {
            BoundaryPassRecord record{dst.get(), src.get(), rect, plane, keepPlane, kernel};
            return pass(&record, i % 3, i, n);
        }
        BlurPassRecord record{dst.get(), src.get(), rect, plane, kernel};
        return pass(&record, i % 3, i, n);
    }

    /// The plain twin of a whole pass, under a mask of the test's own.
    void plainPassUnder(const Mask& under, const PlainKernel& kernel, bool horizontal,
                        const PlainPicture& from, PlainPicture& to) const {
        if (driver.isBoundary()) {
            plainBoundaryPass({driver.keepDivision, rect, under, keep}, kernel, horizontal, from, to);
        } else {
            plainPass({driver.keepDivision, rect, under}, kernel, horizontal, from, to);
        }
    }
};

/// All that a failing comparison depends on.
inline std::string describe(BlurScene& scene, int32_t repeat, double amount) {
    const host::judge::JudgeOptions& options = scene.host.options();
    std::string text = std::string(scene.driver.name) + ": " + std::to_string(scene.mask.width) + " by " +
                       std::to_string(scene.mask.height) + " at (" + std::to_string(scene.rect.left) + ", " +
                       std::to_string(scene.rect.top) + "), mask " + scene.mask.shape;
    if (scene.driver.isBoundary()) {
        text += std::string(", keep mask ") + scene.keep.shape;
    }
    text += ", repeat " + std::to_string(repeat) + ", amount " + std::to_string(amount) + ", " +
            std::to_string(options.iterations) + " iterations";
    if (options.shuffleIterations) {
        text += " shuffled by seed " + std::to_string(options.shuffleSeed);
    }
    return text + " on " + std::to_string(options.threads) + " threads, " +
           std::to_string(options.rowPadding) + " bytes of padding";
}

/// Pixels one after the other, as the first row of a world.
inline void writeRow(TestWorld& world, std::initializer_list<PlainPixel> row) {
    PlainPicture picture = read(world);
    int32_t x = 0;
    for (const PlainPixel& pixel : row) {
        picture.at(x++, 0) = pixel;
    }
    write(picture, world);
}

inline void paint(TestWorld& world, const PlainPixel& colour) {
    PlainPicture picture = read(world);
    for (PlainPixel& pixel : picture.pixels) {
        pixel = colour;
    }
    write(picture, world);
}

} // namespace kovalune::test
