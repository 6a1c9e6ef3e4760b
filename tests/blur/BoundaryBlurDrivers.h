// The four boundary blurs by name, and a blur with all that it needs.
#pragma once

#include "effect/blur/BoundaryBlur.h"
#include "effect/raster/Bands.h"
#include "tests/blur/BlurDrivers.h"
#include "tests/support/PlainBoundaryBlur.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

namespace kovalune::test {

struct BoundaryDriver {
    const char* name;
    PF_PixelFormat format;
    bool keepDivision;
    BoundaryBlur* run;
    PassFunction horizontal;
    PassFunction vertical;
    PassFunction gain;
};

inline constexpr std::array<BoundaryDriver, 4> kBoundaryDrivers = {{
    {"Run16", PF_PixelFormat_ARGB64, true, blurBoundaryRun16, boundaryRunH16, boundaryRunV16, alphaGain16},
    {"Window16", PF_PixelFormat_ARGB64, false, blurBoundaryWindow16, boundaryWindowH16, boundaryWindowV16,
     alphaGain16},
    {"Run32", PF_PixelFormat_ARGB128, true, blurBoundaryRun32, boundaryRunH32, boundaryRunV32, alphaGain32},
    {"Window32", PF_PixelFormat_ARGB128, false, blurBoundaryWindow32, boundaryWindowH32, boundaryWindowV32,
     alphaGain32},
}};

inline std::string boundaryDriverName(const testing::TestParamInfo<BoundaryDriver>& test) {
    return test.param.name;
}

/// Three worlds of random content in one host, a rectangle in them, a region and the pixels that keep alpha.
struct BoundaryScene : BlurScene {
    Mask keep;
    MaskPlane keepPlane;

    BoundaryScene(const BoundaryDriver& driver, const host::judge::JudgeOptions& options,
                  const FrameRect& area, const Mask& region, const Mask& keepMask, Random& random,
                  Range range = Range::kOrdinary)
        : BlurScene({driver.name, driver.format, driver.keepDivision, nullptr, nullptr, nullptr}, options,
                    area, region, random, range),
          keep(keepMask), keepPlane(planeOf(host, keepMask)) {}

    /// The whole picture as one area, in a strict host.
    BoundaryScene(const BoundaryDriver& driver, const Mask& region, const Mask& keepMask, Random& random)
        : BoundaryScene(driver, strictOptions(), wholeRect(region.width, region.height), region, keepMask,
                        random) {}

    /// No pixel keeps its alpha.
    BoundaryScene(const BoundaryDriver& driver, const Mask& region, Random& random)
        : BoundaryScene(driver, region, Mask(region.width, region.height, 0), random) {}

    PF_Err run(const BoundaryDriver& driver, int32_t repeat, double amount,
               const ProgressCounter* progress = nullptr) {
        return driver.run(host.in(), {.dst = dst.get(),
                                      .src = src.get(),
                                      .tmp = tmp.get(),
                                      .rect = rect,
                                      .regionMask = plane,
                                      .alphaKeepMask = keepPlane,
                                      .repeat = repeat,
                                      .amount = amount,
                                      .progress = progress});
    }

    PlainBoundaryBlur plainJob(const BoundaryDriver& driver, int32_t repeat, double amount) const {
        return {driver.keepDivision, rect, mask, keep, repeat, amount};
    }

    BoundaryPassRecord record(const GaussKernel& kernel) {
        return {dst.get(), src.get(), rect, plane, keepPlane, kernel};
    }
};

/// Pixels one behind the other, as the first row of a world.
inline void writeRow(TestWorld& world, std::initializer_list<PlainPixel> row) {
    PlainPicture picture = read(world);
    int32_t x = 0;
    for (const PlainPixel& pixel : row) {
        picture.at(x++, 0) = pixel;
    }
    write(picture, world);
}

} // namespace kovalune::test
