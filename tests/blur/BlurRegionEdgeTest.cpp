#include "tests/blur/BlurDrivers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class BlurEdges : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurEdges, testing::ValuesIn(kBlurDrivers), driverName);

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

void paint(TestWorld& world, const PlainPixel& colour) {
    PlainPicture picture = read(world);
    for (PlainPixel& pixel : picture.pixels) {
        pixel = colour;
    }
    write(picture, world);
}

TEST_P(BlurEdges, BelowTwoOrWithoutRepeatCopiesWholePixels) {
    const BlurDriver driver = GetParam();
    Random random(32);
    const std::pair<int32_t, double> cases[] = {
        {1, 1.99}, {9, 1.99}, {0, 100.0}, {0, 0.0}, {5, 0.0}, {3, -50.0}, {2, std::nextafter(2.0, 0.0)}};
    for (const auto& [repeat, amount] : cases) {
        BlurScene scene(driver, makeMask(MaskShape::kBlobs, 20, 20, random), random);
        PlainPicture expected = read(scene.dst);
        const PlainPicture scratch = read(scene.tmp);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        EXPECT_EQ(scene.run(driver, repeat, amount), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "") << repeat << ", " << amount;
        EXPECT_EQ(difference(scratch, scene.tmp), "");
    }
}

TEST_P(BlurEdges, ConstantColourComesBackWithoutDrift) {
    const BlurDriver driver = GetParam();
    Random random(33);
    const PlainPixel colour = someColour(driver);
    for (const double amount : {2.0, 3.0, 17.5, 300.0}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kBlobs, MaskShape::kSparse}) {
            BlurScene scene(driver, makeMask(shape, 30, 20, random), random);
            paint(scene.src, colour);
            const PlainPicture before = read(scene.dst);
            EXPECT_EQ(scene.run(driver, 1, amount), PF_Err_NONE);
            expectColourKept(scene, before, colour);
        }
    }
}

TEST_P(BlurEdges, LonePixelKeepsItsColour) {
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
        EXPECT_EQ(scene.run(driver, 1, amount), PF_Err_NONE);
        expectColourKept(scene, before, colour);
    }
}

TEST_P(BlurEdges, EmptyMaskLeavesEverything) {
    const BlurDriver driver = GetParam();
    Random random(35);
    BlurScene scene(driver, Mask(15, 11, 0), random);
    const PlainPicture before = read(scene.dst);
    EXPECT_EQ(scene.run(driver, 3, 20.0), PF_Err_NONE);
    EXPECT_EQ(difference(before, scene.dst), "");
}

TEST_P(BlurEdges, GapSeparatesItsSidesInTheRunScanOnly) {
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
    EXPECT_EQ(scene.run(driver, 1, 8.0), PF_Err_NONE);
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

TEST_P(BlurEdges, BoxReachesBeyondTheCore) {
    const BlurDriver driver = GetParam();
    Random random(37);
    BlurScene scene(driver, Mask(901, 1, 1), random);
    PlainPicture spike(driver.format, scene.src.width(), scene.src.height());
    spike.at(450, 0).red = fullScale(driver.format);
    write(spike, scene.src);
    EXPECT_EQ(scene.run(driver, 1, 350.5), PF_Err_NONE);
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

TEST_P(BlurEdges, NegativeRepeatRunsTheFirstPairAlone) {
    const BlurDriver driver = GetParam();
    Random random(38);
    BlurScene scene(driver, Mask(12, 12, 1), random);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    plainBlur(scene.plainJob(driver, 1, 6.0), read(scene.src), dst, tmp);
    EXPECT_EQ(scene.run(driver, -1, 6.0), PF_Err_NONE);
    EXPECT_EQ(difference(dst, scene.dst), "");
    EXPECT_EQ(difference(tmp, scene.tmp), "");
}

TEST_P(BlurEdges, AmountThatIsNoNumberLeavesTheColour) {
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
    EXPECT_EQ(scene.run(driver, 1, std::numeric_limits<double>::quiet_NaN()), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BlurEdges, MissingWorldIsOutOfMemory) {
    const BlurDriver driver = GetParam();
    Random random(40);
    BlurScene scene(driver, Mask(6, 6, 1), random);
    PF_InData* const in = scene.host.in();
    const auto run = [&](PF_EffectWorld* dst, PF_EffectWorld* src, PF_EffectWorld* tmp, int32_t repeat) {
        return driver.run(in, {.dst = dst,
                               .src = src,
                               .tmp = tmp,
                               .rect = scene.rect,
                               .mask = scene.plane,
                               .repeat = repeat,
                               .amount = 5.0});
    };
    PF_EffectWorld* const dst = scene.dst.get();
    PF_EffectWorld* const src = scene.src.get();
    PF_EffectWorld* const tmp = scene.tmp.get();
    EXPECT_EQ(run(nullptr, src, tmp, 1), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(dst, nullptr, tmp, 1), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(dst, src, nullptr, 1), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(nullptr, src, tmp, 0), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(dst, nullptr, tmp, 0), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(run(dst, src, nullptr, 0), PF_Err_NONE) << "a copy needs no scratch world";
}

} // namespace
} // namespace kovalune::test
