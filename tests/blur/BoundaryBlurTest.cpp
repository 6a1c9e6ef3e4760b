// What a boundary blur makes of alpha and colour: whole blurs, single passes, and the gain.
#include "tests/blur/BlurDrivers.h"
#include "tests/reference/PlainBands.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class BoundaryBlurTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundaryBlurTest, testing::ValuesIn(kBoundaryDrivers), driverName);

/// What the gain makes of one alpha.
double gained(PF_PixelFormat format, double alpha, double amount) {
    PlainPicture picture(format, 1, 1);
    picture.at(0, 0).alpha = alpha;
    plainAlphaGain(wholeRect(1, 1), amount, picture);
    return picture.at(0, 0).alpha;
}

TEST_P(BoundaryBlurTest, OpaqueRegionOfOneColourIsUnchanged) {
    const BlurDriver driver = GetParam();
    Random random(232);
    PlainPixel colour = randomPicture(driver.format, 1, 1, random).at(0, 0);
    colour.alpha = fullScale(driver.format);
    for (const double amount : {2.0, 3.0, 17.5, 300.0, 350.5}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kBlobs, MaskShape::kSparse}) {
            BlurScene scene(driver, makeMask(shape, 30, 20, random), random);
            paint(scene.src, colour);
            PlainPicture expected = read(scene.dst);
            plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
            EXPECT_EQ(scene.run(1, amount), PF_Err_NONE);
            EXPECT_EQ(difference(expected, scene.dst), "") << amount;
        }
    }
}

TEST_P(BoundaryBlurTest, TransparentRegionIsUnchanged) {
    const BlurDriver driver = GetParam();
    Random random(233);
    BlurScene scene(driver, Mask(20, 20, 1), random);
    PlainPicture transparent = read(scene.src);
    for (PlainPixel& pixel : transparent.pixels) {
        pixel.alpha = 0.0;
    }
    write(transparent, scene.src);
    PlainPicture expected = read(scene.dst);
    plainMaskedCopy(scene.rect, scene.mask, false, transparent, expected);
    EXPECT_EQ(scene.run(3, 7.0), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BoundaryBlurTest, LonePixelKeepsItsColourAndGainsAlpha) {
    const BlurDriver driver = GetParam();
    Random random(234);
    const double full = fullScale(driver.format);
    const PlainPixel colour = {full / 4, full / 2, full / 8, 0.0};
    for (const double amount : {2.0, 5.0, 100.0}) {
        BlurScene scene(driver, makeMask(MaskShape::kSingle, 12, 9, random), random);
        paint(scene.src, colour);
        paint(scene.dst, {});
        PlainPicture expected = read(scene.dst);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        for (PlainPixel& pixel : expected.pixels) {
            pixel.alpha = pixel.alpha == 0.0 ? 0.0 : gained(driver.format, colour.alpha, amount);
        }
        EXPECT_EQ(scene.run(1, amount), PF_Err_NONE);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
            EXPECT_NEAR(result.pixels[i].alpha, expected.pixels[i].alpha, full * 1e-6);
            EXPECT_EQ(result.pixels[i].red, expected.pixels[i].red);
            EXPECT_EQ(result.pixels[i].green, expected.pixels[i].green);
        }
    }
}

TEST_P(BoundaryBlurTest, GainOfTheWholeAmountIsAppliedOnceHoweverOftenTheBlurRepeats) {
    const BlurDriver driver = GetParam();
    Random random(235);
    for (int32_t repeat = 1; repeat <= 6; ++repeat) {
        // Pixels that keep their alpha show the gain alone.
        BlurScene scene(driver, Mask(15, 12, 1), Mask(15, 12, 1), random);
        EXPECT_EQ(scene.run(repeat, 8.0), PF_Err_NONE);
        const PlainPicture source = read(scene.src);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < 15; ++i) {
            const auto x = static_cast<int32_t>(i);
            EXPECT_EQ(result.at(x, 5).alpha, gained(driver.format, source.at(x, 5).alpha, 8.0));
        }
    }
}

