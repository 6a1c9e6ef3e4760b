// Scratch memory of the passes: how often it is asked for, and what comes of its lack.
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

TEST_P(BlurMemoryTest, IsOneBlockAnIterationAndPass) {
    Random random(61);
    for (const int32_t height : {1, 64, 65, 130, 193}) {
        BlurScene scene(GetParam(), shuffledOptions(3, 1, 1), wholeRect(6, height), Mask(6, height, 1),
                        Mask(6, height, 0), random);
        const ScratchPlan plan(0);
        EXPECT_EQ(scene.run(1, 4.0), PF_Err_NONE);
        EXPECT_EQ(plan.requests(), 3 + (height < 3 ? height : 3));
    }
}

TEST_P(BlurMemoryTest, IsAskedForByIterationsWithWorkOnly) {
    Random random(65);
    for (const bool horizontal : {true, false}) {
        Mask onlyInTheMiddle(30, 30, 0);
        onlyInTheMiddle.at(15, 15) = 1;
        BlurScene scene(GetParam(), onlyInTheMiddle, random);
        const ScratchPlan plan(0);
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(scene.runPass(horizontal, makeGaussKernel(4, 2.0), i, 10), PF_Err_NONE);
        }
        // The rows of a boundary blur that looks across gaps are not gated.
        const bool allRows = horizontal && GetParam().isBoundary() && !GetParam().keepDivision;
        EXPECT_EQ(plan.requests(), allRows ? 10 : 1);
    }
}

/// The slots grow when rows give way to longer columns, and never again.
TEST_P(BlurMemoryTest, OfAFrameStaysWithItsWorkbench) {
    Random random(66);
    BlurScene scene(GetParam(), shuffledOptions(3, 1, 1), wholeRect(20, 60), Mask(20, 60, 1), Mask(20, 60, 0),
                    random);
    Workbench workbench;
    {
        const ScratchPlan plan(0);
        EXPECT_EQ(scene.run(1, 4.0, nullptr, &workbench), PF_Err_NONE);
        EXPECT_EQ(plan.requests(), 6);
    }
    const ScratchPlan plan(1);
    EXPECT_EQ(scene.run(5, 4.0, nullptr, &workbench), PF_Err_NONE);
    EXPECT_EQ(plan.requests(), 0);
}

TEST_P(BlurMemoryTest, OfIterationsThatAWorkbenchHasNoSlotForIsTheirOwn) {
    Random random(67);
    BlurScene scene(GetParam(), shuffledOptions(66, 1, 1), wholeRect(70, 70), Mask(70, 70, 1),
                    Mask(70, 70, 0), random);
    Workbench workbench;
    EXPECT_EQ(scene.run(1, 4.0, nullptr, &workbench), PF_Err_NONE);
    const ScratchPlan plan(0);
    EXPECT_EQ(scene.run(2, 4.0, nullptr, &workbench), PF_Err_NONE);
    EXPECT_EQ(plan.requests(), 3 * 2);
}

TEST_P(BlurMemoryTest, LackingEndsTheBlurWithOutOfMemoryAtItsPass) {
    const BlurDriver driver = GetParam();
    Random random(62);
    for (int iterations = 1; iterations <= 4; ++iterations) {
        for (int failing = 1; failing <= 2 * iterations; ++failing) {
            host::judge::JudgeOptions options = shuffledOptions(iterations, 1, 1);
            options.recordCalls = true;
            BlurScene scene(driver, options, wholeRect(9, 9), Mask(9, 9, 1), Mask(9, 9, 0), random);
            scene.host.clearCalls();
            const ScratchPlan plan(failing);
            EXPECT_EQ(scene.run(5, 20.0), PF_Err_OUT_OF_MEMORY);
            const int gain = driver.isBoundary() ? 1 : 0;
            EXPECT_EQ(scene.host.countCalls("iterate_generic"), failing <= iterations ? 1 : 2 + gain)
                << "no pass runs after the one that lacked it";
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
    const ScratchPlan plan(4);
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

TEST_P(ExtensionMemoryTest, OfAFrameStaysWithItsWorkbench) {
    Random random(68);
    const PlainExtension job = {wholeRect(40, 9), makeMask(MaskShape::kSparse, 40, 9, random), Mask(40, 9, 1),
                                5.0, false};
    ExtensionScene scene(GetParam(), shuffledOptions(3, 1, 1), job, random);
    Workbench workbench;
    EXPECT_EQ(scene.run(GetParam(), &workbench), PF_Err_NONE);
    const ScratchPlan plan(0);
    EXPECT_EQ(scene.run(GetParam(), &workbench), PF_Err_NONE);
    EXPECT_EQ(plan.requests(), 0);
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
