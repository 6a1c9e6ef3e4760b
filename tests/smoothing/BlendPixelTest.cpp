// The one write operation of the smoothing, in the three formats.

#include "effect/smoothing/SmoothOf.h"
#include "tests/reference/PlainSmooth.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kovalune::test {
namespace {

template <class Format>
void expectPixel(const typename Format::Pixel& found, const typename Format::Pixel& expected) {
    EXPECT_EQ(found.alpha, expected.alpha);
    EXPECT_EQ(found.red, expected.red);
    EXPECT_EQ(found.green, expected.green);
    EXPECT_EQ(found.blue, expected.blue);
}

template <class Format>
void expectBlend(typename Format::Pixel target, const typename Format::Pixel& colour,
                 typename SmoothOf<Format>::Weight weight, const typename Format::Pixel& expected) {
    blendPixel<Format>(target, colour, weight);
    expectPixel<Format>(target, expected);
}

TEST(Blend8, OfEqualAlphasIsAMeanThatRounds) {
    expectBlend<Argb8>({255, 100, 0, 255}, {255, 200, 255, 0}, 32767, {255, 150, 127, 128});
    expectBlend<Argb8>({9, 100, 0, 255}, {9, 200, 1, 0}, 6553, {9, 110, 0, 229});
    expectBlend<Argb8>({0, 100, 0, 255}, {0, 200, 255, 0}, 32767, {0, 150, 127, 128});
}

TEST(Blend16, OfEqualAlphasIsAMeanThatRounds) {
    expectBlend<Argb16>({32768, 0, 32768, 1}, {32768, 32768, 0, 2}, 32767, {32768, 16384, 16384, 1});
    expectBlend<Argb16>({5, 1000, 0, 0}, {5, 2000, 1, 0}, 49151, {5, 1750, 1, 0});
}

TEST(Blend32, OfEqualAlphasIsAMean) {
    expectBlend<Argb32>({1.0F, 0.5F, -2.0F, 8.0F}, {1.0F, 1.0F, 2.0F, 0.0F}, 0.25F,
                        {1.0F, 0.625F, -1.0F, 6.0F});
}

TEST(Blend8, OfATransparentColourLowersAlphaAlone) {
    expectBlend<Argb8>({200, 1, 2, 3}, {0, 90, 91, 92}, 32767, {100, 1, 2, 3});
    expectBlend<Argb8>({200, 1, 2, 3}, {0, 90, 91, 92}, 65535, {0, 1, 2, 3});
    expectBlend<Argb8>({3, 1, 2, 3}, {0, 90, 91, 92}, 32767, {2, 1, 2, 3});
}

TEST(Blend16, OfATransparentColourLowersAlphaAlone) {
    expectBlend<Argb16>({32768, 1, 2, 3}, {0, 90, 91, 92}, 16384, {24576, 1, 2, 3});
}

TEST(Blend32, OfATransparentColourLowersAlphaAlone) {
    expectBlend<Argb32>({0.5F, 1.0F, 2.0F, 3.0F}, {0.0F, 9.0F, 9.0F, 9.0F}, 0.25F,
                        {0.375F, 1.0F, 2.0F, 3.0F});
}

TEST(Blend8, OverATransparentPixelTakesTheColourWhole) {
    expectBlend<Argb8>({0, 1, 2, 3}, {200, 90, 91, 92}, 32767, {100, 90, 91, 92});
    expectBlend<Argb8>({0, 1, 2, 3}, {200, 90, 91, 92}, 0, {0, 90, 91, 92});
}

TEST(Blend16, OverATransparentPixelTakesTheColourWhole) {
    expectBlend<Argb16>({0, 1, 2, 3}, {32768, 900, 910, 32768}, 10922, {5461, 900, 910, 32768});
    expectBlend<Argb16>({0, 1, 2, 3}, {32768, 900, 910, 32768}, 0, {0, 900, 910, 32768});
}

TEST(Blend32, OverATransparentPixelTakesTheColourWhole) {
    expectBlend<Argb32>({0.0F, 1.0F, 2.0F, 3.0F}, {0.5F, 9.0F, 8.0F, 7.0F}, 0.25F,
                        {0.125F, 9.0F, 8.0F, 7.0F});
    expectBlend<Argb32>({0.0F, 1.0F, 2.0F, 3.0F}, {0.5F, 9.0F, 8.0F, 7.0F}, 0.0F, {0.0F, 9.0F, 8.0F, 7.0F});
}

TEST(Blend8, OfTwoAlphasWeighsColoursByWhatEachLends) {
    // Shares 100 * 32768 and 200 * 32767: two thirds of the colour.
    expectBlend<Argb8>({100, 30, 0, 255}, {200, 60, 255, 0}, 32767, {150, 50, 170, 85});
    expectBlend<Argb8>({1, 0, 0, 0}, {255, 255, 255, 255}, 65535, {255, 255, 255, 255});
    expectBlend<Argb8>({255, 0, 7, 255}, {1, 255, 255, 0}, 65535, {1, 255, 255, 0});
}

TEST(Blend16, OfTwoAlphasWeighsColoursByWhatEachLends) {
    expectBlend<Argb16>({8192, 0, 32768, 16384}, {24576, 32768, 0, 16384}, 32767,
                        {16384, 24576, 8192, 16384});
    expectBlend<Argb16>({1, 0, 0, 0}, {32768, 32768, 32768, 32768}, 65535, {32768, 32768, 32768, 32768});
}

TEST(Blend32, OfTwoAlphasWeighsColoursByWhatEachLends) {
    // 0.75 * 0.5 against 0.25 * 0.5.
    expectBlend<Argb32>({0.75F, 1.0F, 4.0F, 0.0F}, {0.25F, 5.0F, 0.0F, 8.0F}, 0.5F, {0.5F, 2.0F, 3.0F, 2.0F});
}

TEST(Blend8, OfNoWeightKeepsEveryValue) {
    for (int value = 0; value <= 255; ++value) {
        const auto v = static_cast<uint8_t>(value);
        expectBlend<Argb8>({255, v, v, v}, {255, 1, 128, 254}, 0, {255, v, v, v});
        if (value != 0) {
            expectBlend<Argb8>({v, v, 7, v}, {128, 1, 128, 254}, 0, {v, v, 7, v});
            expectBlend<Argb8>({v, v, 7, v}, {0, 1, 128, 254}, 0, {v, v, 7, v});
        }
    }
}

TEST(Blend16, OfNoWeightKeepsEveryValue) {
    for (int value = 1; value <= 32768; value += 7) {
        const auto v = static_cast<uint16_t>(value);
        expectBlend<Argb16>({32768, v, v, v}, {32768, 1, 128, 254}, 0, {32768, v, v, v});
        expectBlend<Argb16>({v, v, 7, v}, {128, 1, 128, 254}, 0, {v, v, 7, v});
        expectBlend<Argb16>({v, v, 7, v}, {0, 1, 128, 254}, 0, {v, v, 7, v});
    }
}

TEST(Blend8, OfFullWeightTakesEveryValue) {
    for (int value = 0; value <= 255; ++value) {
        const auto v = static_cast<uint8_t>(value);
        expectBlend<Argb8>({255, 7, 8, 9}, {255, v, v, v}, 65535, {255, v, v, v});
        expectBlend<Argb8>({0, 7, 8, 9}, {255, v, v, v}, 65535, {255, v, v, v});
    }
}

template <class Format>
class BlendAgainstTwin : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(BlendAgainstTwin, AllFormats);

TYPED_TEST(BlendAgainstTwin, AgreesOnRandomPixels) {
    using Pixel = typename TypeParam::Pixel;
    using Channel = typename TypeParam::Channel;
    using Weight = typename SmoothOf<TypeParam>::Weight;
    const bool isFloat = sizeof(Channel) == sizeof(float);
    const double full = static_cast<double>(TypeParam::kFullScale);
    Random random(5);
    const auto channel = [&] {
        const double value = random.chance(20) ? 0.0 : random.chance(20) ? full : random.unit() * full;
        return static_cast<Channel>(value);
    };
    for (int n = 0; n < 100000; ++n) {
        Pixel target = {channel(), channel(), channel(), channel()};
        Pixel colour = {channel(), channel(), channel(), channel()};
        if (random.chance(25)) {
            colour.alpha = target.alpha;
        }
        const auto weight = static_cast<Weight>(isFloat            ? random.unit()
                                                : random.chance(5) ? 65535
                                                                   : random.below(65536));
        PlainPixel expected = {double(target.alpha), double(target.red), double(target.green),
                               double(target.blue)};
        plainBlend(isFloat ? PF_PixelFormat_ARGB128
                           : (sizeof(Channel) == 1 ? PF_PixelFormat_ARGB32 : PF_PixelFormat_ARGB64),
                   expected,
                   {double(colour.alpha), double(colour.red), double(colour.green), double(colour.blue)},
                   double(weight));
        blendPixel<TypeParam>(target, colour, weight);
        ASSERT_EQ(double(target.alpha), expected.alpha);
        ASSERT_EQ(double(target.red), expected.red);
        ASSERT_EQ(double(target.green), expected.green);
        ASSERT_EQ(double(target.blue), expected.blue);
    }
}

TEST(SmallWeight, GrowsWithTheStrengthUpToSeventy) {
    EXPECT_EQ(SmoothOf<Argb8>::smallWeight(70), 6553);
    EXPECT_EQ(SmoothOf<Argb16>::smallWeight(100), 6553);
    EXPECT_EQ(SmoothOf<Argb16>::smallWeight(35), 3276);
    EXPECT_EQ(SmoothOf<Argb8>::smallWeight(1), 93);
    EXPECT_EQ(SmoothOf<Argb32>::smallWeight(70), 0.1F);
    EXPECT_EQ(SmoothOf<Argb32>::smallWeight(100), 0.1F);
    EXPECT_EQ(SmoothOf<Argb32>::smallWeight(35), 0.05F);
}

TEST(CrossWeight, IsAQuarterOfAPixelAtHalfStrength) {
    EXPECT_EQ(SmoothOf<Argb8>::crossWeight(100), 16383);
    EXPECT_EQ(SmoothOf<Argb16>::crossWeight(70), 11468);
    EXPECT_EQ(SmoothOf<Argb32>::crossWeight(100), 0.25F);
    EXPECT_EQ(SmoothOf<Argb32>::crossWeight(70), 0.175F);
}

} // namespace
} // namespace kovalune::test
