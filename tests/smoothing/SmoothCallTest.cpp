// A call of the smoothing as a whole: what it refuses, what it does when a host call fails, and pictures of every small
// size and content, which it must get through without leaving a world.

#include "effect/smoothing/SmoothBoundaries.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kovalune::test {
namespace {

using test::StrictHost;
using test::TestWorld;

struct Call {
    explicit Call(StrictHost& host, int32_t width = 6, int32_t height = 5)
        : source(host, PF_PixelFormat_ARGB32, width, height),
          destination(host, PF_PixelFormat_ARGB32, width, height) {
        params.inData = host.in();
        params.pixelFormat = PF_PixelFormat_ARGB32;
        params.srcWorld = source.get();
        params.dstWorld = destination.get();
    }

    bool destinationIs(PF_Pixel p) const {
        for (int32_t y = 0; y < destination.height(); ++y) {
            for (int32_t x = 0; x < destination.width(); ++x) {
                const PF_Pixel& d = destination.at<PF_Pixel>(x, y);
                if (d.alpha != p.alpha || d.red != p.red || d.green != p.green || d.blue != p.blue) {
                    return false;
                }
            }
        }
        return true;
    }

    /// A staircase of two colours.
    void paintStairs() {
        for (int32_t y = 0; y < source.height(); ++y) {
            for (int32_t x = 0; x < source.width(); ++x) {
                source.at<PF_Pixel>(x, y) =
                    x < y * 2 ? PF_Pixel{255, 200, 30, 30} : PF_Pixel{255, 20, 20, 90};
            }
        }
    }

    TestWorld source;
    TestWorld destination;
    SmoothParams params;
};

TEST(SmoothCall, StartsFromItsDefaults) {
    const SmoothParams params;
    EXPECT_EQ(params.threshold, 10);
    EXPECT_EQ(params.strength, 70);
    EXPECT_EQ(params.curve, 0);
    EXPECT_EQ(params.keyEnabled, 0);
    EXPECT_EQ(params.keyRed, 255);
    EXPECT_EQ(params.keyGreen, 255);
    EXPECT_EQ(params.keyBlue, 255);
    EXPECT_EQ(params.keyTolerance, 0);
    EXPECT_EQ(params.keyOnly, 0);
    EXPECT_EQ(params.pixelFormat, PF_PixelFormat_INVALID);
}

TEST(SmoothCall, RefusesAnUnknownFormatUntouched) {
    StrictHost host;
    Call call(host);
    call.paintStairs();
    call.params.pixelFormat = PF_PixelFormat_INVALID;
    EXPECT_EQ(smoothBoundaries(call.params), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_TRUE(call.destinationIs({}));
}

TEST(SmoothCall, RefusesWorldsOfDifferentSizeUntouched) {
    StrictHost host;
    Call call(host);
    call.paintStairs();
    TestWorld wider(host, PF_PixelFormat_ARGB32, 7, 5);
    TestWorld higher(host, PF_PixelFormat_ARGB32, 6, 6);
    for (TestWorld* const other : {&wider, &higher}) {
        call.params.srcWorld = other->get();
        EXPECT_EQ(smoothBoundaries(call.params), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_TRUE(call.destinationIs({}));
    }
}

TEST(SmoothCall, RefusesOneWorldAsBothAndAMissingOne) {
    StrictHost host;
    Call call(host);
    call.paintStairs();
    call.params.srcWorld = call.params.dstWorld;
    EXPECT_EQ(smoothBoundaries(call.params), PF_Err_BAD_CALLBACK_PARAM);
    call.params.srcWorld = nullptr;
    EXPECT_EQ(smoothBoundaries(call.params), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_TRUE(call.destinationIs({}));
}

TEST(SmoothCall, CopiesAFlatPicture) {
    StrictHost host;
    Call call(host);
    const PF_Pixel flat = {255, 3, 180, 245};
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = 0; x < 6; ++x) {
            call.source.at<PF_Pixel>(x, y) = flat;
        }
    }
    EXPECT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    EXPECT_TRUE(call.destinationIs(flat));
}

TEST(SmoothCall, OfStrengthZeroCopiesWithoutAMap) {
    StrictHost host;
    host.options().recordCalls = true;
    Call call(host);
    call.paintStairs();
    call.params.strength = 0;
    EXPECT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    EXPECT_EQ(host.countCalls("new_world"), 0);
    EXPECT_EQ(call.destination.at<PF_Pixel>(0, 4).red, 200);
    EXPECT_EQ(call.destination.at<PF_Pixel>(5, 0).red, 20);
}

TEST(SmoothCall, ChangesAStaircaseAndNotItsSource) {
    StrictHost host;
    Call call(host, 24, 12);
    call.paintStairs();
    ASSERT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    int changed = 0;
    for (int32_t y = 0; y < 12; ++y) {
        for (int32_t x = 0; x < 24; ++x) {
            const A_u_char red = x < y * 2 ? 200 : 20;
            EXPECT_EQ(call.source.at<PF_Pixel>(x, y).red, red);
            changed += call.destination.at<PF_Pixel>(x, y).red != red ? 1 : 0;
        }
    }
    EXPECT_GT(changed, 10);
}

TEST(SmoothCall, KeyedToAColourThatNoPixelHasKeepsNothing) {
    StrictHost host;
    Call call(host);
    call.paintStairs();
    call.params.keyEnabled = 1;
    call.params.keyOnly = 1;
    ASSERT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = 0; x < 6; ++x) {
            EXPECT_EQ(call.destination.at<PF_Pixel>(x, y).alpha, 0);
        }
    }
}

