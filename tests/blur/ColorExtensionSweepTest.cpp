// The colour extension against its plain twin, bit for bit: masks, reaches and hosts of many kinds.
#include "tests/blur/ColorExtensionScene.h"
#include "tests/support/Effort.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class ExtensionSweep : public testing::TestWithParam<ExtensionDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, ExtensionSweep, testing::ValuesIn(kExtensionDrivers), extensionName);

/// 1 to 8 iterations in any order on up to four threads, rows of any length.
host::judge::JudgeOptions anyOptions(Random& random) {
    host::judge::JudgeOptions options =
        shuffledOptions(random.between(1, 8), random.between(1, 4), random.next());
    options.rowPadding = 4 * random.below(7);
    options.dataOffset = 4 * random.below(4);
    return options;
}

double anyReach(Random& random) {
    constexpr std::array fixed = {1.0, 1.5, 2.0, 3.0, 31.0, 998.5, 999.0, 1000.0, 1000.5, 1001.0};
    if (random.chance(25)) {
        return fixed[static_cast<std::size_t>(random.below(static_cast<int>(fixed.size())))];
    }
    return 1.0 + random.unit() * (random.chance(70) ? 40.0 : 1000.0);
}

Mask without(Mask mask, const Mask& other) {
    for (std::size_t i = 0; i < mask.elements.size(); ++i) {
        mask.elements[i] = other.elements[i] != 0 ? uint8_t{0} : mask.elements[i];
    }
    return mask;
}

Mask with(Mask mask, const Mask& other) {
    for (std::size_t i = 0; i < mask.elements.size(); ++i) {
        mask.elements[i] = std::max(mask.elements[i], other.elements[i]);
    }
    return mask;
}

/// Round cores: the nearest entry of a row or column wanders along their borders.
Mask discs(int32_t width, int32_t height, Random& random) {
    Mask mask(width, height);
    for (int n = random.between(1, 3); n > 0; --n) {
        const int32_t centerX = random.below(width);
        const int32_t centerY = random.below(height);
        const int32_t radius = random.between(0, std::max(width, height) / 3);
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                const int32_t dx = x - centerX;
                const int32_t dy = y - centerY;
                if (dx * dx + dy * dy <= radius * radius) {
                    mask.at(x, y) = 1;
                }
            }
        }
    }
    return mask;
}

Mask fewPixels(int32_t width, int32_t height, Random& random) {
    Mask mask(width, height);
    for (int n = random.between(1, 8); n > 0; --n) {
        mask.at(random.below(width), random.below(height)) = 1;
    }
    return mask;
}

void expectAllLikeThePlainOne(const ExtensionDriver& driver, const PlainExtension& job, Random& random,
                              Range range = Range::kOrdinary) {
    ExtensionScene scene(driver, anyOptions(random), job, random, range);
    expectLikeThePlainOne(driver, scene);
}

