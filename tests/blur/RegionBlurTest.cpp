// What a region blur makes of colour.
#include "tests/blur/BlurDrivers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class RegionBlurTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, RegionBlurTest, testing::ValuesIn(kRegionDrivers), driverName);

/// Red, green and blue of the one colour on the masked-in pixels; the rest is as it was.
void expectColourKept(const BlurScene& scene, const PlainPicture& before, const PlainPixel& colour) {
    PlainPicture expected = before;
    for (int32_t y = 0; y < scene.mask.height; ++y) {
        for (int32_t x = 0; x < scene.mask.width; ++x) {
            if (scene.mask.at(x, y) != 0) {
                PlainPixel& pixel = expected.at(x, y);
                pixel = {pixel.alpha, colour.red, colour.green, colour.blue};
            }
        }
    }
    EXPECT_EQ(difference(expected, scene.dst), "");
}

PlainPixel someColour(const BlurDriver& driver) {
    Random random(31);
    return randomPicture(driver.format, 1, 1, random).at(0, 0);
}

TEST_P(RegionBlurTest, ConstantColourComesBackWithoutDrift) {
    const BlurDriver driver = GetParam();
    Random random(33);
    const PlainPixel colour = someColour(driver);
    for (const double amount : {2.0, 3.0, 17.5, 300.0}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kBlobs, MaskShape::kSparse}) {
            BlurScene scene(driver, makeMask(shape, 30, 20, random), random);
            paint(scene.src, colour);
            const PlainPicture before = read(scene.dst);
            EXPECT_EQ(scene.run(1, amount), PF_Err_NONE);
            expectColourKept(scene, before, colour);
        }
    }
}

TEST_P(RegionBlurTest, LonePixelKeepsItsColour) {
    const BlurDriver driver = GetParam();
    Random random(34);
    for (const double amount : {2.0, 5.0, 100.0, 350.5, 1001.0}) {
        BlurScene scene(driver, makeMask(MaskShape::kSingle, 12, 9, random), random);
        PlainPixel colour;
        for (int32_t y = 0; y < 9; ++y) {
            for (int32_t x = 0; x < 12; ++x) {
                if (scene.mask.at(x, y) != 0) {
                    colour = read(scene.src).at(x, y);
                }
            }
        }
        const PlainPicture before = read(scene.dst);
        EXPECT_EQ(scene.run(1, amount), PF_Err_NONE);
        expectColourKept(scene, before, colour);
    }
}

TEST_P(RegionBlurTest, GapSeparatesItsSidesInTheRunScanOnly) {
    const BlurDriver driver = GetParam();
    Random random(36);
    Mask mask(21, 1, 1);
    mask.at(10, 0) = 0;
    BlurScene scene(driver, mask, random);
    PlainPicture sides = read(scene.src);
    for (int32_t x = 0; x < 21; ++x) {
        const double value = x < 10 ? 0.0 : fullScale(driver.format);
        sides.at(x, 0) = {value, value, value, value};
    }
    write(sides, scene.src);
    const PlainPixel gap = read(scene.dst).at(10, 0);
    EXPECT_EQ(scene.run(1, 8.0), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(10, 0).red, gap.red);
    if (driver.keepDivision) {
        EXPECT_EQ(result.at(9, 0).red, 0.0);
        EXPECT_EQ(result.at(11, 0).red, fullScale(driver.format));
    } else {
        EXPECT_GT(result.at(9, 0).red, 0.0);
        EXPECT_LT(result.at(11, 0).red, fullScale(driver.format));
    }
}