TEST_P(BoundaryBlurTest, AmountOfTwoScalesAlphaByFiveThirds) {
    const BlurDriver driver = GetParam();
    Random random(236);
    BlurScene scene(driver, Mask(9, 9, 1), random);
    const double full = fullScale(driver.format);
    paint(scene.src, {full / 2, 0, 0, 0});
    EXPECT_EQ(scene.run(1, 2.0), PF_Err_NONE);
    const double expected =
        driver.format == PF_PixelFormat_ARGB64 ? 27306.0 : static_cast<double>(static_cast<float>(5.0 / 6.0));
    EXPECT_EQ(read(scene.dst).at(4, 4).alpha, expected);
}

TEST_P(BoundaryBlurTest, GainGoesOverEveryPixelOfTheWorldThatTheFirstPassWrote) {
    const BlurDriver driver = GetParam();
    Random random(237);
    for (const int32_t repeat : {1, 2}) {
        const FrameRect rect = rectAt(2, 1, 10, 8);
        BlurScene scene(driver, strictOptions(), rect, Mask(10, 8, 0), Mask(10, 8, 1), random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        plainAlphaGain(rect, 5.0, repeat == 1 ? tmp : dst);
        EXPECT_EQ(scene.run(repeat, 5.0), PF_Err_NONE);
        EXPECT_EQ(difference(dst, scene.dst), "");
        EXPECT_EQ(difference(tmp, scene.tmp), "");
    }
}

TEST_P(BoundaryBlurTest, GapSeparatesItsSidesInTheRunScanOnly) {
    const BlurDriver driver = GetParam();
    Random random(238);
    Mask region(21, 1, 1);
    region.at(10, 0) = 0;
    BlurScene scene(driver, region, random);
    const double full = fullScale(driver.format);
    PlainPicture sides = read(scene.src);
    for (int32_t x = 0; x < 21; ++x) {
        sides.at(x, 0) = {x < 10 ? 0.0 : full, 0, x < 10 ? 0.0 : full, 0};
    }
    write(sides, scene.src);
    EXPECT_EQ(scene.run(1, 8.0), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(11, 0).green, full) << "transparent pixels do not dilute colour";
    if (driver.keepDivision) {
        EXPECT_EQ(result.at(9, 0).alpha, 0.0);
        EXPECT_EQ(result.at(9, 0).green, 0.0);
        EXPECT_EQ(result.at(11, 0).alpha, full);
    } else {
        EXPECT_GT(result.at(9, 0).alpha, 0.0);
        EXPECT_EQ(result.at(9, 0).green, full);
    }
}

TEST_P(BoundaryBlurTest, AmountThatIsNoNumberEndsAndWritesNothingOutside) {
    const BlurDriver driver = GetParam();
    Random random(241);
    BlurScene scene(driver, strictOptions(), rectAt(2, 3, 12, 12), Mask(12, 12, 1), Mask(12, 12, 0), random);
    const PlainPicture before = read(scene.dst);
    EXPECT_EQ(scene.run(1, std::numeric_limits<double>::quiet_NaN()), PF_Err_NONE);
    const PlainPicture after = read(scene.dst);
    for (int32_t x = 0; x < after.width; ++x) {
        EXPECT_EQ(after.at(x, 2).alpha, before.at(x, 2).alpha);
        EXPECT_EQ(after.at(x, 2).red, before.at(x, 2).red);
    }
}

class BoundaryBlurPassTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundaryBlurPassTest, testing::ValuesIn(kBoundaryDrivers), driverName);

TEST_P(BoundaryBlurPassTest, DoNotLookAtTheActivityOfTheKeepMask) {
    const BlurDriver driver = GetParam();
    Random random(215);
    for (const bool horizontal : {true, false}) {
        BlurScene scene(driver, Mask(6, 6, 1), Mask(6, 6, 1), random);
        for (int32_t line = 0; line < 6; ++line) {
            summariesOf(scene.keepPlane).rows[line] = 0;
            summariesOf(scene.keepPlane).columns[line] = 0;
        }
        EXPECT_EQ(scene.runPass(horizontal, makeGaussKernel(3, 2.0)), PF_Err_NONE);
        const PlainPicture source = read(scene.src);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < 36; ++i) {
            const auto at = static_cast<int32_t>(i);
            EXPECT_EQ(result.at(at % 6, at / 6).alpha, source.at(at % 6, at / 6).alpha);
        }
    }
}