TEST_P(ExtensionSweep, OfEveryPairOfMaskShapes) {
    Random random(201);
    for (const MaskShape seedShape : kMaskShapes) {
        for (const MaskShape limitShape : kMaskShapes) {
            for (int round = 0; round < 3; ++round) {
                const int32_t width = random.between(1, 70);
                const int32_t height = random.between(1, 70);
                const Mask seed = makeMask(seedShape, width, height, random);
                Mask limit = makeMask(limitShape, width, height, random);
                if (round > 0) {
                    limit = round == 1 ? with(limit, seed) : without(limit, seed);
                }
                const FrameRect rect = rectAt(random.below(4), random.below(4), width, height);
                const PlainExtension job = {rect, seed, limit, anyReach(random), random.chance(50)};
                expectAllLikeThePlainOne(GetParam(), job, random);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST_P(ExtensionSweep, OfFewCoresInAWideArea) {
    Random random(202);
    for (int round = 0; round < cases(250); ++round) {
        const int32_t width = random.between(1, 70);
        const int32_t height = random.between(1, 70);
        Mask seed = random.chance(50) ? discs(width, height, random) : fewPixels(width, height, random);
        if (random.chance(30)) {
            seed = without(seed, fewPixels(width, height, random));
        }
        Mask limit =
            makeMask(random.chance(70) ? MaskShape::kFull : MaskShape::kDense, width, height, random);
        if (random.chance(50)) {
            limit = without(limit, fewPixels(width, height, random));
        }
        const double reach = 1.0 + random.unit() * (random.chance(60) ? 20.0 : 80.0);
        const PlainExtension job = {wholeRect(width, height), seed, limit, reach, random.chance(50)};
        expectAllLikeThePlainOne(GetParam(), job, random);
        if (HasFatalFailure()) {
            return;
        }
    }
}

/// What lies idle between cores is not gone through, and columns are looked through 256 at a time.
TEST_P(ExtensionSweep, OfCoresFarApart) {
    Random random(208);
    for (int round = 0; round < cases(25); ++round) {
        const int32_t width = random.between(200, 330);
        const int32_t height = random.between(40, 110);
        const Mask seed = with(fewPixels(width, height, random), fewPixels(width, height, random));
        Mask limit(width, height, 1);
        for (int n = random.below(3); n > 0; --n) {
            limit = without(limit, fewPixels(width, height, random));
        }
        const PlainExtension job = {wholeRect(width, height), seed, limit, random.unit() * 7.0,
                                    random.chance(50)};
        expectAllLikeThePlainOne(GetParam(), job, random);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ExtensionSweep, OfLinesLongerThanTheLargestReach) {
    Random random(203);
    const std::pair<int32_t, int32_t> sizes[] = {{2300, 2}, {2, 2300}, {1500, 3}, {3, 1500}, {1050, 9}};
    for (const auto& [width, height] : sizes) {
        for (const double reach : {300.5, 999.0, 1000.0, 1001.0}) {
            for (const bool stopAtGap : {false, true}) {
                const Mask limit = without(Mask(width, height, 1), fewPixels(width, height, random));
                const PlainExtension job = {wholeRect(width, height), fewPixels(width, height, random), limit,
                                            reach, stopAtGap};
                expectAllLikeThePlainOne(GetParam(), job, random);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST_P(ExtensionSweep, OfAWholePictureAtLargeReach) {
    Random random(204);
    for (const double reach : {150.0, 1001.0}) {
        const PlainExtension job = {wholeRect(240, 200), discs(240, 200, random), Mask(240, 200, 1), reach,
                                    true};
        expectAllLikeThePlainOne(GetParam(), job, random);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ExtensionSweep, OfValuesBeyondFullScale) {
    Random random(205);
    for (int round = 0; round < cases(60); ++round) {
        const int32_t width = random.between(1, 40);
        const int32_t height = random.between(1, 40);
        const PlainExtension job = {rectAt(random.below(3), random.below(3), width, height),
                                    makeMask(MaskShape::kSparse, width, height, random),
                                    makeMask(MaskShape::kDense, width, height, random), anyReach(random),
                                    random.chance(50)};
        expectAllLikeThePlainOne(GetParam(), job, random, Range::kWild);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ExtensionSweep, OfTheLongestLinesThatAFrameHas) {
    Random random(206);
    for (const auto& [width, height] : {std::pair<int32_t, int32_t>{32760, 1}, {1, 32760}}) {
        Mask seed(width, height);
        for (int n = 0; n < 9; ++n) {
            seed.elements[static_cast<std::size_t>(random.below(32760))] = 1;
        }
        host::judge::JudgeOptions options = anyOptions(random);
        options.allowHuge = true;
        const PlainExtension job = {wholeRect(width, height), seed, Mask(width, height, 1), 60.0, true};
        ExtensionScene scene(GetParam(), options, job, random);
        expectLikeThePlainOne(GetParam(), scene);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ExtensionSweep, IsTheSameForEveryNumberOfIterations) {
    PlainPicture first(GetParam().format, 0, 0);
    for (int iterations = 1; iterations <= 9; ++iterations) {
        Random random(207);
        const PlainExtension job = {wholeRect(45, 41), makeMask(MaskShape::kSparse, 45, 41, random),
                                    makeMask(MaskShape::kDense, 45, 41, random), 17.0, false};
        ExtensionScene scene(GetParam(), shuffledOptions(iterations, 3, static_cast<uint64_t>(iterations)),
                             job, random, Range::kWild);
        ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
        const PlainPicture result = read(scene.dst);
        if (iterations == 1) {
            first = result;
        }
        ASSERT_EQ(difference(first, result), "") << iterations << " iterations";
    }
}

TEST(ExtensionLengths, OfDifferentSquaresDifferAsFloatsToo) {
    float before = 0.0F;
    for (int32_t squared = 1; squared <= 1000 * 1000; ++squared) {
        const auto length = static_cast<float>(std::sqrt(static_cast<double>(squared)));
        ASSERT_LT(before, length) << squared;
        before = length;
    }
    EXPECT_EQ(before, 1000.0F);
}

} // namespace
} // namespace kovalune::test
