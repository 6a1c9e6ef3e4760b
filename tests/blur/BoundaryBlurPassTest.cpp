// Single passes of the boundary blur, and the gain.
#include "tests/blur/BoundaryBlurDrivers.h"
#include "tests/support/PlainBands.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class BoundaryPasses : public testing::TestWithParam<BoundaryDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundaryPasses, testing::ValuesIn(kBoundaryDrivers), boundaryDriverName);

/// Taps of 0, which `makeGaussKernel` never makes for the centre.
GaussKernel kernelWithoutWeight(uint16_t tailWeight) {
    GaussKernel kernel;
    kernel.table = AEUtil::SharedArray(3);
    for (int k = 0; k < 3; ++k) {
        kernel.table.address()[k] = 0;
    }
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

TEST_P(BoundaryPasses, BlurTheirLinesLikeThePlainPass) {
    const BoundaryDriver driver = GetParam();
    Random random(211);
    for (int round = 0; round < 40; ++round) {
        const Mask region = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                     random.between(1, 40), random.between(1, 40), random);
        const Mask keep = makeMask(MaskShape::kBlobs, region.width, region.height, random);
        BoundaryScene scene(driver, region, keep, random);
        const double amount = random.unit() * 50.0 + 0.5;
        const auto length = static_cast<int32_t>(amount) + 1;
        BoundaryPassRecord record = scene.record(makeGaussKernel(length, amount * amount));
        const bool horizontal = random.chance(50);
        const int iterations = random.between(1, 9);
        PlainPicture expected = read(scene.dst);
        plainBoundaryPass(scene.plainJob(driver, 1, amount), plainKernel(length, amount * amount), horizontal,
                          read(scene.src), expected);
        for (int i = iterations - 1; i >= 0; --i) {
            const auto pass = horizontal ? driver.horizontal : driver.vertical;
            ASSERT_EQ(pass(&record, i % 3, i, iterations), PF_Err_NONE);
        }
        ASSERT_EQ(difference(expected, scene.dst), "") << "round " << round;
    }
}

TEST_P(BoundaryPasses, WriteTheLinesOfTheirBandOnly) {
    const BoundaryDriver driver = GetParam();
    Random random(212);
    for (const bool horizontal : {true, false}) {
        for (int i = 0; i < 4; ++i) {
            BoundaryScene scene(driver, Mask(10, 10, 1), random);
            BoundaryPassRecord record = scene.record(makeGaussKernel(4, 2.0));
            PlainPicture before = read(scene.dst);
            for (PlainPixel& pixel : before.pixels) {
                pixel.red = 1.25 * fullScale(driver.format); // which no mean comes to
            }
            write(before, scene.dst);
            ASSERT_EQ((horizontal ? driver.horizontal : driver.vertical)(&record, 0, i, 4), PF_Err_NONE);
            const PlainPicture after = read(scene.dst);
            const Band band = plainBand(10, i, 4);
            for (int32_t line = 0; line < 10; ++line) {
                const int32_t x = horizontal ? 5 : line;
                const int32_t y = horizontal ? line : 5;
                const bool changed = before.at(x, y).red != after.at(x, y).red;
                ASSERT_EQ(changed, line >= band.first && line < band.end) << "line " << line << " of " << i;
            }
        }
    }
}

