// Pictures of files and of the host into each other: every whole number, floats to the bit, alpha of both kinds,
// and the channels that a file needs.

#include "pictures/PictureConversion.h"
#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace kovalune::test {

using namespace pictures;

namespace {

using host::Image;
using Values = std::vector<double>;

Picture grey8(const Values& values) {
    return pictureWith(SampleType::kUint8, Channels::kGrey, static_cast<uint32_t>(values.size()), values);
}

Image imageIn(const Picture& picture) {
    return imageOf(picture, workingFormat(picture.sampleType));
}

PictureForm formOf(const Picture& picture) {
    return {picture.sampleType, picture.alphaKind};
}

Values argb(const Image& image, A_long x) {
    const auto values = [](const auto& pixel) {
        return Values{static_cast<double>(pixel.alpha), static_cast<double>(pixel.red),
                      static_cast<double>(pixel.green), static_cast<double>(pixel.blue)};
    };
    switch (image.format()) {
    case PF_PixelFormat_ARGB32:
        return values(image.at<PF_Pixel>(x, 0));
    case PF_PixelFormat_ARGB64:
        return values(image.at<PF_Pixel16>(x, 0));
    default:
        return values(image.at<PF_PixelFloat>(x, 0));
    }
}

double red(const Image& image, A_long x = 0) {
    return argb(image, x)[1];
}

/// One pixel of the host, red, green, blue and alpha, as a file of this form has it.
Values written(const Values& rgba, const PictureForm& form) {
    const Picture source = pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {-9, -9, -9, -9});
    const Image image = imageIn(source);
    Image result = image;
    result.at<PF_PixelFloat>(0, 0) = {static_cast<float>(rgba[3]), static_cast<float>(rgba[0]),
                                      static_cast<float>(rgba[1]), static_cast<float>(rgba[2])};
    return valuesOf(pictureOf(result, image, source, form));
}

TEST(PictureConversion, WorksInTheFormatThatHoldsTheSamplesBest) {
    EXPECT_EQ(workingFormat(SampleType::kUint8), PF_PixelFormat_ARGB32);
    EXPECT_EQ(workingFormat(SampleType::kUint16), PF_PixelFormat_ARGB64);
    EXPECT_EQ(workingFormat(SampleType::kHalf), PF_PixelFormat_ARGB128);
    EXPECT_EQ(workingFormat(SampleType::kFloat), PF_PixelFormat_ARGB128);
}

TEST(PictureConversion, WritesTheTypeThatHoldsTheWorkingFormatBest) {
    for (const SampleType source :
         {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf, SampleType::kFloat}) {
        EXPECT_EQ(sampleTypeFor(PF_PixelFormat_ARGB32, source), SampleType::kUint8);
        EXPECT_EQ(sampleTypeFor(PF_PixelFormat_ARGB64, source), SampleType::kUint16);
        EXPECT_EQ(sampleTypeFor(PF_PixelFormat_ARGB128, source),
                  source == SampleType::kHalf ? SampleType::kHalf : SampleType::kFloat);
    }
}

TEST(PictureConversion, SpreadsGreyAndTakesAMissingAlphaAsFull) {
    for (const auto& [type, white] : {std::pair{SampleType::kUint8, 255.0}, {SampleType::kFloat, 1.0}}) {
        const auto argbOf = [type = type](Channels channels, const Values& values) {
            return argb(imageIn(pictureWith(type, channels, 1, values)), 0);
        };
        EXPECT_EQ(argbOf(Channels::kRgbAlpha, {1, 2, 3, 0}), (Values{0, 1, 2, 3}));
        EXPECT_EQ(argbOf(Channels::kRgb, {1, 2, 3}), (Values{white, 1, 2, 3}));
        EXPECT_EQ(argbOf(Channels::kGrey, {9}), (Values{white, 9, 9, 9}));
        EXPECT_EQ(argbOf(Channels::kGreyAlpha, {9, 7}), (Values{7, 9, 9, 9}));
    }
    EXPECT_EQ(argb(imageIn(pictureWith(SampleType::kUint16, Channels::kRgb, 1, {0, 0, 0})), 0),
              (Values{32768, 0, 0, 0}));
    EXPECT_EQ(argb(imageIn(pictureWith(SampleType::kHalf, Channels::kGrey, 1, {0.5})), 0),
              (Values{1, 0.5, 0.5, 0.5}));
}

