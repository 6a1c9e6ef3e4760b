// The four blurs against their plain twin, bit for bit: pictures, masks, amounts and hosts of many kinds.
#include "tests/blur/BlurSweep.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class BlurSweep : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurSweep, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurSweep, OfEveryMaskShapeInManySizes) {
    const BlurDriver driver = GetParam();
    Random random(101);
    for (int round = 0; round < 7; ++round) {
        for (const MaskShape shape : kMaskShapes) {
            const int32_t width = random.between(1, 70);
            const int32_t height = random.between(1, 70);
            const FrameRect rect = rectAt(random.below(4), random.below(4), width, height);
            BlurScene scene(driver, anyOptions(random), rect, makeMask(shape, width, height, random), random);
            const int32_t repeat = random.between(1, 4);
            expectLikeThePlainOne(plainBlur, driver, scene, repeat, 2.0 + random.unit() * 30.0);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BlurSweep, OfEveryRepeat) {
    const BlurDriver driver = GetParam();
    Random random(102);
    for (int32_t repeat = 0; repeat <= 10; ++repeat) {
        for (const double amount : {1.99, 2.0, 2.5, 9.0, 33.25}) {
            const Mask mask =
                makeMask(MaskShape::kBlobs, random.between(5, 30), random.between(5, 30), random);
            BlurScene scene(driver, anyOptions(random), wholeRect(mask.width, mask.height), mask, random);
            expectLikeThePlainOne(plainBlur, driver, scene, repeat, amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BlurSweep, OfAmountsWithATailInSmallPictures) {
    const BlurDriver driver = GetParam();
    Random random(103);
    for (const double amount : {299.5, 300.0, 300.5, 350.5, 512.0, 777.25, 1001.0}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kDense, MaskShape::kBlobs,
                                      MaskShape::kSingle, MaskShape::kCheckerboard}) {
            const Mask mask = makeMask(shape, random.between(1, 40), random.between(1, 40), random);
            BlurScene scene(driver, anyOptions(random), wholeRect(mask.width, mask.height), mask, random);
            expectLikeThePlainOne(plainBlur, driver, scene, random.between(1, 3), amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BlurSweep, OfLinesLongerThanTheCore) {
    const BlurDriver driver = GetParam();
    Random random(104);
    const std::pair<int32_t, int32_t> sizes[] = {{760, 2}, {2, 760}, {350, 3}, {1, 1100}, {1100, 1}};
    for (const auto& [width, height] : sizes) {
        for (const double amount : {120.0, 310.5, 350.5, 1001.0}) {
            const MaskShape shape = random.chance(40) ? MaskShape::kFull : MaskShape::kDense;
            Mask mask = makeMask(shape, width, height, random);
            if (shape == MaskShape::kDense) {
                // Few gaps, so that runs grow beyond the core as well.
                for (uint8_t& element : mask.elements) {
                    element = static_cast<uint8_t>(element != 0 || random.chance(95));
                }
            }
            BlurScene scene(driver, anyOptions(random), wholeRect(width, height), mask, random);
            expectLikeThePlainOne(plainBlur, driver, scene, random.between(1, 2), amount);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_P(BlurSweep, OfTheLongestLinesThatAFrameHas) {
    const BlurDriver driver = GetParam();
    Random random(108);
    for (const auto& [width, height] : {std::pair<int32_t, int32_t>{32760, 1}, {1, 32760}}) {
        const Mask mask = makeMask(MaskShape::kDense, width, height, random);
        const int32_t far = 32767 - 32760;
        const FrameRect rect = rectAt(width > 1 ? far : 0, width > 1 ? 0 : far, width, height);
        host::judge::JudgeOptions options = anyOptions(random);
        options.allowHuge = true;
        BlurScene scene(driver, options, rect, mask, random);
        expectLikeThePlainOne(plainBlur, driver, scene, 2, 16.0);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(BlurSweep, OfValuesBeyondFullScale) {
    const BlurDriver driver = GetParam();
    Random random(105);
    for (int round = 0; round < 30; ++round) {
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 40), random.between(1, 40), random);
        const FrameRect rect = rectAt(random.below(3), random.below(3), mask.width, mask.height);
        BlurScene scene(driver, anyOptions(random), rect, mask, random, Range::kWild);
        const double amount = random.chance(50) ? 2.0 + random.unit() * 20.0 : 301.0 + random.unit() * 600.0;
        expectLikeThePlainOne(plainBlur, driver, scene, random.between(1, 3), amount);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(BlurSweep, OfTheLargestValuesOnly) {
    const BlurDriver driver = GetParam();
    Random random(106);
    for (const double amount : {2.0, 20.0, 299.0, 350.5}) {
        BlurScene scene(driver, strictOptions(), wholeRect(700, 2), Mask(700, 2, 1), random);
        PlainPicture largest(driver.format, scene.src.width(), scene.src.height());
        const double value = driver.format == PF_PixelFormat_ARGB64 ? 65535.0 : 3.0e38;
        for (PlainPixel& pixel : largest.pixels) {
            const auto channel = static_cast<double>(static_cast<float>(value));
            pixel = {channel, channel, channel, channel};
        }
        write(largest, scene.src);
        expectLikeThePlainOne(plainBlur, driver, scene, 1, amount);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(BlurSweep, IsTheSameForEveryNumberOfIterations) {
    const BlurDriver driver = GetParam();
    PlainPicture first(driver.format, 0, 0);
    for (int iterations = 1; iterations <= 9; ++iterations) {
        Random random(107);
        const Mask mask = makeMask(MaskShape::kDense, 33, 31, random);
        BlurScene scene(driver, shuffledOptions(iterations, 3, static_cast<uint64_t>(iterations)),
                        wholeRect(33, 31), mask, random, Range::kWild);
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
