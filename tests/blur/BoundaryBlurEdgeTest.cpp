// Whole boundary blurs at their edges.
#include "tests/blur/BoundaryBlurDrivers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class BoundaryEdges : public testing::TestWithParam<BoundaryDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundaryEdges, testing::ValuesIn(kBoundaryDrivers), boundaryDriverName);

void paint(TestWorld& world, const PlainPixel& colour) {
    PlainPicture picture = read(world);
    for (PlainPixel& pixel : picture.pixels) {
        pixel = colour;
    }
    write(picture, world);
}

/// What the gain makes of one alpha.
double gained(PF_PixelFormat format, double alpha, double amount) {
    PlainPicture picture(format, 1, 1);
    picture.at(0, 0).alpha = alpha;
    plainAlphaGain(wholeRect(1, 1), amount, picture);
    return picture.at(0, 0).alpha;
}

TEST_P(BoundaryEdges, BelowTwoOrWithoutRepeatCopiesWholePixels) {
    const BoundaryDriver driver = GetParam();
    Random random(231);
    const std::pair<int32_t, double> cases[] = {
        {1, 1.0}, {1, 1.99}, {9, 1.99}, {0, 100.0}, {5, 0.0}, {3, -50.0}, {2, std::nextafter(2.0, 0.0)}};
    for (const auto& [repeat, amount] : cases) {
        BoundaryScene scene(driver, makeMask(MaskShape::kBlobs, 20, 20, random), Mask(20, 20, 1), random);
        PlainPicture expected = read(scene.dst);
        const PlainPicture scratch = read(scene.tmp);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        EXPECT_EQ(scene.run(driver, repeat, amount), PF_Err_NONE);
        EXPECT_EQ(difference(expected, scene.dst), "") << repeat << ", " << amount;
        EXPECT_EQ(difference(scratch, scene.tmp), "");
    }
}

TEST_P(BoundaryEdges, OpaqueRegionOfOneColourIsUnchanged) {
    const BoundaryDriver driver = GetParam();
    Random random(232);
    PlainPixel colour = randomPicture(driver.format, 1, 1, random).at(0, 0);
    colour.alpha = fullScale(driver.format);
    for (const double amount : {2.0, 3.0, 17.5, 300.0, 350.5}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kBlobs, MaskShape::kSparse}) {
            BoundaryScene scene(driver, makeMask(shape, 30, 20, random), random);
            paint(scene.src, colour);
            PlainPicture expected = read(scene.dst);
            plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
            EXPECT_EQ(scene.run(driver, 1, amount), PF_Err_NONE);
            EXPECT_EQ(difference(expected, scene.dst), "") << amount;
        }
    }
}

TEST_P(BoundaryEdges, TransparentRegionIsUnchanged) {
    const BoundaryDriver driver = GetParam();
    Random random(233);
    BoundaryScene scene(driver, Mask(20, 20, 1), random);
    PlainPicture transparent = read(scene.src);
    for (PlainPixel& pixel : transparent.pixels) {
        pixel.alpha = 0.0;
    }
    write(transparent, scene.src);
    PlainPicture expected = read(scene.dst);
    plainMaskedCopy(scene.rect, scene.mask, false, transparent, expected);
    EXPECT_EQ(scene.run(driver, 3, 7.0), PF_Err_NONE);
    EXPECT_EQ(difference(expected, scene.dst), "");
}

TEST_P(BoundaryEdges, LonePixelKeepsItsColourAndGainsAlpha) {
    const BoundaryDriver driver = GetParam();
    Random random(234);
    const double full = fullScale(driver.format);
    const PlainPixel colour = {full / 4, full / 2, full / 8, 0.0};
    for (const double amount : {2.0, 5.0, 100.0}) {
        BoundaryScene scene(driver, makeMask(MaskShape::kSingle, 12, 9, random), random);
        paint(scene.src, colour);
        paint(scene.dst, {});
        PlainPicture expected = read(scene.dst);
        plainMaskedCopy(scene.rect, scene.mask, false, read(scene.src), expected);
        for (PlainPixel& pixel : expected.pixels) {
            pixel.alpha = pixel.alpha == 0.0 ? 0.0 : gained(driver.format, colour.alpha, amount);
        }
        EXPECT_EQ(scene.run(driver, 1, amount), PF_Err_NONE);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
            EXPECT_NEAR(result.pixels[i].alpha, expected.pixels[i].alpha, full * 1e-6);
            EXPECT_EQ(result.pixels[i].red, expected.pixels[i].red);
            EXPECT_EQ(result.pixels[i].green, expected.pixels[i].green);
        }
    }
}

TEST_P(BoundaryEdges, GainOfTheWholeAmountIsAppliedOnceHoweverOftenTheBlurRepeats) {
    const BoundaryDriver driver = GetParam();
    Random random(235);
    for (int32_t repeat = 1; repeat <= 6; ++repeat) {
        // Pixels that keep their alpha show the gain alone.
        BoundaryScene scene(driver, Mask(15, 12, 1), Mask(15, 12, 1), random);
        EXPECT_EQ(scene.run(driver, repeat, 8.0), PF_Err_NONE);
        const PlainPicture source = read(scene.src);
        const PlainPicture result = read(scene.dst);
        for (std::size_t i = 0; i < 15; ++i) {
            const auto x = static_cast<int32_t>(i);
            EXPECT_EQ(result.at(x, 5).alpha, gained(driver.format, source.at(x, 5).alpha, 8.0));
        }
    }
}