TEST(PictureConversion, EveryWholeNumberGoesInByTheRule) {
    const Picture eight = grey8(countedValues(256));
    const Picture sixteen = pictureWith(SampleType::kUint16, Channels::kGrey, 65536, countedValues(65536));
    const Image eightIn8 = imageOf(eight, PF_PixelFormat_ARGB32);
    const Image eightIn16 = imageOf(eight, PF_PixelFormat_ARGB64);
    const Image eightIn32 = imageOf(eight, PF_PixelFormat_ARGB128);
    for (A_long value = 0; value < 256; ++value) {
        ASSERT_EQ(red(eightIn8, value), value);
        ASSERT_EQ(red(eightIn16, value), (value * 32768 + 127) / 255);
        ASSERT_EQ(red(eightIn32, value), static_cast<double>(static_cast<float>(value / 255.0)));
    }
    const Image sixteenIn8 = imageOf(sixteen, PF_PixelFormat_ARGB32);
    const Image sixteenIn16 = imageOf(sixteen, PF_PixelFormat_ARGB64);
    const Image sixteenIn32 = imageOf(sixteen, PF_PixelFormat_ARGB128);
    for (int64_t value = 0; value < 65536; ++value) {
        const auto x = static_cast<A_long>(value);
        ASSERT_EQ(red(sixteenIn8, x), (value * 255 + 32767) / 65535);
        ASSERT_EQ(red(sixteenIn16, x), (value * 32768 + 32767) / 65535);
        ASSERT_EQ(red(sixteenIn32, x), static_cast<double>(static_cast<float>(x / 65535.0)));
    }
}

TEST(PictureConversion, EveryWholeNumberComesOutByTheRule) {
    const Picture source = pictureWith(SampleType::kUint16, Channels::kGrey, 1, {0});
    const Image before = imageIn(source);
    for (int64_t value = 1; value <= 65535; ++value) {
        Image result = before;
        const auto sample = static_cast<A_u_short>(value);
        result.at<PF_Pixel16>(0, 0) = {32768, sample, sample, sample};
        // Values above the host's white are possible there, and in no file.
        ASSERT_EQ(valuesOf(pictureOf(result, before, source, {SampleType::kUint16, {}})),
                  (Values{static_cast<double>(std::min<int64_t>((value * 65535 + 16384) / 32768, 65535))}));
        ASSERT_EQ(valuesOf(pictureOf(result, before, source, {SampleType::kUint8, {}})),
                  (Values{static_cast<double>(std::min<int64_t>((value * 255 + 16384) / 32768, 255))}));
        if (value <= 32768) {
            ASSERT_EQ(red(imageIn(pictureOf(result, before, source, formOf(source)))), value);
        }
    }
}

/// Alpha takes every value too, and colours beyond it are in the file.
class EveryForm : public testing::TestWithParam<std::tuple<SampleType, Channels, AlphaKind, int>> {};

TEST_P(EveryForm, KeepsEverySampleThatTheEffectLeft) {
    const auto& [type, channels, kind, depth] = GetParam();
    Picture source = randomPicture(type, channels, 256, 64, 1);
    source.alphaKind = kind;
    const Image image = imageOf(source, depth == 8    ? PF_PixelFormat_ARGB32
                                        : depth == 16 ? PF_PixelFormat_ARGB64
                                                      : PF_PixelFormat_ARGB128);
    const Picture out = pictureOf(image, image, source, formOf(source));
    EXPECT_EQ(out.samples, source.samples);
    EXPECT_EQ(out.channels, source.channels);
    EXPECT_EQ(out.alphaKind, kind);
}

