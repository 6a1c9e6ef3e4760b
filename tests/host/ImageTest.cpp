#include "host/Image.h"
#include "host/HostError.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace host;
namespace {

TEST(Image, StartsTransparentBlackWithTightRows) {
    const Image image(PF_PixelFormat_ARGB64, 3, 2);
    EXPECT_EQ(image.rowBytes(), 24U);
    EXPECT_EQ(image.row(1) - image.row(0), 24);
    EXPECT_EQ(image.at<PF_Pixel16>(2, 1).alpha, 0);
    EXPECT_EQ(image.at<PF_Pixel16>(2, 1).blue, 0);
}

TEST(Image, PixelsStandInAlphaRedGreenBlueOrder) {
    Image image(PF_PixelFormat_ARGB32, 2, 1);
    image.at<PF_Pixel>(1, 0) = {1, 2, 3, 4};
    EXPECT_EQ(image.row(0)[4], std::byte{1});
    EXPECT_EQ(image.row(0)[7], std::byte{4});
}

TEST(Image, EqualityLooksAtFormatSizeAndBytes) {
    Image a(PF_PixelFormat_ARGB32, 2, 2);
    Image b = a;
    EXPECT_EQ(a, b);
    b.at<PF_Pixel>(0, 1).green = 1;
    EXPECT_NE(a, b);
    EXPECT_NE(Image(PF_PixelFormat_ARGB32, 4, 1), Image(PF_PixelFormat_ARGB64, 2, 1));
}

TEST(Image, RefusesUnknownFormatsAndNegativeSides) {
    EXPECT_THROW(Image(PF_PixelFormat_INVALID, 1, 1), HostError);
    EXPECT_THROW(Image(PF_PixelFormat_ARGB32, -1, 1), HostError);
}

TEST(PixelFormat, BytesAndBitsFollowTheFormat) {
    EXPECT_EQ(bytesPerPixel(PF_PixelFormat_ARGB32), 4U);
    EXPECT_EQ(bytesPerPixel(PF_PixelFormat_ARGB128), 16U);
    EXPECT_EQ(bitsPerChannel(PF_PixelFormat_ARGB64), 16);
    EXPECT_EQ(bitsPerChannel(PF_PixelFormat_ARGB128), 32);
}

} // namespace
} // namespace kovalune::test
