// Pictures whose colours are linear light: the curve, the way to the host and back, and what stays.

#include "effect/Kovalune.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "render/samples/SampleScale.h"
#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kovalune::test {

using namespace pictures;

namespace {

/// By the C library, in more digits.
double otherCurve(double light) {
    const auto size = static_cast<long double>(std::abs(light));
    const long double value = size <= 0.0031308L ? 12.92L * size : 1.055L * std::pow(size, 1 / 2.4L) - 0.055L;
    return static_cast<double>(light < 0 ? -value : value);
}

double otherWayBack(double value) {
    const auto size = static_cast<long double>(std::abs(value));
    const long double light = size <= 0.04045L ? size / 12.92L : std::pow((size + 0.055L) / 1.055L, 2.4L);
    return static_cast<double>(value < 0 ? -light : light);
}

Picture linear(Picture picture) {
    picture.isLinear = true;
    return picture;
}

Picture grey(SampleType type, const std::vector<double>& values) {
    return linear(pictureWith(type, Channels::kGrey, static_cast<uint32_t>(values.size()), values));
}

PictureForm formOf(const Picture& picture) {
    return {picture.sampleType, picture.alphaKind, picture.isLinear};
}

TEST(LightCurve, IsTheOneOfSrgbMirroredAndContinued) {
    constexpr double kNear = 4e-16;
    for (int i = -3000; i <= 3000; ++i) {
        const double x = i / 1000.0;
        EXPECT_NEAR(srgbOfLinear(x), otherCurve(x), kNear * 3) << x;
        EXPECT_NEAR(linearOfSrgb(x), otherWayBack(x), kNear * 16) << x;
        EXPECT_EQ(srgbOfLinear(-x), -srgbOfLinear(x));
        EXPECT_EQ(linearOfSrgb(-x), -linearOfSrgb(x));
    }
    EXPECT_EQ(srgbOfLinear(0.0), 0.0);
    EXPECT_EQ(static_cast<float>(srgbOfLinear(1.0)), 1.0F);
    EXPECT_EQ(linearOfSrgb(1.0), 1.0);
    EXPECT_GT(srgbOfLinear(8.0), 2.0);
    EXPECT_TRUE(std::isnan(srgbOfLinear(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_EQ(linearOfSrgb(std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
}

TEST(LinearLight, EveryWholeNumberGoesInThroughTheCurveInOneRounding) {
    const Picture sixteen = grey(SampleType::kUint16, countedValues(65536));
    const host::Image in8 = imageOf(sixteen, PF_PixelFormat_ARGB32);
    const host::Image in16 = imageOf(sixteen, PF_PixelFormat_ARGB64);
    const host::Image in32 = imageOf(sixteen, PF_PixelFormat_ARGB128);
    for (A_long x = 0; x < 65536; ++x) {
        const double value = srgbOfLinear(x / 65535.0);
        ASSERT_EQ(in8.at<PF_Pixel>(x, 0).red, std::floor(value * 255 + 0.5)) << x;
        ASSERT_EQ(in16.at<PF_Pixel16>(x, 0).green, std::floor(value * 32768 + 0.5)) << x;
        ASSERT_EQ(in32.at<PF_PixelFloat>(x, 0).blue, static_cast<float>(value)) << x;
        ASSERT_EQ(in8.at<PF_Pixel>(x, 0).alpha, 255);
    }
}

TEST(LinearLight, AlphaIsNoLightAndPremultipliedColoursAreDividedFirst) {
    Picture picture = linear(pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 2,
                                         {0.125, 0.25, -0.125, 0.5, 0.125, 0.25, 0.5, 0}));
    picture.alphaKind = AlphaKind::kPremultiplied;
    const host::Image image = imageOf(picture, PF_PixelFormat_ARGB128);
    const auto& half = image.at<PF_PixelFloat>(0, 0);
    EXPECT_EQ(half.alpha, 0.5F);
    EXPECT_EQ(half.red, static_cast<float>(srgbOfLinear(0.25)));
    EXPECT_EQ(half.green, static_cast<float>(srgbOfLinear(0.5)));
    EXPECT_EQ(half.blue, static_cast<float>(-srgbOfLinear(0.25)));
    const auto& clear = image.at<PF_PixelFloat>(1, 0);
    EXPECT_EQ(clear.alpha, 0.0F);
    EXPECT_EQ(clear.red, static_cast<float>(srgbOfLinear(0.125)));
}

TEST(LinearLight, WhatTheEffectLeftKeepsItsFileValue) {
    for (const SampleType type :
         {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf, SampleType::kFloat}) {
        for (const AlphaKind kind : {AlphaKind::kStraight, AlphaKind::kPremultiplied}) {
            Picture picture = linear(randomPicture(type, Channels::kRgbAlpha, 31, 9, 5));
            picture.alphaKind = kind;
            for (const PF_PixelFormat format :
                 {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
                const host::Image image = imageOf(picture, format);
                EXPECT_TRUE(pictureOf(image, image, picture, formOf(picture)).samples == picture.samples);
            }
        }
    }
}

TEST(LinearLight, ChangedSamplesComeBackInOneRounding) {
    const Picture picture = grey(SampleType::kUint16, std::vector<double>(32769, 0));
    host::Image image = imageOf(picture, PF_PixelFormat_ARGB64);
    host::Image result = image;
    for (A_long x = 0; x <= 32768; ++x) {
        auto& pixel = result.at<PF_Pixel16>(x, 0);
        pixel.red = pixel.green = pixel.blue = static_cast<A_u_short>(x);
        image.at<PF_Pixel16>(x, 0).red = image.at<PF_Pixel16>(x, 0).green = image.at<PF_Pixel16>(x, 0).blue =
            static_cast<A_u_short>(x == 0 ? 1 : 0);
    }
    const std::vector<double> words = valuesOf(pictureOf(result, image, picture, formOf(picture)));
    PictureForm halves = formOf(picture);
    halves.sampleType = SampleType::kHalf;
    const Picture inHalf = pictureOf(result, image, picture, halves);
    for (std::size_t x = 0; x <= 32768; ++x) {
        const double light = linearOfSrgb(static_cast<double>(x) / 32768);
        ASSERT_EQ(words[x], std::floor(light * 65535 + 0.5)) << x;
        ASSERT_EQ(inHalf.sample<uint16_t>(x), halfOfDouble(light)) << x;
    }
}

TEST(LinearLight, ChangedColoursAreMultipliedAfterTheCurve) {
    Picture picture = linear(pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {0, 0, 0, 0.5}));
    picture.alphaKind = AlphaKind::kPremultiplied;
    const host::Image image = imageOf(picture, PF_PixelFormat_ARGB128);
    host::Image result = image;
    result.at<PF_PixelFloat>(0, 0) = {0.5F, 0.5F, 2.0F, -0.25F};
    const Picture written = pictureOf(result, image, picture, formOf(picture));
    EXPECT_EQ(written.sample<float>(0), static_cast<float>(linearOfSrgb(0.5) * 0.5));
    EXPECT_EQ(written.sample<float>(1), static_cast<float>(linearOfSrgb(2.0) * 0.5));
    EXPECT_EQ(written.sample<float>(2), static_cast<float>(linearOfSrgb(-0.25) * 0.5));
    EXPECT_EQ(written.sample<float>(3), 0.5F);
}

TEST(LinearLight, IsShownThroughTheCurve) {
    Picture picture = linear(pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 1, {51, 102, 0, 102}));
    picture.alphaKind = AlphaKind::kPremultiplied;
    const Picture shown = displayed(picture);
    EXPECT_FALSE(shown.isLinear);
    EXPECT_EQ(shown.sampleType, SampleType::kFloat);
    EXPECT_EQ(shown.alphaKind, AlphaKind::kStraight);
    EXPECT_EQ(shown.sample<float>(0), static_cast<float>(srgbOfLinear(0.5)));
    EXPECT_EQ(shown.sample<float>(1), static_cast<float>(srgbOfLinear(1.0)));
    EXPECT_EQ(shown.sample<float>(3), 0.4F);
}

} // namespace
} // namespace kovalune::test