INSTANTIATE_TEST_SUITE_P(PictureConversion, EveryForm,
                         testing::Combine(testing::Values(SampleType::kUint8, SampleType::kUint16,
                                                          SampleType::kHalf, SampleType::kFloat),
                                          testing::Values(Channels::kGrey, Channels::kGreyAlpha,
                                                          Channels::kRgb, Channels::kRgbAlpha),
                                          testing::Values(AlphaKind::kStraight, AlphaKind::kPremultiplied),
                                          testing::Values(8, 16, 32)));

TEST(PictureConversion, StraightFloatsAreTheHostsToTheBit) {
    std::vector<uint32_t> bits = {0x80000000U, 0x7f800000U, 0xff800000U, 0x7fc12345U,
                                  0x7f812345U, 0xffc00001U, 0x00000001U, 0x3f800001U};
    Picture source = pictureWith(SampleType::kFloat, Channels::kGrey, 8, {});
    for (std::size_t i = 0; i < bits.size(); ++i) {
        source.setSample(i, bits[i]);
    }
    const Image image = imageIn(source);
    for (A_long x = 0; x < 8; ++x) {
        EXPECT_EQ(std::bit_cast<uint32_t>(image.at<PF_PixelFloat>(x, 0).green),
                  bits[static_cast<std::size_t>(x)]);
    }
    EXPECT_EQ(pictureOf(image, image, source, formOf(source)).samples, source.samples);
    // What the effect wrote comes out to the bit as well.
    Image result = image;
    for (A_long x = 0; x < 8; ++x) {
        PF_PixelFloat& pixel = result.at<PF_PixelFloat>(x, 0);
        pixel.red = pixel.green = pixel.blue = image.at<PF_PixelFloat>(7 - x, 0).red;
    }
    const Picture out = pictureOf(result, image, source, formOf(source));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        EXPECT_EQ(out.sample<uint32_t>(i), bits[7 - i]);
    }
}

TEST(PictureConversion, EveryHalfGoesInExactlyAndComesBack) {
    Picture source = pictureWith(SampleType::kHalf, Channels::kGrey, 65536, {});
    for (std::size_t i = 0; i < 65536; ++i) {
        source.setSample(i, static_cast<uint16_t>(i));
    }
    const Image image = imageIn(source);
    EXPECT_EQ(red(image, 0x3c00), 1.0);
    EXPECT_EQ(red(image, 0x0001), std::ldexp(1.0, -24));
    EXPECT_EQ(red(image, 0xfbff), -65504.0);
    EXPECT_TRUE(std::isinf(red(image, 0x7c00)));
    EXPECT_TRUE(std::isnan(red(image, 0x7e01)));
    // As if the effect had changed all: from a source of zeros.
    const Picture zeros = pictureWith(SampleType::kHalf, Channels::kGrey, 65536, Values(65536, -1.0));
    const Picture out = pictureOf(image, imageIn(zeros), zeros, formOf(source));
    for (std::size_t i = 0; i < 65536; ++i) {
        const bool isNan = (i & 0x7c00) == 0x7c00 && (i & 0x3ff) != 0;
        const auto value = out.sample<uint16_t>(i);
        ASSERT_TRUE(isNan ? (value & 0x7c00) == 0x7c00 && (value & 0x3ff) != 0 : value == i) << i;
    }
}

TEST(PictureConversion, FloatsRoundToTheNearestHalf) {
    const PictureForm form{SampleType::kHalf, AlphaKind::kStraight};
    EXPECT_EQ(written({1.0 + std::ldexp(1.0, -11), 1.0 + std::ldexp(3.0, -11), 65536.0, 1.0}, form),
              (Values{1.0, 1.0 + std::ldexp(1.0, -9), std::numeric_limits<double>::infinity(), 1.0}));
}

