// Pictures whose memory ends with their last pixel, and maps whose memory ends with their last cell, in rows
// of any length and order: the address sanitizer sees an access beyond, and the twin a wrong pixel.

#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/BareHost.h"
#include "tests/smoothing/HandMade.h"
#include "tests/smoothing/SmoothScenes.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kovalune::test {
namespace {

/// Format, bytes between rows in channels, bottom up.
using Layout = std::tuple<PF_PixelFormat, int32_t, bool>;

class ExactMemory : public testing::TestWithParam<Layout> {
protected:
    static PF_PixelFormat format() { return std::get<0>(GetParam()); }

    static int32_t padding() {
        const int32_t channelBytes =
            format() == PF_PixelFormat_ARGB32 ? 1 : (format() == PF_PixelFormat_ARGB64 ? 2 : 4);
        return std::get<1>(GetParam()) * channelBytes;
    }

    void smoothAndCompare(SmoothScene scene) {
        const bool bottomUp = std::get<2>(GetParam());
        HandPicture source(scene.picture, padding(), bottomUp);
        HandPicture destination(format(), scene.picture.width, scene.picture.height, padding(), bottomUp);
        BareHost host(format());
        host.worldPadding = padding() * 4;
        scene.params.inData = host.in();
        scene.params.srcWorld = &source.world();
        scene.params.dstWorld = &destination.world();
        ASSERT_EQ(smoothBoundaries(scene.params), PF_Err_NONE);
        PatternCounts counts;
        const PlainPicture expected = PlainSmooth(scene.params, scene.picture, counts).run();
        ASSERT_EQ(difference(expected, destination.picture()), "") << scene.text;
        ASSERT_EQ(difference(scene.picture, source.picture()), "") << scene.text;
        ASSERT_TRUE(destination.paddingIsUntouched()) << scene.text;
        ASSERT_EQ(host.worldsMade, 1);
        ASSERT_EQ(host.worldsAlive(), 0U);
    }
};

INSTANTIATE_TEST_SUITE_P(Layouts, ExactMemory,
                         testing::Combine(testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                                          PF_PixelFormat_ARGB128),
                                          testing::Values(0, 1, 7), testing::Bool()),
                         [](const auto& test) {
                             return formatName(std::get<0>(test.param)) + "Padded" +
                                    std::to_string(std::get<1>(test.param)) +
                                    (std::get<2>(test.param) ? "BottomUp" : "TopDown");
                         });

SmoothMode anyMode(Random& random) {
    const int mode = random.below(6);
    return mode < 4 ? SmoothMode::kPlain : (mode == 4 ? SmoothMode::kKeyRemoved : SmoothMode::kKeyOnly);
}

TEST_P(ExactMemory, HoldsEverySmallSize) {
    Random random(404);
    for (int32_t height = 1; height <= 9; ++height) {
        for (int32_t width = 1; width <= 9; ++width) {
            for (int n = 0; n < 6; ++n) {
                smoothAndCompare(randomSmoothScene(format(), anyMode(random), width, height, random));
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

TEST_P(ExactMemory, HoldsRandomSizes) {
    Random random(405);
    for (int n = 0; n < 60; ++n) {
        smoothAndCompare(randomSmoothScene(format(), anyMode(random), random.between(1, 40),
                                           random.between(1, 40), random));
        if (HasFatalFailure()) {
            return;
        }
    }
}

/// Channels that no ordinary picture has: nothing is promised of the result but that nothing else is touched.
TEST(ExactMemoryOfAnything, GetsThroughChannelsBeyondTheScale) {
    Random random(406);
    for (int n = 0; n < 200; ++n) {
        const PF_PixelFormat format = n % 2 == 0 ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB128;
        const PlainPicture picture =
            flatPicture(format, random.between(1, 20), random.between(1, 20), random, Range::kWild);
        HandPicture source(picture, 4);
        HandPicture destination(format, picture.width, picture.height, 4);
        BareHost host(format);
        SmoothParams params;
        params.pixelFormat = format;
        params.inData = host.in();
        params.srcWorld = &source.world();
        params.dstWorld = &destination.world();
        params.strength = random.between(1, 100);
        params.curve = random.between(-100, 100);
        ASSERT_EQ(smoothBoundaries(params), PF_Err_NONE);
        ASSERT_EQ(difference(picture, source.picture()), "");
        ASSERT_TRUE(destination.paddingIsUntouched());
        if (format == PF_PixelFormat_ARGB128) {
            PatternCounts counts;
            ASSERT_EQ(difference(PlainSmooth(params, picture, counts).run(), destination.picture()), "");
        }
    }
}

TEST(ExactMemoryOfTheMap, IsAWorldOfItsOwnSize) {
    for (int32_t width = 1; width <= 9; ++width) {
        BareHost host(PF_PixelFormat_ARGB32);
        HandPicture source(PlainPicture(PF_PixelFormat_ARGB32, width, 3));
        HandPicture destination(PF_PixelFormat_ARGB32, width, 3);
        SmoothParams params;
        params.pixelFormat = PF_PixelFormat_ARGB32;
        params.inData = host.in();
        params.srcWorld = &source.world();
        params.dstWorld = &destination.world();
        ASSERT_EQ(smoothBoundaries(params), PF_Err_NONE);
        EXPECT_EQ(host.lastWidth, (width + 5 + 3) / 4) << "four cells to a pixel, five more than the picture";
        EXPECT_EQ(host.lastHeight, 5);
    }
}

} // namespace
} // namespace kovalune::test