TEST_P(BoundaryPasses, LookAtRowActivityInTheRunScanOnly) {
    const BoundaryDriver driver = GetParam();
    Random random(213);
    BoundaryScene scene(driver, Mask(6, 6, 1), random);
    summariesOf(scene.plane).rows[2] = 0;
    BoundaryPassRecord record = scene.record(makeGaussKernel(3, 2.0));
    PlainBoundaryBlur job = scene.plainJob(driver, 1, 3.0);
    for (int32_t x = 0; x < 6 && driver.keepDivision; ++x) {
        job.regionMask.at(x, 2) = 0;
    }
    PlainPicture expected = read(scene.dst);
    plainBoundaryPass(job, plainKernel(3, 2.0), true, read(scene.src), expected);
    EXPECT_EQ(driver.horizontal(&record, 0, 0, 1), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BoundaryPasses, LeaveColumnsWithoutActivityAlone) {
    const BoundaryDriver driver = GetParam();
    Random random(214);
    BoundaryScene scene(driver, Mask(6, 6, 1), random);
    summariesOf(scene.plane).columns[3] = 0;
    BoundaryPassRecord record = scene.record(makeGaussKernel(3, 2.0));
    PlainBoundaryBlur job = scene.plainJob(driver, 1, 3.0);
    for (int32_t y = 0; y < 6; ++y) {
        job.regionMask.at(3, y) = 0;
    }
    PlainPicture expected = read(scene.dst);
    plainBoundaryPass(job, plainKernel(3, 2.0), false, read(scene.src), expected);
    EXPECT_EQ(driver.vertical(&record, 0, 0, 1), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BoundaryPasses, DoNotLookAtTheActivityOfTheKeepMask) {
    const BoundaryDriver driver = GetParam();
    Random random(215);
    for (const bool horizontal : {true, false}) {
        BoundaryScene scene(driver, Mask(6, 6, 1), Mask(6, 6, 1), random);
        for (int32_t line = 0; line < 6; ++line) {
            summariesOf(scene.keepPlane).rows[line] = 0;
            summariesOf(scene.keepPlane).columns[line] = 0;
        }
        BoundaryPassRecord record = scene.record(makeGaussKernel(3, 2.0));
        EXPECT_EQ((horizontal ? driver.horizontal : driver.vertical)(&record, 0, 0, 1), PF_Err_NONE);
        const PlainPicture source = read(scene.src);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < 36; ++i) {
            const auto at = static_cast<int32_t>(i);
            EXPECT_EQ(result.at(at % 6, at / 6).alpha, source.at(at % 6, at / 6).alpha);
        }
    }
}

TEST_P(BoundaryPasses, WithoutAnyWeightKeepTheSourcesAlpha) {
    const BoundaryDriver driver = GetParam();
    Random random(216);
    for (const bool horizontal : {true, false}) {
        for (const uint16_t tailWeight : {uint16_t{0}, uint16_t{12345}}) {
            BoundaryScene scene(driver, makeMask(MaskShape::kDense, 9, 7, random), random);
            BoundaryPassRecord record = scene.record(kernelWithoutWeight(tailWeight));
            PlainPicture expected = read(scene.dst);
            plainBoundaryPass(scene.plainJob(driver, 1, 3.0), plainKernelWithoutWeight(tailWeight),
                              horizontal, read(scene.src), expected);
            EXPECT_EQ((horizontal ? driver.horizontal : driver.vertical)(&record, 0, 0, 1), PF_Err_NONE);
            EXPECT_EQ(difference(expected, scene.dst), "");
            if (tailWeight == 0 && scene.mask.at(4, 3) != 0) {
                EXPECT_EQ(read(scene.dst).at(4, 3).alpha, read(scene.src).at(4, 3).alpha);
            }
        }
    }
}

TEST_P(BoundaryPasses, MeanOfColourTakesOpaquePixelsWithoutWeights) {
    const BoundaryDriver driver = GetParam();
    Random random(217);
    BoundaryScene scene(driver, Mask(5, 1, 1), random);
    const double one = fullScale(driver.format) / 64.0;
    writeRow(scene.src, {{one, 8 * one, 0, 0},
                         {0, 64 * one, 64 * one, 64 * one},
                         {64 * one, 0, 16 * one, 0},
                         {0, 64 * one, 64 * one, 64 * one},
                         {2 * one, 0, 0, 32 * one}});
    BoundaryPassRecord record = scene.record(makeGaussKernel(2, 0.5));
    EXPECT_EQ(driver.horizontal(&record, 0, 0, 1), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(1, 0).red, 4 * one) << "the mean of the two neighbours, itself not counted";
    EXPECT_EQ(result.at(1, 0).green, 8 * one);
    EXPECT_EQ(result.at(0, 0).red, 8 * one) << "alone opaque in its window";
    EXPECT_GT(result.at(1, 0).alpha, 0.0);
}

TEST_P(BoundaryPasses, KeptPixelKeepsItsAlphaButNotItsColour) {
    const BoundaryDriver driver = GetParam();
    Random random(218);
    Mask keep(5, 1, 0);
    keep.at(2, 0) = 200;
    BoundaryScene scene(driver, Mask(5, 1, 1), keep, random);
    const double full = fullScale(driver.format);
    writeRow(scene.src, {{full, full, 0, 0},
                         {full, full, 0, 0},
                         {full / 4, 0, 0, full},
                         {full, full, 0, 0},
                         {full, full, 0, 0}});
    BoundaryPassRecord record = scene.record(makeGaussKernel(3, 1.125));
    EXPECT_EQ(driver.horizontal(&record, 0, 0, 1), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    EXPECT_EQ(result.at(2, 0).alpha, full / 4);
    EXPECT_GT(result.at(2, 0).red, 0.0);
    EXPECT_LT(result.at(2, 0).blue, full);
    EXPECT_LT(result.at(1, 0).alpha, full) << "its neighbours blur over it";
}

/// Red up to column 2, green behind it, blurred over one pixel to either side.
PlainPicture twoColours(const BoundaryDriver& driver, const Mask& region, double unit) {
    Random random(219);
    BoundaryScene scene(driver, region, random);
    const double full = fullScale(driver.format);
    PlainPicture line = read(scene.src);
    for (int32_t x = 0; x < region.width; ++x) {
        line.at(x, 0) = {full, x < 3 ? unit : 0.0, x < 3 ? 0.0 : unit, 0.0};
    }
    write(line, scene.src);
    BoundaryPassRecord record = scene.record(makeGaussKernel(2, 0.5));
    EXPECT_EQ(driver.horizontal(&record, 0, 0, 1), PF_Err_NONE);
    return read(scene.dst);
}

TEST_P(BoundaryPasses, StreakColourInTheWindowScanOnly) {
    const BoundaryDriver driver = GetParam();
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
    // Seen from column x: 0 to x + 1, and what lies behind x - 1 once more.
    EXPECT_EQ(result.at(1, 0).red, unit);
    EXPECT_EQ(result.at(2, 0).red, share(4, 5));
    EXPECT_EQ(result.at(3, 0).red, share(5, 7));
    EXPECT_EQ(result.at(4, 0).red, share(6, 9));
    EXPECT_EQ(result.at(4, 0).green, share(3, 9));
    EXPECT_EQ(result.at(5, 0).red, share(6, 11));
    EXPECT_EQ(result.at(7, 0).red, share(6, 14)) << "nothing enters at the end of the line";
}

TEST_P(BoundaryPasses, CarryColourAcrossAGapInTheWindowScanOnly) {
    const BoundaryDriver driver = GetParam();
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

TEST_P(BoundaryPasses, GainIsTheLinesOfItsBandOnly) {
    const BoundaryDriver driver = GetParam();
    Random random(220);
    for (int i = 0; i < 4; ++i) {
        BoundaryScene scene(driver, strictOptions(), rectAt(1, 2, 7, 10), Mask(7, 10, 0), Mask(7, 10, 1),
                            random, Range::kWild);
        PlainPicture expected = read(scene.dst);
        const Band band = plainBand(10, i, 4);
        plainAlphaGain(rectAt(1, 2 + band.first, 7, band.end - band.first), 6.5, expected);
        AlphaGainRecord record{scene.dst.get(), scene.rect, 6.5};
        EXPECT_EQ(driver.gain(&record, 0, i, 4), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "");
    }
}

double gained(const BoundaryDriver& driver, double alpha, double amount) {
    Random random(221);
    BoundaryScene scene(driver, Mask(1, 1, 0), random);
    writeRow(scene.dst, {{alpha, 0, 0, 0}});
    AlphaGainRecord record{scene.dst.get(), scene.rect, amount};
    EXPECT_EQ(driver.gain(&record, 0, 0, 1), PF_Err_NONE);
    return read(scene.dst).at(0, 0).alpha;
}

TEST(AlphaGain, Of16BitsTruncatesAndStopsAtFullScale) {
    const BoundaryDriver& driver = kBoundaryDrivers[0];
    EXPECT_EQ(gained(driver, 16384.0, 2.0), 27306.0);
    EXPECT_EQ(gained(driver, 32768.0, 2.0), 32768.0);
    EXPECT_EQ(gained(driver, 32768.0, 500.0), 32768.0);
    EXPECT_EQ(gained(driver, 65535.0, 2.0), 32768.0);
    EXPECT_EQ(gained(driver, 100.0, 1.0), 150.0);
    EXPECT_EQ(gained(driver, 1.0, 8.0), 1.0);
    EXPECT_EQ(gained(driver, 0.0, 8.0), 0.0);
}

TEST(AlphaGain, OfFloatStopsAtOneAndKeepsWhatIsNegative) {
    const BoundaryDriver& driver = kBoundaryDrivers[2];
    EXPECT_EQ(gained(driver, 0.5, 2.0), static_cast<double>(static_cast<float>(0.5 * 5.0 / 3.0)));
    EXPECT_EQ(gained(driver, 1.0, 2.0), 1.0);
    EXPECT_EQ(gained(driver, 7.0, 2.0), 1.0);
    EXPECT_EQ(gained(driver, std::numeric_limits<double>::infinity(), 2.0), 1.0);
    EXPECT_EQ(gained(driver, -3.0, 2.0), -5.0);
    const double none = gained(driver, std::numeric_limits<double>::quiet_NaN(), 2.0);
    EXPECT_NE(none, none);
}

} // namespace
} // namespace kovalune::test
