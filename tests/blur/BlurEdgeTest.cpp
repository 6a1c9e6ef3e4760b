// All blurs at the edges of what they are asked for.
#include "tests/blur/BlurDrivers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <utility>

namespace kovalune::test {
namespace {

class BlurEdgeTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurEdgeTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurEdgeTest, BelowTwoOrWithoutRepeatCopiesWholePixels) {
    Random random(32);
    const std::pair<int32_t, double> cases[] = {
        {1, 1.0}, {1, 1.99}, {9, 1.99},  {0, 100.0},
        {0, 0.0}, {5, 0.0},  {3, -50.0}, {2, std::nextafter(2.0, 0.0)}};
    for (const auto& [repeat, amount] : cases) {
        BlurScene scene(GetParam(), makeMask(MaskShape::kBlobs, 20, 20, random), Mask(20, 20, 1), random);
        SCOPED_TRACE(describe(scene, repeat, amount));
        PlainPicture expected = read(scene.dst);
        const PlainPicture scratch = read(scene.tmp);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        EXPECT_EQ(scene.run(repeat, amount), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
        EXPECT_EQ(difference(scratch, scene.tmp), "");
    }
}

/// A boundary blur's gain goes over the scratch world.
TEST_P(BlurEdgeTest, EmptyMaskLeavesEverything) {
    Random random(35);
    BlurScene scene(GetParam(), Mask(15, 11, 0), random);
    const PlainPicture before = read(scene.dst);
    EXPECT_EQ(scene.run(3, 20.0), PF_Err_NONE);
    EXPECT_EQ(difference(before, scene.dst), "");
}

TEST_P(BlurEdgeTest, NegativeRepeatRunsTheFirstPairAlone) {
    Random random(38);
    BlurScene scene(GetParam(), Mask(12, 12, 1), random);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    scene.plain(1, 6.0, read(scene.src), dst, tmp);
    EXPECT_EQ(scene.run(-1, 6.0), PF_Err_NONE);
    EXPECT_EQ(difference(dst, scene.dst), "");
    EXPECT_EQ(difference(tmp, scene.tmp), "");
}

TEST_P(BlurEdgeTest, MissingWorldIsOutOfMemory) {
    Random random(40);
    BlurScene scene(GetParam(), Mask(6, 6, 1), random);
    for (const int32_t repeat : {1, 0}) {
        for (PF_EffectWorld* BlurJob::*const world : {&BlurJob::dst, &BlurJob::src, &BlurJob::tmp}) {
            BlurJob job = scene.job(repeat, 5.0);
            job.*world = nullptr;
            const bool isNeeded = repeat != 0 || world != &BlurJob::tmp;
            EXPECT_EQ(scene.run(job), isNeeded ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE)
                << "a copy needs no scratch world";
        }
    }
}

} // namespace
} // namespace kovalune::test
