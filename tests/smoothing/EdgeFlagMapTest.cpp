// The flag map: which pairs it marks, in groups of four columns and in the columns left over.

#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"
#include "tests/smoothing/SmoothScenes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kovalune::test {
namespace {

constexpr int kRight = 1;
constexpr int kDown = 2;
constexpr int kFalling = 4;
constexpr int kRising = 8;

template <class Format>
void fill(HandMap& map, HandPicture& picture, int32_t threshold) {
    fillEdgeFlags<Format>(map.map(), picture.world(), SmoothOf<Format>::limitOf(threshold));
}

void fillAny(PF_PixelFormat format, HandMap& map, HandPicture& picture, int32_t threshold) {
    if (format == PF_PixelFormat_ARGB32) {
        fill<Argb8>(map, picture, threshold);
    } else if (format == PF_PixelFormat_ARGB64) {
        fill<Argb16>(map, picture, threshold);
    } else {
        fill<Argb32>(map, picture, threshold);
    }
}

class EdgeFlagsByFormat : public testing::TestWithParam<PF_PixelFormat> {
protected:
    static PF_PixelFormat format() { return GetParam(); }
    static double full() { return fullScale(format()); }

    /// Flags between two pixels side by side.
    static int flagsBetween(const PlainPixel& a, const PlainPixel& b, int32_t threshold = 10) {
        HandPicture picture(format(), 2, 1);
        picture.set(0, 0, a);
        picture.set(1, 0, b);
        HandMap map(2, 1);
        fillAny(format(), map, picture, threshold);
        return map.map()(0, 0);
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, EdgeFlagsByFormat,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128),
                         [](const auto& test) { return formatName(test.param); });

/// Flags of the cell at (x, y) where one pixel at (px, py) differs from all others.
int flagsAroundDot(int32_t x, int32_t y, int32_t px, int32_t py, int32_t width, int32_t height) {
    const bool isDot[2][2] = {{x == px && y == py, x + 1 == px && y == py},
                              {x == px && y + 1 == py, x + 1 == px && y + 1 == py}};
    const bool hasRight = x + 1 < width;
    const bool hasDown = y + 1 < height;
    int flags = 0;
    flags |= hasRight && isDot[0][0] != isDot[0][1] ? kRight : 0;
    flags |= hasDown && isDot[0][0] != isDot[1][0] ? kDown : 0;
    flags |= hasRight && hasDown && isDot[0][0] != isDot[1][1] ? kFalling : 0;
    flags |= hasRight && hasDown && isDot[1][0] != isDot[0][1] ? kRising : 0;
    return flags;
}

TEST_P(EdgeFlagsByFormat, StandAroundADotAnywhereInPicturesOfEverySmallSize) {
    for (int32_t height = 1; height <= 4; ++height) {
        for (int32_t width = 1; width <= 11; ++width) {
            for (int32_t dot = 0; dot < width * height; ++dot) {
                HandPicture picture(PlainPicture(format(), width, height));
                picture.set(dot % width, dot / width, {full(), full(), 0.0, 0.0});
                HandMap map(width, height);
                fillAny(format(), map, picture, 10);
                for (int32_t y = 0; y < height; ++y) {
                    for (int32_t x = 0; x < width; ++x) {
                        ASSERT_EQ(int{map.map()(x, y)},
                                  flagsAroundDot(x, y, dot % width, dot / width, width, height))
                            << width << " x " << height << ", dot " << dot << ", cell " << x << ", " << y;
                    }
                }
            }
        }
    }
}

TEST_P(EdgeFlagsByFormat, AreNoneInMarginsWhateverTheMemoryHeld) {
    for (int32_t width = 1; width <= 9; ++width) {
        Random random(1);
        HandPicture picture(randomPicture(format(), width, 3, random));
        HandMap map(width, 3);
        fillAny(format(), map, picture, 0);
        const int32_t rowCells = EdgeFlagMap::rowCells(width);
        EXPECT_EQ(rowCells % 4, 0);
        EXPECT_GE(rowCells, width + 5);
        for (int32_t y = -1; y <= 3; ++y) {
            for (int32_t x = -4; x < rowCells - 4; ++x) {
                if (y < 0 || y > 2 || x < 0 || x >= width) {
                    EXPECT_EQ(map.map()(x, y), 0) << x << ", " << y;
                }
            }
        }
    }
}

TEST_P(EdgeFlagsByFormat, NeedMoreThanTheLimitBetweenOpaquePixels) {
    // 10 of 255 is 1285 of 32768, truncated.
    const double limit = format() == PF_PixelFormat_ARGB32 ? 10 : 1285;
    const double third = std::floor(limit / 3);
    if (format() == PF_PixelFormat_ARGB128) {
        const auto exact = static_cast<double>(0.039215688F);
        const auto above = static_cast<double>(std::nextafter(0.039215688F, 1.0F));
        EXPECT_EQ(flagsBetween({1.0, 0.0, 0.0, 0.0}, {1.0, 0.0, exact, 0.0}), 0);
        EXPECT_EQ(flagsBetween({1.0, 0.0, 0.0, 0.0}, {1.0, 0.0, above, 0.0}), kRight);
        return;
    }
    const double middle = std::floor(full() / 2);
    const PlainPixel a = {full(), middle, middle, middle};
    const PlainPixel same = {full() - third, middle + third, middle - third, middle + limit - 3 * third};
    const PlainPixel above = {same.alpha - 1.0, same.red, same.green, same.blue};
    EXPECT_EQ(flagsBetween(a, same), 0);
    EXPECT_EQ(flagsBetween(a, above), kRight);
    EXPECT_EQ(flagsBetween(above, a), kRight);
}

TEST_P(EdgeFlagsByFormat, CountATransparentPixelAsAllZeros) {
    const PlainPixel clear = {0.0, full(), full() / 2, full()};
    const double limit = format() == PF_PixelFormat_ARGB64 ? 1285 : 10;
    PlainPixel faint = {1.0, limit - 3.0, 1.0, 1.0};
    PlainPixel seen = {2.0, limit - 3.0, 1.0, 1.0};
    if (format() == PF_PixelFormat_ARGB128) {
        faint = {static_cast<double>(0.039215688F), 0.0, 0.0, 0.0};
        seen = {faint.alpha, 0.0, faint.alpha / 64.0, 0.0};
    }
    EXPECT_EQ(flagsBetween(clear, {0.0, 0.0, 0.0, 0.0}), 0) << "two transparent pixels never differ";
    EXPECT_EQ(flagsBetween(clear, faint), 0);
    EXPECT_EQ(flagsBetween(faint, clear), 0);
    EXPECT_EQ(flagsBetween(clear, seen), kRight);
    EXPECT_EQ(flagsBetween(seen, clear), kRight);
}

TEST_P(EdgeFlagsByFormat, FollowTheThreshold) {
    const double unit = full() / 255.0;
    const PlainPixel a = {full(), 0.0, 0.0, 0.0};
    const auto level = [&](double value) {
        return PlainPixel{full(), std::ceil(value * unit * 32768.0) / 32768.0, 0.0, 0.0};
    };
    for (const int32_t threshold : {0, 1, 40, 254}) {
        EXPECT_EQ(flagsBetween(a, level(threshold + 1), threshold), kRight) << threshold;
        EXPECT_EQ(flagsBetween(a, level(threshold > 0 ? threshold - 1 : 0), threshold), 0) << threshold;
    }
}

TEST_P(EdgeFlagsByFormat, AgreeWithTheTwinOnRandomPictures) {
    Random random(31);
    for (int n = 0; n < 600; ++n) {
        const SmoothScene scene = randomSmoothScene(format(), SmoothMode::kPlain, random.between(1, 22),
                                                    random.between(1, 9), random);
        HandPicture picture(scene.picture);
        HandMap map(scene.picture.width, scene.picture.height);
        fillAny(format(), map, picture, scene.params.threshold);
        const PlainFlags expected = plainFlagMap(scene.picture, scene.params.threshold);
        for (int32_t y = 0; y < scene.picture.height; ++y) {
            for (int32_t x = 0; x < scene.picture.width; ++x) {
                ASSERT_EQ(map.map()(x, y), expected.at(x, y)) << x << ", " << y << " in " << scene.text;
            }
        }
    }
}

TEST(EdgeFlagMapFloat, SettlesPixelsThatAreTheSameInAllBits) {
    const double nan = std::nan("");
    HandPicture picture(PF_PixelFormat_ARGB128, 3, 1);
    picture.set(0, 0, {1.0, nan, 0.0, 0.0});
    picture.set(1, 0, {1.0, nan, 0.0, 0.0});
    picture.set(2, 0, {1.0, nan, 0.0, -0.0});
    HandMap map(3, 1);
    fillEdgeFlags<Argb32>(map.map(), picture.world(), -1.0F);
    EXPECT_EQ(map.map()(0, 0), 0);
    EXPECT_EQ(map.map()(1, 0), 0) << "a difference that is no number is below no limit";
    picture.set(1, 0, {1.0, 0.0, 0.0, 0.0});
    picture.set(2, 0, {1.0, 0.0, 0.0, -0.0});
    fillEdgeFlags<Argb32>(map.map(), picture.world(), -1.0F);
    EXPECT_EQ(map.map()(1, 0), kRight) << "zeros of both signs are not the same bits";
}

/// Neighbours side by side differ by 6, those across by 12: above the limit of 10 only on the falling diagonal.
class SlowGradient : public testing::Test {
protected:
    static std::vector<int> flagsOfFirstRow(int32_t width, int32_t jumpAt) {
        HandPicture picture(PF_PixelFormat_ARGB32, width, 2);
        for (int32_t y = 0; y < 2; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                picture.set(x, y, {255.0, 6.0 * (x + y), x > jumpAt ? 100.0 : 0.0, 0.0});
            }
        }
        HandMap map(width, 2);
        fill<Argb8>(map, picture, 10);
        std::vector<int> flags;
        for (int32_t x = 0; x < width; ++x) {
            flags.push_back(map.map()(x, 0));
        }
        return flags;
    }
};

