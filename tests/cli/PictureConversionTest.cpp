#include "cli/PictureConversion.h"

#include <gtest/gtest.h>

namespace kovalune::tests {
namespace {

using host::Image;

Picture picture(Channels channels, int depth, std::uint32_t width, std::uint32_t height,
                const std::vector<std::uint16_t>& samples) {
    Picture result;
    result.width = width;
    result.height = height;
    result.channels = channels;
    result.depth = depth;
    result.samples.resize(result.byteCount());
    for (std::size_t i = 0; i < samples.size(); ++i)
        result.setSample(i, samples[i]);
    return result;
}

std::vector<int> argb(const Image& image, A_long x) {
    if (image.format() == PF_PixelFormat_ARGB64) {
        const auto& pixel = image.at<PF_Pixel16>(x, 0);
        return {pixel.alpha, pixel.red, pixel.green, pixel.blue};
    }
    const auto& pixel = image.at<PF_Pixel>(x, 0);
    return {pixel.alpha, pixel.red, pixel.green, pixel.blue};
}

std::vector<int> samples(const Picture& from) {
    std::vector<int> result;
    const std::size_t count = channelCount(from.channels) * from.width * from.height;
    for (std::size_t i = 0; i < count; ++i)
        result.push_back(from.sample(i));
    return result;
}

using Values = std::vector<int>;

TEST(PictureConversion, EightBitSamplesGoInAsTheyAre) {
    EXPECT_EQ(argb(imageOf(picture(Channels::RgbAlpha, 8, 1, 1, {1, 2, 3, 0})), 0), (Values{0, 1, 2, 3}));
    EXPECT_EQ(argb(imageOf(picture(Channels::Rgb, 8, 1, 1, {1, 2, 3})), 0), (Values{255, 1, 2, 3}));
    EXPECT_EQ(argb(imageOf(picture(Channels::Grey, 8, 1, 1, {9})), 0), (Values{255, 9, 9, 9}));
    EXPECT_EQ(argb(imageOf(picture(Channels::GreyAlpha, 8, 1, 1, {9, 7})), 0), (Values{7, 9, 9, 9}));
}

TEST(PictureConversion, SixteenBitSamplesAreScaledToTheHostsWhite) {
    const Image image =
        imageOf(picture(Channels::RgbAlpha, 16, 2, 1, {0, 1, 2, 3, 32767, 32768, 65534, 65535}));
    EXPECT_EQ(image.format(), PF_PixelFormat_ARGB64);
    EXPECT_EQ(argb(image, 0), (Values{2, 0, 1, 1}));
    EXPECT_EQ(argb(image, 1), (Values{32768, 16384, 16384, 32767}));
    EXPECT_EQ(argb(imageOf(picture(Channels::Rgb, 16, 1, 1, {0, 0, 0})), 0), (Values{32768, 0, 0, 0}));
}

TEST(PictureConversion, EveryFileValueComesBackIfTheEffectLeftIt) {
    std::vector<std::uint16_t> all(65536);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<std::uint16_t>(i);
    const Picture source = picture(Channels::RgbAlpha, 16, 128, 128, all);
    const Image image = imageOf(source);
    EXPECT_EQ(pictureOf(image, image, source).samples, source.samples);
}

TEST(PictureConversion, ChangedSixteenBitSamplesAreScaledBackAndCutAtWhite) {
    const Picture source = picture(Channels::RgbAlpha, 16, 1, 1, {10, 20, 30, 40});
    const Image image = imageOf(source);
    Image result = image;
    result.at<PF_Pixel16>(0, 0) = {32768, 1, 16384, 40000};
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{2, 32768, 65535, 65535}));
}

TEST(PictureConversion, ChangedValuesOfTheHostComeBackTheSameFromTheFile) {
    const Picture source = picture(Channels::RgbAlpha, 16, 1, 1, {0, 0, 0, 0});
    const Image image = imageOf(source);
    for (int value = 1; value <= 32768; ++value) {
        Image result = image;
        result.at<PF_Pixel16>(0, 0).red = static_cast<A_u_short>(value);
        ASSERT_EQ(argb(imageOf(pictureOf(result, image, source)), 0), (Values{0, value, 0, 0}));
    }
}

TEST(PictureConversion, AlphaIsAddedOnlyWhereTheResultNeedsIt) {
    const Picture source = picture(Channels::Rgb, 8, 2, 1, {1, 2, 3, 4, 5, 6});
    const Image image = imageOf(source);
    Image result = image;
    result.at<PF_Pixel>(1, 0).red = 9;
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{1, 2, 3, 9, 5, 6}));
    result.at<PF_Pixel>(1, 0).alpha = 254;
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{1, 2, 3, 255, 9, 5, 6, 254}));
}

TEST(PictureConversion, AlphaOfTheFileStaysEvenIfItIsFull) {
    const Picture source = picture(Channels::RgbAlpha, 8, 1, 1, {1, 2, 3, 255});
    const Image image = imageOf(source);
    EXPECT_EQ(pictureOf(image, image, source).channels, Channels::RgbAlpha);
}

TEST(PictureConversion, GreyStaysGreyUntilAPixelIsNot) {
    const Picture source = picture(Channels::Grey, 8, 2, 1, {50, 60});
    const Image image = imageOf(source);
    Image result = image;
    result.at<PF_Pixel>(0, 0) = {255, 7, 7, 7};
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{7, 60}));
    result.at<PF_Pixel>(0, 0) = {128, 7, 7, 7};
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{7, 128, 60, 255}));
    result.at<PF_Pixel>(0, 0) = {255, 7, 8, 7};
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{7, 8, 7, 60, 60, 60}));
    result.at<PF_Pixel>(0, 0) = {0, 7, 8, 7};
    EXPECT_EQ(samples(pictureOf(result, image, source)), (Values{7, 8, 7, 0, 60, 60, 60, 255}));
}

TEST(PictureConversion, GreyPixelsOfAColourPictureStayColour) {
    const Picture source = picture(Channels::Rgb, 8, 1, 1, {5, 5, 5});
    const Image image = imageOf(source);
    EXPECT_EQ(pictureOf(image, image, source).channels, Channels::Rgb);
}

TEST(PictureConversion, AProfileForGreyIsDroppedWithTheGrey) {
    Picture source = picture(Channels::Grey, 8, 1, 1, {5});
    source.notes = {{{"gAMA"}, {0, 0, 1, 0}}, {{"iCCP"}, {'p', 0, 0, 1}}};
    const Image image = imageOf(source);
    EXPECT_EQ(pictureOf(image, image, source).notes.size(), 2U);
    Image result = image;
    result.at<PF_Pixel>(0, 0).red = 6;
    const Picture colour = pictureOf(result, image, source);
    ASSERT_EQ(colour.notes.size(), 1U);
    EXPECT_STREQ(colour.notes[0].name.data(), "gAMA");
}

} // namespace
} // namespace kovalune::tests