TEST(SmoothCall, At8BitsMatchesAColouredKeyOfNoToleranceWithRedAndBlueExchanged) {
    StrictHost host;
    Call call(host);
    for (int32_t y = 0; y < 5; ++y) {
        for (int32_t x = 0; x < 6; ++x) {
            call.source.at<PF_Pixel>(x, y) = x < 3 ? PF_Pixel{255, 10, 20, 30} : PF_Pixel{255, 30, 20, 10};
        }
    }
    call.params.strength = 0;
    call.params.keyEnabled = 1;
    call.params.keyRed = 10;
    call.params.keyGreen = 20;
    call.params.keyBlue = 30;
    ASSERT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    EXPECT_EQ(call.destination.at<PF_Pixel>(0, 0).alpha, 255);
    EXPECT_EQ(call.destination.at<PF_Pixel>(5, 0).alpha, 0);
    call.params.keyTolerance = 1;
    ASSERT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
    EXPECT_EQ(call.destination.at<PF_Pixel>(0, 0).alpha, 0);
    EXPECT_EQ(call.destination.at<PF_Pixel>(5, 0).alpha, 255);
}

TEST(SmoothCall, ReturnsTheCodeOfAHostCallThatFails) {
    StrictHost host;
    Call call(host);
    call.paintStairs();
    int copies = 0;
    int maps = 0;
    for (int n = 1; n <= 5; ++n) {
        host.arm({.failCall = n, .failCode = PF_Err_INVALID_INDEX});
        try {
            const PF_Err err = smoothBoundaries(call.params);
            const std::string struck = host.struckCall();
            copies += struck == "copy" ? 1 : 0;
            maps += struck == "new_world" ? 1 : 0;
            EXPECT_EQ(err, struck == "dispose_world" || struck.empty() ? PF_Err_NONE : PF_Err_INVALID_INDEX)
                << struck;
        } catch (long code) {
            EXPECT_EQ(host.struckCall(), "AcquireSuite");
            EXPECT_EQ(code, PF_Err_BAD_CALLBACK_PARAM);
        }
    }
    EXPECT_EQ(copies, 1);
    EXPECT_EQ(maps, 1);
    host.arm({});
}

/// Random pictures of a few colours, in which every pattern comes up. The host's guards and the sanitizers tell of any
/// access outside a picture or the map.
TEST(SmoothCall, GetsThroughEverySmallSize) {
    std::mt19937 random(7);
    for (int32_t height = 1; height <= 12; ++height) {
        for (int32_t width = 1; width <= 20; ++width) {
            StrictHost host;
            Call call(host, width, height);
            for (int round = 0; round < 6; ++round) {
                for (int32_t y = 0; y < height; ++y) {
                    for (int32_t x = 0; x < width; ++x) {
                        const auto value = static_cast<A_u_char>(random() % 3 * 100);
                        call.source.at<PF_Pixel>(x, y) = {
                            static_cast<A_u_char>(value != 0 ? 255 : round % 2 * 255), value, 30, 40};
                    }
                }
                call.params.strength = round % 3 == 0 ? 100 : 70;
                call.params.curve = (round - 3) * 30;
                ASSERT_EQ(smoothBoundaries(call.params), PF_Err_NONE);
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
