// The four region blurs by name, and a blur with all that it needs.
#pragma once

#include "effect/blur/RegionBlur.h"
#include "effect/raster/Bands.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainBlur.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {

struct BlurDriver {
    const char* name;
    PF_PixelFormat format;
    bool keepDivision;
    RegionBlur* run;
    PassFunction horizontal;
    PassFunction vertical;
};

inline constexpr std::array<BlurDriver, 4> kBlurDrivers = {{
    {"Run16", PF_PixelFormat_ARGB64, true, blurRegionRun16, passRunH16, passRunV16},
    {"Window16", PF_PixelFormat_ARGB64, false, blurRegionWindow16, passWindowH16, passWindowV16},
    {"Run32", PF_PixelFormat_ARGB128, true, blurRegionRun32, passRunH32, passRunV32},
    {"Window32", PF_PixelFormat_ARGB128, false, blurRegionWindow32, passWindowH32, passWindowV32},
}};

inline std::string driverName(const testing::TestParamInfo<BlurDriver>& test) {
    return test.param.name;
}

/// Three worlds of random content in one host, a rectangle in them and a mask.
struct BlurScene {
    StrictHost host;
    TestWorld src;
    TestWorld dst;
    TestWorld tmp;
    FrameRect rect;
    Mask mask;
    MaskPlane plane;

    BlurScene(const BlurDriver& driver, const host::judge::JudgeOptions& options, const FrameRect& area,
              const Mask& areaMask, Random& random, Range range = Range::kOrdinary)
        : host(options),
          src(host, driver.format, area.right + random.below(4), area.bottom + random.below(4)),
          dst(host, driver.format, src.width(), src.height()),
          tmp(host, driver.format, src.width(), src.height()), rect(area), mask(areaMask),
          plane(planeOf(host, areaMask)) {
        for (TestWorld* world : {&src, &dst, &tmp}) {
            write(randomPicture(driver.format, src.width(), src.height(), random, range), *world);
        }
    }

    /// The whole picture as one area, in a strict host.
    BlurScene(const BlurDriver& driver, const Mask& areaMask, Random& random)
        : BlurScene(driver, strictOptions(), wholeRect(areaMask.width, areaMask.height), areaMask, random) {}

    PF_Err run(const BlurDriver& driver, int32_t repeat, double amount,
               const ProgressCounter* progress = nullptr) {
        return driver.run(host.in(), {.dst = dst.get(),
                                      .src = src.get(),
                                      .tmp = tmp.get(),
                                      .rect = rect,
                                      .mask = plane,
                                      .repeat = repeat,
                                      .amount = amount,
                                      .progress = progress});
    }

    PlainBlur plainJob(const BlurDriver& driver, int32_t repeat, double amount) const {
        return {driver.keepDivision, rect, mask, repeat, amount};
    }
};

} // namespace kovalune::test