TEST_P(BoundaryBlurPassTest, MeanOfColourTakesOpaquePixelsWithoutWeights) {
    const BlurDriver driver = GetParam();
    Random random(217);
    BlurScene scene(driver, Mask(5, 1, 1), random);
    const double one = fullScale(driver.format) / 64.0;
    writeRow(scene.src, {{one, 8 * one, 0, 0},
                         {0, 64 * one, 64 * one, 64 * one},
                         {64 * one, 0, 16 * one, 0},
                         {0, 64 * one, 64 * one, 64 * one},
                         {2 * one, 0, 0, 32 * one}});
    EXPECT_EQ(scene.runPass(true, makeGaussKernel(2, 0.5)), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(1, 0).red, 4 * one) << "the mean of the two neighbours, itself not counted";
    EXPECT_EQ(result.at(1, 0).green, 8 * one);
    EXPECT_EQ(result.at(0, 0).red, 8 * one) << "alone opaque in its window";
    EXPECT_GT(result.at(1, 0).alpha, 0.0);
}

TEST_P(BoundaryBlurPassTest, KeptPixelKeepsItsAlphaButNotItsColour) {
    const BlurDriver driver = GetParam();
    Random random(218);
    Mask keep(5, 1, 0);
    keep.at(2, 0) = 200;
    BlurScene scene(driver, Mask(5, 1, 1), keep, random);
    const double full = fullScale(driver.format);
    writeRow(scene.src, {{full, full, 0, 0},
                         {full, full, 0, 0},
                         {full / 4, 0, 0, full},
                         {full, full, 0, 0},
                         {full, full, 0, 0}});
    EXPECT_EQ(scene.runPass(true, makeGaussKernel(3, 1.125)), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(2, 0).alpha, full / 4);
    EXPECT_GT(result.at(2, 0).red, 0.0);
    EXPECT_LT(result.at(2, 0).blue, full);
    EXPECT_LT(result.at(1, 0).alpha, full) << "its neighbours blur over it";
}

/// Red up to column 2, green after it, blurred over one pixel to either side.
PlainPicture twoColours(const BlurDriver& driver, const Mask& region, double unit) {
    Random random(219);
    BlurScene scene(driver, region, random);
    const double full = fullScale(driver.format);
    PlainPicture line = read(scene.src);
    for (int32_t x = 0; x < region.width; ++x) {
        line.at(x, 0) = {full, x < 3 ? unit : 0.0, x < 3 ? 0.0 : unit, 0.0};
    }
    write(line, scene.src);
    EXPECT_EQ(scene.runPass(true, makeGaussKernel(2, 0.5)), PF_Err_NONE);
    return read(scene.dst);
}

TEST_P(BoundaryBlurPassTest, StreakColourInTheWindowScanOnly) {
    const BlurDriver driver = GetParam();
    const bool is16 = driver.format == PF_PixelFormat_ARGB64;
    const double unit = is16 ? 31500.0 : 0.75;
    const auto share = [&](int part, int whole) {
        const double exact = unit * part / whole;
        return is16 ? std::floor(exact + 0.5) : static_cast<double>(static_cast<float>(exact));
    };
    const PlainPicture result = twoColours(driver, Mask(8, 1, 1), unit);
    if (driver.keepDivision) {
        EXPECT_EQ(result.at(1, 0).green, 0.0);
        EXPECT_EQ(result.at(2, 0).red, share(2, 3));
        EXPECT_EQ(result.at(3, 0).red, share(1, 3));
        EXPECT_EQ(result.at(4, 0).red, 0.0);
        EXPECT_EQ(result.at(7, 0).green, unit);
        return;
    }
    // Seen from column x: 0 to x + 1, and what lies after x - 1 once more.
    EXPECT_EQ(result.at(1, 0).red, unit);
    EXPECT_EQ(result.at(2, 0).red, share(4, 5));
    EXPECT_EQ(result.at(3, 0).red, share(5, 7));
    EXPECT_EQ(result.at(4, 0).red, share(6, 9));
    EXPECT_EQ(result.at(4, 0).green, share(3, 9));
    EXPECT_EQ(result.at(5, 0).red, share(6, 11));
    EXPECT_EQ(result.at(7, 0).red, share(6, 14)) << "nothing enters at the end of the line";
}

