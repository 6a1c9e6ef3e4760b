// Scratch memory of the vertical passes: how much is asked for, and what comes of its lack.
#include "effect/blur/FinishingPasses.h"
#include "tests/blur/BlurDrivers.h"
#include "tests/blur/ColorExtensionScene.h"
#include "tests/support/AllocationControl.h"

#include <cstddef>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class BlurMemoryTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurMemoryTest, testing::ValuesIn(kBlurDrivers), driverName);

/// Of a tile: eight columns, each as many cache lines long as it takes, but an odd number of them.
std::size_t tileBytes(std::size_t height, std::size_t bytesPerEntry) {
    const std::size_t cacheLines = (height + 63) / 64;
    return 8 * bytesPerEntry * 64 * (cacheLines + (cacheLines + 1) % 2);
}

TEST_P(BlurMemoryTest, IsOneBlockAnIterationOfATileOfColumns) {
    const BlurDriver driver = GetParam();
    Random random(61);
    const std::size_t maskBytes = driver.isBoundary() ? 2 : 1;
    const std::size_t bytesPerEntry = maskBytes + (driver.format == PF_PixelFormat_ARGB64 ? 8 : 16);
    for (const int32_t height : {1, 64, 65, 130, 193}) {
        BlurScene scene(driver, shuffledOptions(3, 1, 1), wholeRect(6, height), Mask(6, height, 1),
                        Mask(6, height, 0), random);
        const ScratchPlan plan(0);
        EXPECT_EQ(scene.run(1, 4.0), PF_Err_NONE);
        EXPECT_EQ(plan.requests(), 3);
        EXPECT_EQ(plan.bytes(), tileBytes(static_cast<std::size_t>(height), bytesPerEntry));
    }
}

TEST_P(BlurMemoryTest, LackingEndsTheBlurWithOutOfMemory) {
    const BlurDriver driver = GetParam();
    Random random(62);
    for (int iterations = 1; iterations <= 4; ++iterations) {
        for (int failing = 1; failing <= iterations; ++failing) {
            host::judge::JudgeOptions options = shuffledOptions(iterations, 1, 1);
            options.recordCalls = true;
            BlurScene scene(driver, options, wholeRect(9, 9), Mask(9, 9, 1), Mask(9, 9, 0), random);
            scene.host.clearCalls();
            const ScratchPlan plan(failing);
            EXPECT_EQ(scene.run(5, 20.0), PF_Err_OUT_OF_MEMORY);
            EXPECT_EQ(scene.host.countCalls("iterate_generic"), driver.isBoundary() ? 3 : 2)
                << "no pass runs after the vertical one";
        }
    }
}

TEST_P(BlurMemoryTest, LackingInALaterPassKeepsThePassesBefore) {
    const BlurDriver driver = GetParam();
    Random random(63);
    BlurScene scene(driver, Mask(9, 9, 1), random);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    scene.plain(4, 20.0, read(scene.src), dst, tmp, driver.isBoundary() ? 4 : 3);
    const ScratchPlan plan(2);
    EXPECT_EQ(scene.run(4, 20.0), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(difference(dst, scene.dst), "");
    EXPECT_EQ(difference(tmp, scene.tmp), "");
}

class ExtensionMemoryTest : public testing::TestWithParam<ExtensionDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, ExtensionMemoryTest, testing::ValuesIn(kExtensionDrivers), extensionName);

TEST_P(ExtensionMemoryTest, IsOneBlockAnIterationAndItsLackEndsTheStepsWithOutOfMemory) {
    constexpr int kIterations = 3;
    Random random(64);
    const PlainExtension job = {wholeRect(40, 9), makeMask(MaskShape::kSparse, 40, 9, random), Mask(40, 9, 1),
                                5.0, false};
    for (int failing = 0; failing <= 3 * kIterations; ++failing) {
        host::judge::JudgeOptions options = shuffledOptions(kIterations, 1, 1);
        options.recordCalls = true;
        ExtensionScene scene(GetParam(), options, job, random);
        scene.host.clearCalls();
        const ScratchPlan plan(failing);
        EXPECT_EQ(scene.run(GetParam()), failing == 0 ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY);
        if (failing == 0) {
            EXPECT_EQ(plan.requests(), 3 * kIterations);
        } else {
            EXPECT_EQ(scene.host.countCalls("iterate_generic"), (failing - 1) / kIterations + 1);
        }
    }
}

/// Every alpha of 16 bits, in rows of 256.
void fillWithAlphas(TestWorld& world) {
    for (int32_t alpha = 0; alpha <= 32768; ++alpha) {
        world.at<PF_Pixel16>(alpha % 256, alpha / 256) = {static_cast<uint16_t>(alpha), 1, 2, 3};
    }
}

/// The tone curve's results are kept in a block off the stack; without one they are computed anew.
TEST(BiasMemoryTest, IsOneBlockAnIterationAndItsLackChangesNothing) {
    StrictHost host;
    MaskPlane all(host.in(), 256, 129);
    all.clearTo(1);
    for (const double bias : {0.0, 37.0, 100.0, -50.0}) {
        TestWorld kept(host, PF_PixelFormat_ARGB64, 256, 129);
        TestWorld anew(host, PF_PixelFormat_ARGB64, 256, 129);
        fillWithAlphas(kept);
        fillWithAlphas(anew);
        {
            const ScratchPlan plan(0);
            EXPECT_EQ(
                applyBoundaryBias16(
                    host.in(), {.dst = kept.get(), .rect = wholeRect(256, 129), .mask = all, .bias = bias}),
                PF_Err_NONE);
            EXPECT_EQ(plan.requests(), bias < 0.0 ? 0 : 1);
            EXPECT_TRUE(bias < 0.0 || plan.bytes() == 65536);
        }
        const ScratchPlan plan(1);
        EXPECT_EQ(applyBoundaryBias16(
                      host.in(), {.dst = anew.get(), .rect = wholeRect(256, 129), .mask = all, .bias = bias}),
                  PF_Err_NONE);
        EXPECT_EQ(difference(read(kept), anew), "") << bias;
    }
}

} // namespace
} // namespace kovalune::test
