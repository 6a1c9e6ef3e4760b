// All blurs against their plain twins, bit for bit: pictures, masks, amounts and hosts of many kinds.
#include "tests/blur/BlurDrivers.h"
#include "tests/support/Effort.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class BlurSweepTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurSweepTest, testing::ValuesIn(kBlurDrivers), driverName);

/// 1 to 9 iterations in any order on up to four threads, rows of any length.
host::judge::JudgeOptions anyOptions(Random& random) {
    host::judge::JudgeOptions options =
        shuffledOptions(random.between(1, 9), random.between(1, 4), random.next());
    options.rowPadding = 4 * random.below(7);
    options.dataOffset = 4 * random.below(4);
    return options;
}

Mask anyMask(int32_t width, int32_t height, Random& random) {
    const int32_t shape = random.below(static_cast<int32_t>(kMaskShapes.size()));
    return makeMask(kMaskShapes[static_cast<std::size_t>(shape)], width, height, random);
}

void expectLikeThePlainOne(BlurScene& scene, int32_t repeat, double amount) {
    SCOPED_TRACE(describe(scene, repeat, amount));
    const PlainPicture source = read(scene.src);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    scene.plain(repeat, amount, source, dst, tmp);
    ASSERT_EQ(scene.run(repeat, amount), PF_Err_NONE);
    ASSERT_EQ(difference(dst, scene.dst), "") << "in the destination";
    ASSERT_EQ(difference(tmp, scene.tmp), "") << "in the scratch world";
    ASSERT_EQ(difference(source, scene.src), "") << "the source was written";
}

/// A scene of this mask in any host, the whole picture its area.
void expectWholeLikeThePlainOne(const BlurDriver& driver, const Mask& mask, Random& random, int32_t repeat,
                                double amount) {
    const Mask keep = anyMask(mask.width, mask.height, random);
    BlurScene scene(driver, anyOptions(random), wholeRect(mask.width, mask.height), mask, keep, random);
    expectLikeThePlainOne(scene, repeat, amount);
}

TEST_P(BlurSweepTest, OfEveryMaskShapeInManySizes) {
    Random random(101);
    for (int round = 0; round < cases(8); ++round) {
        for (const MaskShape shape : kMaskShapes) {
            const int32_t width = random.between(1, 70);
            const int32_t height = random.between(1, 70);
            const FrameRect rect = rectAt(random.below(4), random.below(4), width, height);
            BlurScene scene(GetParam(), anyOptions(random), rect, makeMask(shape, width, height, random),
                            anyMask(width, height, random), random);
            ASSERT_NO_FATAL_FAILURE(
                expectLikeThePlainOne(scene, random.between(1, 4), 2.0 + random.unit() * 30.0));
        }
    }
}

TEST_P(BlurSweepTest, OfFlatColoursWithTransparentHoles) {
    Random random(102);
    for (int round = 0; round < cases(30); ++round) {
        const Mask mask = anyMask(random.between(1, 50), random.between(1, 50), random);
        BlurScene scene(GetParam(), anyOptions(random), wholeRect(mask.width, mask.height), mask,
                        anyMask(mask.width, mask.height, random), random);
        write(flatPicture(GetParam().format, scene.src.width(), scene.src.height(), random), scene.src);
        ASSERT_NO_FATAL_FAILURE(
            expectLikeThePlainOne(scene, random.between(1, 5), 2.0 + random.unit() * 12.0));
    }
}

TEST_P(BlurSweepTest, OfEveryRepeat) {
    Random random(103);
    for (int32_t repeat = 0; repeat <= 10; repeat += kSanitized ? 3 : 1) {
        for (const double amount : {1.99, 2.0, 2.5, 9.0, 33.25}) {
            const Mask mask = anyMask(random.between(5, 30), random.between(5, 30), random);
            ASSERT_NO_FATAL_FAILURE(expectWholeLikeThePlainOne(GetParam(), mask, random, repeat, amount));
            const Mask blobs = makeMask(MaskShape::kBlobs, mask.width, mask.height, random);
            ASSERT_NO_FATAL_FAILURE(expectWholeLikeThePlainOne(GetParam(), blobs, random, repeat, amount));
        }
    }
}

TEST_P(BlurSweepTest, OfAmountsWithATailInSmallPictures) {
    Random random(104);
    for (const double amount : {299.5, 300.0, 300.5, 350.5, 512.0, 777.25, 1001.0}) {
        for (const MaskShape shape : {MaskShape::kFull, MaskShape::kDense, MaskShape::kBlobs,
                                      MaskShape::kSingle, MaskShape::kCheckerboard}) {
            const Mask mask = makeMask(shape, random.between(1, 40), random.between(1, 40), random);
            ASSERT_NO_FATAL_FAILURE(
                expectWholeLikeThePlainOne(GetParam(), mask, random, random.between(1, 3), amount));
        }
    }
}

