// Which passes a blur asks the host for: their order, worlds and kernels.
#include "tests/blur/BlurDrivers.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

struct SeenPass {
    PF_IterateGenericFunc pass;
    PF_EffectWorld* src;
    PF_EffectWorld* dst;
    std::vector<int32_t> taps;
    A_long iterations;
};

std::vector<SeenPass>& seenPasses() {
    static std::vector<SeenPass> passes;
    return passes;
}

PF_Err notePass(A_long iterations, void* refcon, PF_IterateGenericFunc pass) {
    const auto& record = *static_cast<const BlurPassRecord*>(refcon);
    seenPasses().push_back({pass,
                            record.src,
                            record.dst,
                            {record.kernel.taps(), record.kernel.taps() + record.kernel.tapCount},
                            iterations});
    return PF_Err_NONE;
}

std::vector<SeenPass> passesOf(const BlurDriver& driver, BlurScene& scene, int32_t repeat, double amount) {
    seenPasses().clear();
    scene.host.utils().iterate_generic = notePass;
    EXPECT_EQ(scene.run(driver, repeat, amount), PF_Err_NONE);
    return seenPasses();
}

class BlurPasses : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurPasses, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurPasses, OfRepeatTwoGoToDstTmpDst) {
    const BlurDriver driver = GetParam();
    Random random(41);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    const std::vector<SeenPass> passes = passesOf(driver, scene, 2, 100.0);
    ASSERT_EQ(passes.size(), 3U);
    EXPECT_EQ(passes[0].pass, driver.horizontal);
    EXPECT_EQ(passes[0].src, scene.src.get());
    EXPECT_EQ(passes[0].dst, scene.dst.get());
    EXPECT_EQ(passes[0].taps, plainKernel(100, 1250.0).taps);
    EXPECT_EQ(passes[1].pass, driver.vertical);
    EXPECT_EQ(passes[1].src, scene.dst.get());
    EXPECT_EQ(passes[1].dst, scene.tmp.get());
    EXPECT_EQ(passes[1].taps, plainKernel(100, 1250.0).taps);
    EXPECT_EQ(passes[2].pass, driver.horizontal);
    EXPECT_EQ(passes[2].src, scene.tmp.get());
    EXPECT_EQ(passes[2].dst, scene.dst.get());
    EXPECT_EQ(passes[2].taps, plainKernel(10, 100.0).taps);
}

TEST_P(BlurPasses, AlternateAndEndInTheDestination) {
    const BlurDriver driver = GetParam();
    Random random(42);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    for (int32_t repeat = 1; repeat <= 10; ++repeat) {
        const std::vector<SeenPass> passes = passesOf(driver, scene, repeat, 40.0);
        ASSERT_EQ(passes.size(), static_cast<std::size_t>(repeat) + 1);
        EXPECT_EQ(passes.front().src, scene.src.get());
        EXPECT_EQ(passes.back().dst, scene.dst.get());
        for (std::size_t i = 0; i < passes.size(); ++i) {
            EXPECT_EQ(passes[i].pass, i % 2 == 0 ? driver.horizontal : driver.vertical);
            EXPECT_EQ(passes[i].iterations, PF_Iterations_ONCE_PER_PROCESSOR);
            if (i > 0) {
                EXPECT_EQ(passes[i].src, passes[i - 1].dst);
                EXPECT_NE(passes[i].src, passes[i].dst);
            }
        }
    }
}

TEST_P(BlurPasses, ShrinkByTheRootOfTheAmount) {
    const BlurDriver driver = GetParam();
    Random random(43);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    // The cube root of 27 is 3, or as near as a double comes.
    const std::vector<SeenPass> passes = passesOf(driver, scene, 3, 27.0);
    ASSERT_EQ(passes.size(), 4U);
    EXPECT_EQ(passes[0].taps.size(), 27U);
    EXPECT_EQ(passes[1].taps.size(), 27U);
    EXPECT_NEAR(static_cast<double>(passes[2].taps.size()), 9.0, 1.0);
    EXPECT_NEAR(static_cast<double>(passes[3].taps.size()), 3.0, 1.0);
    for (std::size_t pass = 2; pass < 4; ++pass) {
        EXPECT_LT(passes[pass].taps[0], 2 * passes[pass].taps.back()) << "later kernels are flat-topped";
    }
}

TEST_P(BlurPasses, AskForAsManyIterationsAsTheyAreGiven) {
    const BlurDriver driver = GetParam();
    Random random(44);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    seenPasses().clear();
    scene.host.utils().iterate_generic = notePass;
    EXPECT_EQ(driver.run(scene.host.in(), {.dst = scene.dst.get(),
                                           .src = scene.src.get(),
                                           .tmp = scene.tmp.get(),
                                           .rect = scene.rect,
                                           .mask = scene.plane,
                                           .repeat = 1,
                                           .amount = 5.0,
                                           .iterations = 6}),
              PF_Err_NONE);
    ASSERT_EQ(seenPasses().size(), 2U);
    EXPECT_EQ(seenPasses()[0].iterations, 6);
    EXPECT_EQ(seenPasses()[1].iterations, 6);
}

} // namespace
} // namespace kovalune::test