TEST(PictureConversion, FloatsBecomeTheNearestWholeNumbersFromBlackToWhite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [type, white] :
         {std::pair{SampleType::kUint8, 255.0}, std::pair{SampleType::kUint16, 65535.0}}) {
        const PictureForm form{type, AlphaKind::kStraight};
        EXPECT_EQ(written({0.5, -0.1, 1.1, 0.25}, form),
                  (Values{std::floor(white / 2 + 0.5), 0, white, std::floor(white / 4 + 0.5)}));
        EXPECT_EQ(written({nan, infinity, -infinity, nan}, form), (Values{0, white, 0, 0}));
        EXPECT_EQ(written({0.4 / white, 0.6 / white, 1.0 - 0.6 / white, 0.0}, form),
                  (Values{0, 1, white - 1, 0}));
    }
    const Image in8 = imageOf(pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {nan, 2, -1, 0.5}),
                              PF_PixelFormat_ARGB32);
    EXPECT_EQ(argb(in8, 0), (Values{128, 0, 255, 0}));
    const Image in16 = imageOf(pictureWith(SampleType::kHalf, Channels::kRgbAlpha, 1, {nan, 2, -1, 0.5}),
                               PF_PixelFormat_ARGB64);
    EXPECT_EQ(argb(in16, 0), (Values{16384, 0, 32768, 0}));
}

TEST(PictureConversion, EveryPremultipliedColourIsDividedByItsAlpha) {
    Picture source = pictureWith(SampleType::kUint8, Channels::kGreyAlpha, 65536, {});
    for (std::size_t i = 0; i < 131072; ++i) {
        source.samples[i] = static_cast<uint8_t>(i % 2 == 0 ? i / 512 : i / 2);
    }
    source.alphaKind = AlphaKind::kPremultiplied;
    const Image in8 = imageOf(source, PF_PixelFormat_ARGB32);
    const Image in16 = imageOf(source, PF_PixelFormat_ARGB64);
    const Image in32 = imageOf(source, PF_PixelFormat_ARGB128);
    for (int64_t i = 0; i < 65536; ++i) {
        const int64_t colour = i / 256;
        const int64_t alpha = i % 256;
        const auto x = static_cast<A_long>(i);
        ASSERT_EQ(argb(in8, x)[0], alpha);
        // Exact: halves up is (2 c w + a) / 2 a in whole numbers.
        const auto divided = [&](int64_t white) {
            return alpha == 0 ? (colour * white + 127) / 255
                              : std::min(white, (2 * colour * white + alpha) / (2 * alpha));
        };
        ASSERT_EQ(red(in8, x), divided(255));
        ASSERT_EQ(red(in16, x), divided(32768));
        const double share = static_cast<double>(colour) / static_cast<double>(alpha == 0 ? 255 : alpha);
        ASSERT_EQ(red(in32, x), static_cast<double>(static_cast<float>(share)));
    }
}

TEST(PictureConversion, PremultipliedFloatsAreDividedInDouble) {
    Picture source = pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {0.1, 2.5, -1.0, 0.3});
    source.alphaKind = AlphaKind::kPremultiplied;
    const auto over = [&](std::size_t index) {
        return static_cast<double>(static_cast<float>(static_cast<double>(source.sample<float>(index)) /
                                                      static_cast<double>(source.sample<float>(3))));
    };
    EXPECT_EQ(argb(imageIn(source), 0),
              (Values{static_cast<double>(source.sample<float>(3)), over(0), over(1), over(2)}));
}

TEST(PictureConversion, AColourWithoutAnAlphaToDivideByIsTakenAsItStands) {
    for (const double alpha : {0.0, -0.0, -0.5, std::numeric_limits<double>::quiet_NaN()}) {
        Picture source = pictureWith(SampleType::kFloat, Channels::kRgbAlpha, 1, {0.25, 2.5, -1.0, alpha});
        source.alphaKind = AlphaKind::kPremultiplied;
        const Values values = argb(imageIn(source), 0);
        EXPECT_EQ((Values{values[1], values[2], values[3]}), (Values{0.25, 2.5, -1.0})) << alpha;
    }
}

