// Single passes of all blurs, as the host iterates them.
#include "tests/blur/BlurDrivers.h"
#include "tests/reference/PlainBands.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class BlurPassTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurPassTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurPassTest, BlursItsLinesLikeThePlainPass) {
    Random random(7);
    for (int round = 0; round < 40; ++round) {
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 40), random.between(1, 40), random);
        const Mask keep = makeMask(MaskShape::kBlobs, mask.width, mask.height, random);
        BlurScene scene(GetParam(), mask, keep, random);
        const double amount = random.unit() * 50.0 + 0.5;
        const auto length = static_cast<int32_t>(amount) + 1;
        const bool horizontal = random.chance(50);
        const int iterations = random.between(1, 9);
        SCOPED_TRACE(describe(scene, 0, amount) + (horizontal ? ", rows of " : ", columns of ") +
                     std::to_string(iterations) + " bands");
        PlainPicture expected = read(scene.dst);
        scene.plainPassUnder(mask, plainKernel(length, amount * amount), horizontal, read(scene.src),
                             expected);
        const GaussKernel kernel = makeGaussKernel(length, amount * amount);
        for (int i = iterations - 1; i >= 0; --i) {
            ASSERT_EQ(scene.runPass(horizontal, kernel, i, iterations), PF_Err_NONE);
        }
        ASSERT_EQ(difference(expected, scene.dst), "");
    }
}

TEST_P(BlurPassTest, WritesTheLinesOfItsBandOnly) {
    Random random(8);
    for (const bool horizontal : {true, false}) {
        for (int i = 0; i < 4; ++i) {
            BlurScene scene(GetParam(), Mask(10, 10, 1), random);
            PlainPicture before = read(scene.dst);
            for (PlainPixel& pixel : before.pixels) {
                pixel.red = 1.25 * fullScale(GetParam().format); // which no mean comes to
            }
            write(before, scene.dst);
            ASSERT_EQ(scene.runPass(horizontal, makeGaussKernel(4, 2.0), i, 4), PF_Err_NONE);
            const PlainPicture after = read(scene.dst);
            const Band band = plainBand(10, i, 4);
            for (int32_t line = 0; line < 10; ++line) {
                const int32_t x = horizontal ? 5 : line;
                const int32_t y = horizontal ? line : 5;
                const bool changed = before.at(x, y).red != after.at(x, y).red;
                ASSERT_EQ(changed, line >= band.first && line < band.end)
                    << "line " << line << " of band " << i;
            }
        }
    }
}

/// But for the rows of a boundary's window scan, which looks at none.
TEST_P(BlurPassTest, LeavesRowsWithoutActivityAlone) {
    Random random(9);
    BlurScene scene(GetParam(), Mask(6, 6, 1), random);
    summariesOf(scene.plane).rows[2] = 0;
    Mask active(6, 6, 1);
    for (int32_t x = 0; x < 6 && (!GetParam().isBoundary() || GetParam().keepDivision); ++x) {
        active.at(x, 2) = 0;
    }
    PlainPicture expected = read(scene.dst);
    scene.plainPassUnder(active, plainKernel(3, 2.0), true, read(scene.src), expected);
    EXPECT_EQ(scene.runPass(true, makeGaussKernel(3, 2.0)), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

/// Columns do not mix in a vertical pass, so a skipped one changes nothing else.
TEST_P(BlurPassTest, LeavesColumnsWithoutActivityAlone) {
    Random random(10);
    BlurScene scene(GetParam(), Mask(20, 6, 1), random);
    Mask active(20, 6, 1);
    for (const int32_t x : {0, 3, 8, 9, 19}) {
        summariesOf(scene.plane).columns[x] = 0;
        for (int32_t y = 0; y < 6; ++y) {
            active.at(x, y) = 0;
        }
    }
    PlainPicture expected = read(scene.dst);
    scene.plainPassUnder(active, plainKernel(3, 2.0), false, read(scene.src), expected);
    EXPECT_EQ(scene.runPass(false, makeGaussKernel(3, 2.0)), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

/// Taps of 0, which `makeGaussKernel` never makes for the centre.
GaussKernel kernelWithoutWeight(uint16_t tailWeight) {
    GaussKernel kernel;
    kernel.table = AEUtil::SharedArray(3);
    kernel.tapCount = 3;
    kernel.length = 3;
    kernel.tailWeight = tailWeight;
    return kernel;
}

PlainKernel plainKernelWithoutWeight(uint16_t tailWeight) {
    PlainKernel kernel;
    kernel.taps = {0, 0, 0};
    kernel.length = 3;
    kernel.tailWeight = tailWeight;
    return kernel;
}

/// A region blur copies the whole pixel then, a boundary blur keeps its alpha.
TEST_P(BlurPassTest, WithoutAnyWeightKeepsWhatItWouldBlur) {
    Random random(11);
    for (const bool horizontal : {true, false}) {
        BlurScene scene(GetParam(), makeMask(MaskShape::kDense, 9, 7, random), random);
        PlainPicture expected = read(scene.dst);
        const PlainPicture source = read(scene.src);
        if (GetParam().isBoundary()) {
            scene.plainPassUnder(scene.mask, plainKernelWithoutWeight(0), horizontal, source, expected);
        } else {
            plainMaskedCopy(scene.rect, scene.mask, false, source, expected);
        }
        EXPECT_EQ(scene.runPass(horizontal, kernelWithoutWeight(0)), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
        if (scene.mask.at(4, 3) != 0) {
            const double alpha = read(scene.dst).at(4, 3).alpha;
            EXPECT_EQ(alpha, source.at(4, 3).alpha);
        }
    }
}

TEST_P(BlurPassTest, WithATailAndNoCoreKeepsTheTailsShareOnly) {
    Random random(12);
    for (const bool horizontal : {true, false}) {
        BlurScene scene(GetParam(), makeMask(MaskShape::kDense, 9, 7, random), random);
        PlainPicture expected = read(scene.dst);
        scene.plainPassUnder(scene.mask, plainKernelWithoutWeight(12345), horizontal, read(scene.src),
                             expected);
        EXPECT_EQ(scene.runPass(horizontal, kernelWithoutWeight(12345)), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
    }
}

} // namespace
} // namespace kovalune::test