TEST_P(BoundaryBlurPassTest, CarryColourAcrossAGapInTheWindowScanOnly) {
    const BlurDriver driver = GetParam();
    Mask region(12, 1, 1);
    for (int32_t x = 3; x < 8; ++x) {
        region.at(x, 0) = 0;
    }
    const double unit = fullScale(driver.format) / 2.0;
    const PlainPicture result = twoColours(driver, region, unit);
    for (int32_t x = 8; x < 12; ++x) {
        if (driver.keepDivision) {
            EXPECT_EQ(result.at(x, 0).red, 0.0) << "a new run starts its colour anew";
            EXPECT_EQ(result.at(x, 0).green, unit);
        } else {
            EXPECT_GT(result.at(x, 0).red, 0.0) << "the window left these pixels long ago";
        }
    }
}

TEST_P(BoundaryBlurPassTest, GainIsTheLinesOfItsBandOnly) {
    const BlurDriver driver = GetParam();
    Random random(220);
    for (int i = 0; i < 4; ++i) {
        BlurScene scene(driver, strictOptions(), rectAt(1, 2, 7, 10), Mask(7, 10, 0), Mask(7, 10, 1), random,
                        Range::kWild);
        PlainPicture expected = read(scene.dst);
        const Band band = plainBand(10, i, 4);
        plainAlphaGain(rectAt(1, 2 + band.first, 7, band.end - band.first), 6.5, expected);
        AlphaGainRecord record{scene.dst.get(), scene.rect, 6.5};
        EXPECT_EQ(driver.gain(&record, 0, i, 4), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
    }
}

double gainedBy(const BlurDriver& driver, double alpha, double amount) {
    Random random(221);
    BlurScene scene(driver, Mask(1, 1, 0), random);
    writeRow(scene.dst, {{alpha, 0, 0, 0}});
    AlphaGainRecord record{scene.dst.get(), scene.rect, amount};
    EXPECT_EQ(driver.gain(&record, 0, 0, 1), PF_Err_NONE);
    return read(scene.dst).at(0, 0).alpha;
}

TEST(AlphaGainTest, Of16BitsTruncatesAndStopsAtFullScale) {
    const BlurDriver& driver = kBoundaryDrivers[0];
    EXPECT_EQ(gainedBy(driver, 16384.0, 2.0), 27306.0);
    EXPECT_EQ(gainedBy(driver, 32768.0, 2.0), 32768.0);
    EXPECT_EQ(gainedBy(driver, 32768.0, 500.0), 32768.0);
    EXPECT_EQ(gainedBy(driver, 65535.0, 2.0), 32768.0);
    EXPECT_EQ(gainedBy(driver, 100.0, 1.0), 150.0);
    EXPECT_EQ(gainedBy(driver, 1.0, 8.0), 1.0);
    EXPECT_EQ(gainedBy(driver, 0.0, 8.0), 0.0);
}

TEST(AlphaGainTest, OfFloatStopsAtOneAndKeepsWhatIsNegative) {
    const BlurDriver& driver = kBoundaryDrivers[2];
    EXPECT_EQ(gainedBy(driver, 0.5, 2.0), static_cast<double>(static_cast<float>(0.5 * 5.0 / 3.0)));
    EXPECT_EQ(gainedBy(driver, 1.0, 2.0), 1.0);
    EXPECT_EQ(gainedBy(driver, 7.0, 2.0), 1.0);
    EXPECT_EQ(gainedBy(driver, std::numeric_limits<double>::infinity(), 2.0), 1.0);
    EXPECT_EQ(gainedBy(driver, -3.0, 2.0), -5.0);
    const double none = gainedBy(driver, std::numeric_limits<double>::quiet_NaN(), 2.0);
    EXPECT_NE(none, none);
}

} // namespace
} // namespace kovalune::test