TEST_P(BlurSweepTest, OfLinesLongerThanTheCore) {
    Random random(105);
    const std::pair<int32_t, int32_t> sizes[] = {{760, 2}, {2, 760}, {350, 3}, {1, 1100}, {1100, 1}};
    for (const auto& [width, height] : sizes) {
        for (const double amount : {120.0, 310.5, 350.5, 501.0, 1001.0}) {
            // Few gaps or none, so that runs grow beyond the core as well.
            Mask mask(width, height, 1);
            mask.shape = "with few gaps";
            const bool isFull = random.chance(40);
            for (uint8_t& element : mask.elements) {
                element = static_cast<uint8_t>(isFull || !random.chance(1));
            }
            ASSERT_NO_FATAL_FAILURE(
                expectWholeLikeThePlainOne(GetParam(), mask, random, random.between(1, 2), amount));
        }
    }
}

/// Across and down, as long as a rectangle can be.
TEST_P(BlurSweepTest, OfTheLongestLinesThatAFrameHas) {
    Random random(106);
    for (const auto& [width, height] : {std::pair<int32_t, int32_t>{32760, 1}, {1, 32760}}) {
        const int32_t far = 32767 - 32760;
        const FrameRect rect = rectAt(width > 1 ? far : 0, width > 1 ? 0 : far, width, height);
        host::judge::JudgeOptions options = anyOptions(random);
        options.allowHuge = true;
        BlurScene scene(GetParam(), options, rect, makeMask(MaskShape::kDense, width, height, random),
                        makeMask(MaskShape::kDense, width, height, random), random);
        ASSERT_NO_FATAL_FAILURE(expectLikeThePlainOne(scene, 2, 16.0));
    }
}

TEST_P(BlurSweepTest, OfValuesBeyondFullScale) {
    Random random(107);
    for (int round = 0; round < cases(40); ++round) {
        const Mask mask = anyMask(random.between(1, 40), random.between(1, 40), random);
        const FrameRect rect = rectAt(random.below(3), random.below(3), mask.width, mask.height);
        BlurScene scene(GetParam(), anyOptions(random), rect, mask, anyMask(mask.width, mask.height, random),
                        random, Range::kWild);
        const double amount = random.chance(50) ? 2.0 + random.unit() * 20.0 : 301.0 + random.unit() * 600.0;
        ASSERT_NO_FATAL_FAILURE(expectLikeThePlainOne(scene, random.between(1, 3), amount));
    }
}

/// What no channel of the format goes beyond.
void paintLargest(BlurScene& scene) {
    const auto value = scene.driver.format == PF_PixelFormat_ARGB64 ? 65535.0 : static_cast<double>(3.0e38F);
    paint(scene.src, {value, value, value, value});
}

TEST_P(BlurSweepTest, OfTheLargestValuesOnly) {
    Random random(108);
    for (const double amount : {2.0, 20.0, 299.0, 350.5}) {
        BlurScene scene(GetParam(), Mask(700, 2, 1), random);
        paintLargest(scene);
        ASSERT_NO_FATAL_FAILURE(expectLikeThePlainOne(scene, 1, amount));
    }
}

/// In the longest line the streaks of a boundary's window scan sum up to more than 32 bits hold.
TEST_P(BlurSweepTest, OfTheLargestValuesInTheLongestLines) {
    Random random(109);
    for (const auto& [width, height] : {std::pair<int32_t, int32_t>{32760, 1}, {1, 32760}}) {
        host::judge::JudgeOptions options = anyOptions(random);
        options.allowHuge = true;
        BlurScene scene(GetParam(), options, wholeRect(width, height), Mask(width, height, 1),
                        makeMask(MaskShape::kDense, width, height, random), random);
        paintLargest(scene);
        ASSERT_NO_FATAL_FAILURE(expectLikeThePlainOne(scene, 1, 9.0));
    }
}

TEST_P(BlurSweepTest, IsTheSameForEveryNumberOfIterations) {
    PlainPicture first(GetParam().format, 0, 0);
    for (int iterations = 1; iterations <= 9; ++iterations) {
        Random random(110);
        const Mask mask = makeMask(MaskShape::kDense, 33, 31, random);
        const Mask keep = makeMask(MaskShape::kBlobs, 33, 31, random);
        BlurScene scene(GetParam(), shuffledOptions(iterations, 3, static_cast<uint64_t>(iterations)),
                        wholeRect(33, 31), mask, keep, random, Range::kWild);
        SCOPED_TRACE(describe(scene, 2, 12.0));
        ASSERT_EQ(scene.run(2, 12.0), PF_Err_NONE);
        const PlainPicture result = read(scene.dst);
        if (iterations == 1) {
            first = result;
        }
        ASSERT_EQ(difference(first, result), "");
    }
}

} // namespace
} // namespace kovalune::test