TEST(PictureConversion, EveryChangedColourIsMultipliedByItsAlphaOnTheWayOut) {
    const Picture source = pictureWith(SampleType::kUint8, Channels::kGreyAlpha, 65536, Values(131072, 77));
    const Image image = imageIn(source);
    Image result = image;
    for (A_long i = 0; i < 65536; ++i) {
        const auto colour = static_cast<A_u_char>(i / 256);
        result.at<PF_Pixel>(i, 0) = {static_cast<A_u_char>(i), colour, colour, colour};
    }
    const auto in = [&](SampleType type) {
        return pictureOf(result, image, source, {type, AlphaKind::kPremultiplied});
    };
    const Picture out8 = in(SampleType::kUint8);
    const Picture out16 = in(SampleType::kUint16);
    const Picture out32 = in(SampleType::kFloat);
    for (int64_t i = 0; i < 65536; ++i) {
        const int64_t product = i / 256 * (i % 256);
        const auto at = static_cast<std::size_t>(2 * i);
        ASSERT_EQ(out8.sample<uint8_t>(at), (2 * product * 255 + 65025) / (2 * 65025)) << i;
        ASSERT_EQ(out16.sample<uint16_t>(at), (2 * product * 65535 + 65025) / (2 * 65025)) << i;
        ASSERT_EQ(out32.sample<float>(at), static_cast<float>(static_cast<double>(product) / 65025.0)) << i;
        ASSERT_EQ(out8.sample<uint8_t>(at + 1), i % 256);
    }
}

TEST(PictureConversion, NothingIsLeftOfAColourUnderNoAlphaThatIsMultiplied) {
    const PictureForm form{SampleType::kFloat, AlphaKind::kPremultiplied};
    EXPECT_EQ(written({0.5, 2.0, -3.0, 0.0}, form), (Values{0, 0, 0, 0}));
    EXPECT_EQ(written({0.5, 2.0, -3.0, 0.5}, form), (Values{0.25, 1.0, -1.5, 0.5}));
    EXPECT_EQ(written({0.5, 2.0, -3.0, -0.5}, form), (Values{0.5, 2.0, -3.0, -0.5}));
}

TEST(PictureConversion, APremultipliedPixelIsKeptUnlessItsAlphaChanges) {
    Picture source = pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 1, {200, 60, 61, 100});
    source.alphaKind = AlphaKind::kPremultiplied;
    const Image image = imageIn(source);
    ASSERT_EQ(argb(image, 0), (Values{100, 255, 153, 156})); // 200 was more than can be
    Image result = image;
    result.at<PF_Pixel>(0, 0).green = 255;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, formOf(source))), (Values{200, 100, 61, 100}));
    result.at<PF_Pixel>(0, 0).alpha = 200;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, formOf(source))), (Values{200, 200, 122, 200}));
    result = image;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, {SampleType::kUint8, AlphaKind::kStraight})),
              (Values{255, 153, 156, 100}));
}

TEST(PictureConversion, AStraightSampleIsKeptThoughItsAlphaChanges) {
    const Picture source = pictureWith(SampleType::kUint16, Channels::kRgbAlpha, 1, {10001, 20, 30, 40000});
    const Image image = imageIn(source);
    Image result = image;
    result.at<PF_Pixel16>(0, 0).alpha = 5;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, formOf(source))), (Values{10001, 20, 30, 10}));
}

TEST(PictureConversion, WhatTheEffectLeftComesFromTheFileInAnotherTypeToo) {
    const Picture source = pictureWith(SampleType::kUint16, Channels::kGrey, 65536, countedValues(65536));
    const Image image = imageOf(source, PF_PixelFormat_ARGB32);
    const Picture out = pictureOf(image, image, source, {SampleType::kFloat, AlphaKind::kStraight});
    for (std::size_t i = 0; i < 65536; ++i) {
        ASSERT_EQ(out.sample<float>(i), static_cast<float>(static_cast<double>(i) / 65535.0));
    }
}

