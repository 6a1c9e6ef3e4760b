// The colour extension in both depths by name, and one with all that it needs.
#pragma once

#include "effect/blur/ColorExtension.h"
#include "tests/reference/PlainColorExtension.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {

struct ExtensionDriver {
    const char* name;
    PF_PixelFormat format;
    ColorExtension* run;
};

inline constexpr std::array<ExtensionDriver, 2> kExtensionDrivers = {{
    {"Extend16", PF_PixelFormat_ARGB64, extendColors16},
    {"Extend32", PF_PixelFormat_ARGB128, extendColors32},
}};

inline std::string extensionName(const testing::TestParamInfo<ExtensionDriver>& test) {
    return test.param.name;
}

/// Three worlds of random content in one host, with a job for them.
struct ExtensionScene {
    StrictHost host;
    PlainExtension job;
    TestWorld src;
    TestWorld dst;
    TestWorld spread;
    MaskPlane seed;
    MaskPlane limit;

    ExtensionScene(const ExtensionDriver& driver, const host::judge::JudgeOptions& options,
                   const PlainExtension& work, Random& random, Range range = Range::kOrdinary)
        : host(options), job(work),
          src(host, driver.format, job.rect.right + random.below(3), job.rect.bottom + random.below(3)),
          dst(host, driver.format, src.width(), src.height()),
          spread(host, driver.format, src.width(), src.height()), seed(planeOf(host, job.seed)),
          limit(planeOf(host, job.limit)) {
        for (TestWorld* world : {&src, &dst, &spread}) {
            write(randomPicture(driver.format, src.width(), src.height(), random, range), *world);
        }
    }

    PF_Err run(const ExtensionDriver& driver, Workbench* workbench = nullptr) {
        return driver.run(host.in(), {.dst = dst.get(),
                                      .src = src.get(),
                                      .spreadWorld = spread.get(),
                                      .rect = job.rect,
                                      .limitMask = limit,
                                      .seedMask = seed,
                                      .reach = job.reach,
                                      .stopAtGap = job.stopAtGap,
                                      .workbench = workbench});
    }
};

/// All that a failing comparison depends on.
inline std::string describe(const ExtensionDriver& driver, ExtensionScene& scene) {
    const host::judge::JudgeOptions& options = scene.host.options();
    const PlainExtension& job = scene.job;
    std::string text = std::string(driver.name) + ": " + std::to_string(job.seed.width) + " by " +
                       std::to_string(job.seed.height) + " at (" + std::to_string(job.rect.left) + ", " +
                       std::to_string(job.rect.top) + "), core " + job.seed.shape + ", area " +
                       job.limit.shape + ", reach " + std::to_string(job.reach) +
                       (job.stopAtGap ? ", stopping at gaps, " : ", ") + std::to_string(options.iterations) +
                       " iterations";
    if (options.shuffleIterations) {
        text += " shuffled by seed " + std::to_string(options.shuffleSeed);
    }
    return text + " on " + std::to_string(options.threads) + " threads";
}

/// Runs it and compares both worlds that it writes with the plain twin's, bit for bit.
inline void expectLikeThePlainOne(const ExtensionDriver& driver, ExtensionScene& scene) {
    SCOPED_TRACE(describe(driver, scene));
    const PlainPicture source = read(scene.src);
    PlainPicture dst = read(scene.dst);
    PlainPicture spread = read(scene.spread);
    plainExtendColors(scene.job, source, dst, spread);
    ASSERT_EQ(scene.run(driver), PF_Err_NONE);
    ASSERT_EQ(difference(spread, scene.spread), "") << "in the scratch world";
    ASSERT_EQ(difference(dst, scene.dst), "") << "in the destination";
    ASSERT_EQ(difference(source, scene.src), "") << "the source was written";
}

} // namespace kovalune::test