TEST_P(BoundaryEdges, AmountOfTwoScalesAlphaByFiveThirds) {
    const BoundaryDriver driver = GetParam();
    Random random(236);
    BoundaryScene scene(driver, Mask(9, 9, 1), random);
    const double full = fullScale(driver.format);
    paint(scene.src, {full / 2, 0, 0, 0});
    EXPECT_EQ(scene.run(driver, 1, 2.0), PF_Err_NONE);
    const double expected =
        driver.format == PF_PixelFormat_ARGB64 ? 27306.0 : static_cast<double>(static_cast<float>(5.0 / 6.0));
    EXPECT_EQ(read(scene.dst).at(4, 4).alpha, expected);
}

TEST_P(BoundaryEdges, GainGoesOverEveryPixelOfTheWorldThatTheFirstPassWrote) {
    const BoundaryDriver driver = GetParam();
    Random random(237);
    for (const int32_t repeat : {1, 2}) {
        const FrameRect rect = rectAt(2, 1, 10, 8);
        BoundaryScene scene(driver, strictOptions(), rect, Mask(10, 8, 0), Mask(10, 8, 1), random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        plainAlphaGain(rect, 5.0, repeat == 1 ? tmp : dst);
        EXPECT_EQ(scene.run(driver, repeat, 5.0), PF_Err_NONE);
        EXPECT_EQ(difference(dst, scene.dst), "");
        EXPECT_EQ(difference(tmp, scene.tmp), "");
    }
}

TEST_P(BoundaryEdges, GapSeparatesItsSidesInTheRunScanOnly) {
    const BoundaryDriver driver = GetParam();
    Random random(238);
    Mask region(21, 1, 1);
    region.at(10, 0) = 0;
    BoundaryScene scene(driver, region, random);
    const double full = fullScale(driver.format);
    PlainPicture sides = read(scene.src);
    for (int32_t x = 0; x < 21; ++x) {
        sides.at(x, 0) = {x < 10 ? 0.0 : full, 0, x < 10 ? 0.0 : full, 0};
    }
    write(sides, scene.src);
    EXPECT_EQ(scene.run(driver, 1, 8.0), PF_Err_NONE);
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

TEST_P(BoundaryEdges, EmptyRegionOutsideTheGainLeavesEverything) {
    const BoundaryDriver driver = GetParam();
    Random random(239);
    BoundaryScene scene(driver, Mask(15, 11, 0), random);
    const PlainPicture before = read(scene.dst);
    EXPECT_EQ(scene.run(driver, 3, 20.0), PF_Err_NONE) << "the gain goes over the scratch world";
    EXPECT_EQ(difference(before, scene.dst), "");
}

TEST_P(BoundaryEdges, NegativeRepeatRunsTheFirstPairAlone) {
    const BoundaryDriver driver = GetParam();
    Random random(240);
    BoundaryScene scene(driver, Mask(12, 12, 1), random);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    plainBoundaryBlur(scene.plainJob(driver, 1, 6.0), read(scene.src), dst, tmp);
    EXPECT_EQ(scene.run(driver, -1, 6.0), PF_Err_NONE);
    EXPECT_EQ(difference(dst, scene.dst), "");
    EXPECT_EQ(difference(tmp, scene.tmp), "");
}

TEST_P(BoundaryEdges, AmountThatIsNoNumberEndsAndWritesNothingOutside) {
    const BoundaryDriver driver = GetParam();
    Random random(241);
    BoundaryScene scene(driver, strictOptions(), rectAt(2, 3, 12, 12), Mask(12, 12, 1), Mask(12, 12, 0),
                        random);
    const PlainPicture before = read(scene.dst);
    EXPECT_EQ(scene.run(driver, 1, std::numeric_limits<double>::quiet_NaN()), PF_Err_NONE);
    const PlainPicture after = read(scene.dst);
    for (int32_t x = 0; x < after.width; ++x) {
        EXPECT_EQ(after.at(x, 2).alpha, before.at(x, 2).alpha);
        EXPECT_EQ(after.at(x, 2).red, before.at(x, 2).red);
    }
}

TEST_P(BoundaryEdges, MissingWorldIsOutOfMemory) {
    const BoundaryDriver driver = GetParam();
    Random random(242);
    BoundaryScene scene(driver, Mask(6, 6, 1), random);
    const auto run = [&](PF_EffectWorld* dst, PF_EffectWorld* src, PF_EffectWorld* tmp, int32_t repeat) {
        return driver.run(scene.host.in(), {.dst = dst,
                                            .src = src,
                                            .tmp = tmp,
                                            .rect = scene.rect,
                                            .regionMask = scene.plane,
                                            .alphaKeepMask = scene.keepPlane,
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
