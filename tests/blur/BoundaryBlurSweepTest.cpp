// The four boundary blurs against their plain twin, bit for bit: pictures, masks, amounts and hosts of many
// kinds.
#include "tests/blur/BlurSweep.h"
#include "tests/blur/BoundaryBlurDrivers.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class BoundarySweep : public testing::TestWithParam<BoundaryDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundarySweep, testing::ValuesIn(kBoundaryDrivers), boundaryDriverName);

MaskShape anyShape(Random& random) {
    return kMaskShapes[static_cast<std::size_t>(random.below(static_cast<int>(kMaskShapes.size())))];
}

Mask anyMask(int32_t width, int32_t height, Random& random) {
    return makeMask(anyShape(random), width, height, random);
}

TEST_P(BoundarySweep, OfEveryMaskShapeInManySizes) {
    const BoundaryDriver driver = GetParam();
    Random random(201);
    for (int round = 0; round < 8; ++round) {
        for (const MaskShape shape : kMaskShapes) {
            const int32_t width = random.between(1, 70);
            const int32_t height = random.between(1, 70);
            const FrameRect rect = rectAt(random.below(4), random.below(4), width, height);
            BoundaryScene scene(driver, anyOptions(random), rect, makeMask(shape, width, height, random),
                                anyMask(width, height, random), random);
            expectLikeThePlainOne(plainBoundaryBlur, driver, scene, random.between(1, 4),
                                  2.0 + random.unit() * 30.0);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BoundarySweep, OfFlatColoursWithTransparentHoles) {
    const BoundaryDriver driver = GetParam();
    Random random(202);
    for (int round = 0; round < 30; ++round) {
        const Mask region = anyMask(random.between(1, 50), random.between(1, 50), random);
        const Mask keep = anyMask(region.width, region.height, random);
        BoundaryScene scene(driver, anyOptions(random), wholeRect(region.width, region.height), region, keep,
                            random);
        write(flatPicture(driver.format, scene.src.width(), scene.src.height(), random), scene.src);
        expectLikeThePlainOne(plainBoundaryBlur, driver, scene, random.between(1, 5),
                              2.0 + random.unit() * 12.0);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(BoundarySweep, OfEveryRepeat) {
    const BoundaryDriver driver = GetParam();
    Random random(203);
    for (int32_t repeat = 0; repeat <= 10; ++repeat) {
        for (const double amount : {1.99, 2.0, 2.5, 9.0, 33.25}) {
            const Mask region = anyMask(random.between(5, 30), random.between(5, 30), random);
            const Mask keep = anyMask(region.width, region.height, random);
            BoundaryScene scene(driver, anyOptions(random), wholeRect(region.width, region.height), region,
                                keep, random);
            expectLikeThePlainOne(plainBoundaryBlur, driver, scene, repeat, amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BoundarySweep, OfAmountsWithATailInSmallPictures) {
    const BoundaryDriver driver = GetParam();
    Random random(204);
    for (const double amount : {299.5, 300.0, 300.5, 350.5, 512.0, 777.25, 1001.0}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kDense, MaskShape::kBlobs,
                                      MaskShape::kSingle, MaskShape::kCheckerboard}) {
            const Mask region = makeMask(shape, random.between(1, 40), random.between(1, 40), random);
            const Mask keep = anyMask(region.width, region.height, random);
            BoundaryScene scene(driver, anyOptions(random), wholeRect(region.width, region.height), region,
                                keep, random);
            expectLikeThePlainOne(plainBoundaryBlur, driver, scene, random.between(1, 3), amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BoundarySweep, OfLinesLongerThanTheCore) {
    const BoundaryDriver driver = GetParam();
    Random random(205);
    const std::pair<int32_t, int32_t> sizes[] = {{760, 2}, {2, 760}, {350, 3}, {1, 1100}, {1100, 1}};
    for (const auto& [width, height] : sizes) {
        for (const double amount : {120.0, 310.5, 350.5, 501.0}) {
            Mask region(width, height, 1);
            for (uint8_t& element : region.elements) {
                element = static_cast<uint8_t>(!random.chance(1)); // runs grow beyond the core as well
            }
            BoundaryScene scene(driver, anyOptions(random), wholeRect(width, height), region,
                                makeMask(MaskShape::kSparse, width, height, random), random);
            expectLikeThePlainOne(plainBoundaryBlur, driver, scene, random.between(1, 2), amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BoundarySweep, OfValuesBeyondFullScale) {
    const BoundaryDriver driver = GetParam();
    Random random(206);
    for (int round = 0; round < 40; ++round) {
        const Mask region = anyMask(random.between(1, 40), random.between(1, 40), random);
        const Mask keep = anyMask(region.width, region.height, random);
        const FrameRect rect = rectAt(random.below(3), random.below(3), region.width, region.height);
        BoundaryScene scene(driver, anyOptions(random), rect, region, keep, random, Range::kWild);
        const double amount = random.chance(50) ? 2.0 + random.unit() * 20.0 : 301.0 + random.unit() * 600.0;
        expectLikeThePlainOne(plainBoundaryBlur, driver, scene, random.between(1, 3), amount);
        if (HasFatalFailure()) {
            return;
        }
    }
}

/// In the longest line the streaks of a window scan sum up to more than 32 bits hold.
TEST_P(BoundarySweep, OfTheLargestValuesInTheLongestLines) {
    const BoundaryDriver driver = GetParam();
    Random random(207);
    for (const auto& [width, height] : {std::pair<int32_t, int32_t>{32760, 1}, {1, 32760}}) {
        host::judge::JudgeOptions options = anyOptions(random);
        options.allowHuge = true;
        BoundaryScene scene(driver, options, wholeRect(width, height), Mask(width, height, 1),
                            makeMask(MaskShape::kDense, width, height, random), random);
        PlainPicture largest(driver.format, scene.src.width(), scene.src.height());
        const auto value = driver.format == PF_PixelFormat_ARGB64 ? 65535.0 : static_cast<double>(3.0e38F);
        for (PlainPixel& pixel : largest.pixels) {
            pixel = {value, value, value, value};
        }
        write(largest, scene.src);
        expectLikeThePlainOne(plainBoundaryBlur, driver, scene, 1, 9.0);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(BoundarySweep, IsTheSameForEveryNumberOfIterations) {
    const BoundaryDriver driver = GetParam();
    PlainPicture first(driver.format, 0, 0);
    for (int iterations = 1; iterations <= 9; ++iterations) {
        Random random(208);
        const Mask region = makeMask(MaskShape::kDense, 33, 31, random);
        const Mask keep = makeMask(MaskShape::kBlobs, 33, 31, random);
        BoundaryScene scene(driver, shuffledOptions(iterations, 3, static_cast<uint64_t>(iterations)),
                            wholeRect(33, 31), region, keep, random, Range::kWild);
        ASSERT_EQ(scene.run(driver, 2, 12.0), PF_Err_NONE);
        const PlainPicture result = read(scene.dst);
        if (iterations == 1) {
            first = result;
        }
        ASSERT_EQ(difference(first, result), "") << iterations << " iterations";
    }
}

} // namespace
} // namespace kovalune::test