TEST_F(SlowGradient, MarksDiagonalsAtTheLastColumnOfAGroupAndInLeftOverColumns) {
    EXPECT_EQ(flagsOfFirstRow(9, 99), (std::vector<int>{0, 0, 0, 4, 0, 0, 0, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(11, 99), (std::vector<int>{0, 0, 0, 4, 0, 0, 0, 4, 4, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(4, 99), (std::vector<int>{4, 4, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(2, 99), (std::vector<int>{4, 0}));
    EXPECT_EQ(flagsOfFirstRow(1, 99), (std::vector<int>{0}));
}

TEST_F(SlowGradient, MarksOtherDiagonalsOnlyBehindAnEdgeOfTheirGroup) {
    EXPECT_EQ(flagsOfFirstRow(9, 0), (std::vector<int>{13, 4, 4, 4, 0, 0, 0, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(9, 1), (std::vector<int>{4, 13, 4, 4, 0, 0, 0, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(9, 2), (std::vector<int>{0, 4, 13, 4, 0, 0, 0, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(9, 3), (std::vector<int>{0, 0, 4, 13, 0, 0, 0, 4, 0}));
    EXPECT_EQ(flagsOfFirstRow(9, 4), (std::vector<int>{0, 0, 0, 4, 13, 4, 4, 4, 0}));
}

} // namespace
} // namespace kovalune::test