TEST_P(RegionBlurTest, BoxReachesBeyondTheCore) {
    const BlurDriver driver = GetParam();
    Random random(37);
    BlurScene scene(driver, Mask(901, 1, 1), random);
    PlainPicture spike(driver.format, scene.src.width(), scene.src.height());
    spike.at(450, 0).red = fullScale(driver.format);
    write(spike, scene.src);
    EXPECT_EQ(scene.run(1, 350.5), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    const PlainKernel kernel = plainKernel(351, 350.5 * 350.5 * 0.125);
    ASSERT_GT(kernel.tailWeight, 0);
    const double share = kernel.tailWeight / 32768.0;
    // Full windows of 701 pixels, seen from 450 - 100 to 450 + 100 only; further out they are cut.
    for (const int32_t far : {299, 300, 350}) {
        EXPECT_GT(result.at(450 - far, 0).red, 0.0) << far;
        EXPECT_GT(result.at(450 + far, 0).red, 0.0) << far;
    }
    EXPECT_EQ(result.at(450 - 351, 0).red, 0.0);
    EXPECT_EQ(result.at(450 + 351, 0).red, 0.0);
    if (driver.format == PF_PixelFormat_ARGB128) {
        const double windowAt150 = 150 + 350 + 1;
        EXPECT_FLOAT_EQ(static_cast<float>(result.at(150, 0).red), static_cast<float>(share / windowAt150))
            << "300 away the box alone counts";
    }
}

TEST_P(RegionBlurTest, AmountThatIsNoNumberLeavesTheColour) {
    const BlurDriver driver = GetParam();
    Random random(39);
    BlurScene scene(driver, Mask(12, 12, 1), random);
    PlainPicture expected = read(scene.dst);
    const PlainPicture source = read(scene.src);
    for (std::size_t i = 0; i < 12; ++i) {
        for (int32_t y = 0; y < 12; ++y) {
            PlainPixel& pixel = expected.at(static_cast<int32_t>(i), y);
            const PlainPixel& colour = source.at(static_cast<int32_t>(i), y);
            pixel = {pixel.alpha, colour.red, colour.green, colour.blue};
        }
    }
    EXPECT_EQ(scene.run(1, std::numeric_limits<double>::quiet_NaN()), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

/// A line of five, masked 1 1 0 1 1, blurred over two pixels to either side.
template <class Pixel>
Pixel secondOfFive(const BlurDriver& driver, Pixel (&line)[5]) {
    Random random(12);
    Mask mask(5, 1, 1);
    mask.at(2, 0) = 0;
    BlurScene scene(driver, mask, random);
    for (int32_t x = 0; x < 5; ++x) {
        scene.src.at<Pixel>(x, 0) = line[x];
    }
    EXPECT_EQ(scene.runPass(true, makeGaussKernel(3, 1.125)), PF_Err_NONE);
    return scene.dst.at<Pixel>(1, 0);
}

TEST(RegionBlurScanTest, DifferBeyondAGap) {
    PF_Pixel16 line[5] = {
        {0, 1000, 0, 0}, {0, 0, 1000, 0}, {0, 9999, 9999, 9999}, {0, 0, 0, 1000}, {0, 30000, 30000, 30000}};
    // Taps 12506, 8018, 2113: the run scan weighs 20524 in all, the window scan 22637.
    const PF_Pixel16 run = secondOfFive(kRegionDrivers[0], line);
    EXPECT_EQ(run.red, (1000 * 8018 + 10262) / 20524);
    EXPECT_EQ(run.green, (1000 * 12506 + 10262) / 20524);
    EXPECT_EQ(run.blue, 0);
    const PF_Pixel16 window = secondOfFive(kRegionDrivers[1], line);
    EXPECT_EQ(window.red, (1000 * 8018 + 11318) / 22637);
    EXPECT_EQ(window.green, (1000 * 12506 + 11318) / 22637);
    EXPECT_EQ(window.blue, (1000 * 2113 + 11318) / 22637);
}

TEST(RegionBlurScanTest, DifferBeyondAGapInFloatToo) {
    PF_PixelFloat line[5] = {{0, 1, 0, 0}, {0, 0, 1, 0}, {0, 9, 9, 9}, {0, 0, 0, 1}, {0, 30, 30, 30}};
    const PF_PixelFloat run = secondOfFive(kRegionDrivers[2], line);
    EXPECT_FLOAT_EQ(run.red, 8018.0F / 20524.0F);
    EXPECT_EQ(run.blue, 0.0F);
    const PF_PixelFloat window = secondOfFive(kRegionDrivers[3], line);
    EXPECT_FLOAT_EQ(window.red, 8018.0F / 22637.0F);
    EXPECT_FLOAT_EQ(window.blue, 2113.0F / 22637.0F);
}

} // namespace
} // namespace kovalune::test