TEST(PictureConversion, AlphaIsAddedOnlyWhereTheResultNeedsIt) {
    const Picture source = pictureWith(SampleType::kUint8, Channels::kRgb, 2, {1, 2, 3, 4, 5, 6});
    const Image image = imageIn(source);
    Image result = image;
    result.at<PF_Pixel>(1, 0).red = 9;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, formOf(source))), (Values{1, 2, 3, 9, 5, 6}));
    result.at<PF_Pixel>(1, 0).alpha = 254;
    EXPECT_EQ(valuesOf(pictureOf(result, image, source, formOf(source))),
              (Values{1, 2, 3, 255, 9, 5, 6, 254}));
    const Picture floats = pictureWith(SampleType::kFloat, Channels::kRgb, 1, {1, 2, 3});
    Image more = imageIn(floats);
    more.at<PF_PixelFloat>(0, 0).alpha = 1.5F;
    EXPECT_EQ(valuesOf(pictureOf(more, imageIn(floats), floats, formOf(floats))), (Values{1, 2, 3, 1.5}));
}

TEST(PictureConversion, AlphaOfTheFileStaysEvenIfItIsFull) {
    const Picture source = pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 1, {1, 2, 3, 255});
    const Image image = imageIn(source);
    EXPECT_EQ(pictureOf(image, image, source, formOf(source)).channels, Channels::kRgbAlpha);
}

TEST(PictureConversion, GreyStaysGreyUntilAPixelIsNot) {
    const Picture source = grey8({50, 60});
    const Image image = imageIn(source);
    Image result = image;
    const auto out = [&](const PF_Pixel& pixel) {
        result.at<PF_Pixel>(0, 0) = pixel;
        return valuesOf(pictureOf(result, image, source, formOf(source)));
    };
    EXPECT_EQ(out({255, 7, 7, 7}), (Values{7, 60}));
    EXPECT_EQ(out({128, 7, 7, 7}), (Values{7, 128, 60, 255}));
    EXPECT_EQ(out({255, 7, 8, 7}), (Values{7, 8, 7, 60, 60, 60}));
    EXPECT_EQ(out({0, 7, 8, 7}), (Values{7, 8, 7, 0, 60, 60, 60, 255}));
}

TEST(PictureConversion, GreyPixelsOfAColourPictureStayColour) {
    const Picture source = pictureWith(SampleType::kUint8, Channels::kRgb, 1, {5, 5, 5});
    const Image image = imageIn(source);
    EXPECT_EQ(pictureOf(image, image, source, formOf(source)).channels, Channels::kRgb);
}

TEST(PictureConversion, AProfileForGreyIsDroppedWithTheGrey) {
    const std::vector<PictureNote> pngNotes = {{"gAMA", {}, {0, 0, 1, 0}}, {"iCCP", {}, {'p', 0, 0, 1}}};
    const std::vector<PictureNote> tiffNotes = {{"305", "2", {'x', 0}}, {"34675", "7", {1, 2, 3}}};
    for (const auto& [format, notes] :
         {std::pair{FileFormat::kPng, pngNotes}, std::pair{FileFormat::kTiff, tiffNotes}}) {
        Picture source = grey8({5});
        source.format = format;
        source.notes = notes;
        const Image image = imageIn(source);
        EXPECT_EQ(pictureOf(image, image, source, formOf(source)).notes, notes);
        Image result = image;
        result.at<PF_Pixel>(0, 0).red = 6;
        const Picture colour = pictureOf(result, image, source, formOf(source));
        EXPECT_EQ(colour.format, format);
        EXPECT_EQ(colour.notes, std::vector{notes[0]});
    }
}

} // namespace
} // namespace kovalune::test
