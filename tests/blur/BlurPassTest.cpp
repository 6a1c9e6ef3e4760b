#include "effect/blur/RegionBlur.h"

#include "tests/blur/BlurDrivers.h"
#include "tests/support/PlainBands.h"

#include <gtest/gtest.h>
#include <initializer_list>

namespace kovalune::test {
namespace {

class BlurPass : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurPass, testing::ValuesIn(kBlurDrivers), driverName);

BlurPassRecord recordOf(BlurScene& scene, const GaussKernel& kernel) {
    return {scene.dst.get(), scene.src.get(), scene.rect, scene.plane, kernel};
}

GaussKernel handMadeKernel(std::initializer_list<uint16_t> taps, uint16_t tailWeight) {
    GaussKernel kernel;
    kernel.table = AEUtil::SharedArray(taps.size());
    uint16_t* tap = kernel.table.address();
    for (const uint16_t value : taps) {
        *tap++ = value;
    }
    kernel.tapCount = static_cast<int32_t>(taps.size());
    kernel.length = kernel.tapCount;
    kernel.tailWeight = tailWeight;
    return kernel;
}

TEST_P(BlurPass, BlursItsLinesLikeThePlainPass) {
    const BlurDriver driver = GetParam();
    Random random(7);
    for (int round = 0; round < 40; ++round) {
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 40), random.between(1, 40), random);
        BlurScene scene(driver, mask, random);
        const double amount = random.unit() * 50.0 + 0.5;
        const auto length = static_cast<int32_t>(amount) + 1;
        BlurPassRecord record = recordOf(scene, makeGaussKernel(length, amount * amount));
        const bool horizontal = random.chance(50);
        const int iterations = random.between(1, 9);
        PlainPicture expected = read(scene.dst);
        plainPass(scene.plainJob(driver, 1, amount), plainKernel(length, amount * amount), horizontal,
                  read(scene.src), expected);
        for (int i = iterations - 1; i >= 0; --i) {
            const auto pass = horizontal ? driver.horizontal : driver.vertical;
            ASSERT_EQ(pass(&record, i % 3, i, iterations), PF_Err_NONE);
        }
        ASSERT_EQ(difference(expected, scene.dst), "") << "round " << round;
    }
}

TEST_P(BlurPass, WritesTheLinesOfItsBandOnly) {
    const BlurDriver driver = GetParam();
    Random random(8);
    for (int i = 0; i < 4; ++i) {
        BlurScene scene(driver, Mask(10, 10, 1), random);
        BlurPassRecord record = recordOf(scene, makeGaussKernel(4, 2.0));
        const PlainPicture before = read(scene.dst);
        ASSERT_EQ(driver.horizontal(&record, 0, i, 4), PF_Err_NONE);
        const PlainPicture after = read(scene.dst);
        const Band band = plainBand(10, i, 4);
        for (int32_t y = 0; y < 10; ++y) {
            const bool changed = before.at(5, y).red != after.at(5, y).red;
            ASSERT_EQ(changed, y >= band.first && y < band.end) << "row " << y << " of band " << i;
        }
    }
}

