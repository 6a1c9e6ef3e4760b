#include "render/FrameArea.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace kovalune::test {

using namespace render;

namespace {

/// "##." for each row: '#' is inside.
std::string shape(const FrameArea& area) {
    std::string text;
    for (int32_t y = 0; y < area.height(); ++y) {
        for (int32_t x = 0; x < area.width(); ++x) {
            text += area.isInside(x, y) ? '#' : '.';
        }
        text += ' ';
    }
    return text;
}

FrameArea regionOf(int32_t width, int32_t height, const Region& region) {
    FrameArea area(width, height);
    area.intersect(region);
    return area;
}

TEST(FrameArea, IsCutToThePicture) {
    EXPECT_EQ(shape(FrameArea(2, 2)), "## ## ");
    EXPECT_EQ(shape(regionOf(4, 3, {1, 1, 2, 1})), ".... .##. .... ");
    EXPECT_EQ(shape(regionOf(4, 3, {-5, -5, 7, 6})), "##.. .... .... ");
    EXPECT_EQ(shape(regionOf(4, 3, {3, 2, 1000000, 1000000})), ".... .... ...# ");
    EXPECT_TRUE(regionOf(4, 3, {4, 0, 2, 2}).isEmpty());
    EXPECT_TRUE(regionOf(4, 3, {-9, 0, 9, 3}).isEmpty());
    EXPECT_TRUE(regionOf(4, 3, {0, 0, 4, 3}).isWhole());
    EXPECT_FALSE(regionOf(4, 3, {0, 0, 4, 2}).isWhole());
}

TEST(FrameArea, IsWhatTwoHaveInCommon) {
    FrameArea area = regionOf(4, 2, {0, 0, 3, 2});
    area.intersect(regionOf(4, 2, {1, 0, 3, 1}));
    EXPECT_EQ(shape(area), ".##. .... ");
}

template <class Pixel>
void expectPixelsKept(PF_PixelFormat format) {
    std::mt19937 random(7);
    const auto filled = [&] {
        host::Image image(format, 13, 5);
        for (A_long y = 0; y < 5; ++y) {
            for (std::size_t i = 0; i < 13 * sizeof(Pixel); ++i) {
                image.row(y)[i] = static_cast<std::byte>(random());
            }
        }
        return image;
    };
    FrameArea area(13, 5);
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = 0; x < 13; ++x) {
            area.row(y)[x] = random() % 3 == 0 ? uint8_t{0} : uint8_t{200};
        }
    }
    const host::Image input = filled();
    const host::Image other = filled();
    const host::Image cut = cutTo(input, area);
    host::Image restored = other;
    restoreOutside(restored, input, area);
    const Pixel zero{};
    for (A_long y = 0; y < 5; ++y) {
        for (A_long x = 0; x < 13; ++x) {
            const bool inside = area.isInside(x, y);
            const auto same = [](const Pixel& a, const Pixel& b) {
                return std::memcmp(&a, &b, sizeof a) == 0;
            };
            EXPECT_TRUE(same(cut.at<Pixel>(x, y), inside ? input.at<Pixel>(x, y) : zero));
            EXPECT_TRUE(
                same(restored.at<Pixel>(x, y), inside ? other.at<Pixel>(x, y) : input.at<Pixel>(x, y)));
        }
    }
}

TEST(FrameArea, ChangesOnlyWhatIsOutside) {
    expectPixelsKept<PF_Pixel>(PF_PixelFormat_ARGB32);
    expectPixelsKept<PF_Pixel16>(PF_PixelFormat_ARGB64);
    expectPixelsKept<PF_PixelFloat>(PF_PixelFormat_ARGB128);
}

} // namespace
} // namespace kovalune::test