TEST_P(BlurPass, LeavesLinesWithoutActivityAlone) {
    const BlurDriver driver = GetParam();
    Random random(9);
    BlurScene scene(driver, Mask(6, 6, 1), random);
    summariesOf(scene.plane).rows[2] = 0;
    summariesOf(scene.plane).columns[3] = 0;
    BlurPassRecord record = recordOf(scene, makeGaussKernel(3, 2.0));
    PlainBlur job = scene.plainJob(driver, 1, 3.0);
    PlainPicture expected = read(scene.dst);
    for (int32_t x = 0; x < 6; ++x) {
        job.mask.at(x, 2) = 0;
    }
    plainPass(job, plainKernel(3, 2.0), true, read(scene.src), expected);
    EXPECT_EQ(driver.horizontal(&record, 0, 0, 1), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");

    job.mask = Mask(6, 6, 1);
    for (int32_t y = 0; y < 6; ++y) {
        job.mask.at(3, y) = 0;
    }
    // Columns do not mix in a vertical pass, so a skipped one changes nothing else.
    plainPass(job, plainKernel(3, 2.0), false, read(scene.src), expected);
    EXPECT_EQ(driver.vertical(&record, 0, 0, 1), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BlurPass, WithoutAnyWeightCopiesTheWholePixel) {
    const BlurDriver driver = GetParam();
    Random random(10);
    for (const bool horizontal : {true, false}) {
        BlurScene scene(driver, makeMask(MaskShape::kDense, 9, 7, random), random);
        BlurPassRecord record = recordOf(scene, handMadeKernel({0, 0, 0}, 0));
        PlainPicture expected = read(scene.dst);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        EXPECT_EQ((horizontal ? driver.horizontal : driver.vertical)(&record, 0, 0, 1), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
    }
}

TEST_P(BlurPass, WithATailAndNoCoreKeepsTheTailsShareOnly) {
    const BlurDriver driver = GetParam();
    Random random(11);
    for (const bool horizontal : {true, false}) {
        BlurScene scene(driver, makeMask(MaskShape::kDense, 9, 7, random), random);
        BlurPassRecord record = recordOf(scene, handMadeKernel({0, 0, 0}, 12345));
        PlainKernel plain;
        plain.taps = {0, 0, 0};
        plain.length = 3;
        plain.tailWeight = 12345;
        PlainPicture expected = read(scene.dst);
        plainPass(scene.plainJob(driver, 1, 3.0), plain, horizontal, read(scene.src), expected);
        EXPECT_EQ((horizontal ? driver.horizontal : driver.vertical)(&record, 0, 0, 1), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
    }
}

/// A line of five, masked 1 1 0 1 1, blurred over two pixels to either side.
template <class Pixel, class Pass>
Pixel secondOfFive(const BlurDriver& driver, Pass pass, Pixel (&line)[5]) {
    Random random(12);
    Mask mask(5, 1, 1);
    mask.at(2, 0) = 0;
    BlurScene scene(driver, mask, random);
    for (int32_t x = 0; x < 5; ++x) {
        scene.src.at<Pixel>(x, 0) = line[x];
    }
    BlurPassRecord record = recordOf(scene, makeGaussKernel(3, 1.125));
    EXPECT_EQ(pass(&record, 0, 0, 1), PF_Err_NONE);
    return scene.dst.at<Pixel>(1, 0);
}

TEST(BlurScans, DifferBehindAGap) {
    PF_Pixel16 line[5] = {
        {0, 1000, 0, 0}, {0, 0, 1000, 0}, {0, 9999, 9999, 9999}, {0, 0, 0, 1000}, {0, 30000, 30000, 30000}};
    // Taps 12506, 8018, 2113: the run scan weighs 20524 in all, the window scan 22637.
    const PF_Pixel16 run = secondOfFive(kBlurDrivers[0], passRunH16, line);
    EXPECT_EQ(run.red, (1000 * 8018 + 10262) / 20524);
    EXPECT_EQ(run.green, (1000 * 12506 + 10262) / 20524);
    EXPECT_EQ(run.blue, 0);
    const PF_Pixel16 window = secondOfFive(kBlurDrivers[1], passWindowH16, line);
    EXPECT_EQ(window.red, (1000 * 8018 + 11318) / 22637);
    EXPECT_EQ(window.green, (1000 * 12506 + 11318) / 22637);
    EXPECT_EQ(window.blue, (1000 * 2113 + 11318) / 22637);
}

TEST(BlurScans, DifferBehindAGapInFloatToo) {
    PF_PixelFloat line[5] = {{0, 1, 0, 0}, {0, 0, 1, 0}, {0, 9, 9, 9}, {0, 0, 0, 1}, {0, 30, 30, 30}};
    const PF_PixelFloat run = secondOfFive(kBlurDrivers[2], passRunH32, line);
    EXPECT_FLOAT_EQ(run.red, 8018.0F / 20524.0F);
    EXPECT_EQ(run.blue, 0.0F);
    const PF_PixelFloat window = secondOfFive(kBlurDrivers[3], passWindowH32, line);
    EXPECT_FLOAT_EQ(window.red, 8018.0F / 22637.0F);
    EXPECT_FLOAT_EQ(window.blue, 2113.0F / 22637.0F);
}

} // namespace
} // namespace kovalune::test
