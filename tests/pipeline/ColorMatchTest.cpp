#include "effect/pipeline/ColorMatch.h"

#include "host/ColorConversion.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/support/Random.h"
#include "tests/support/StrictHost.h"

#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

constexpr int32_t kDegree = 65536;
constexpr int32_t kUndefinedHue = std::numeric_limits<int32_t>::min();

int32_t distance(const HlsColor& a, const HlsColor& b) {
    return colorDistance(a, makeColorMatch(b, 0.0));
}

TEST(ColorMatch, TruncatesItsThreshold) {
    const HlsColor any;
    EXPECT_EQ(makeColorMatch(any, 0.0).threshold, 0);
    EXPECT_EQ(makeColorMatch(any, 0.01).threshold, 279);
    EXPECT_EQ(makeColorMatch(any, 0.5).threshold, 13952);
    EXPECT_EQ(makeColorMatch(any, 1.0).threshold, 27904);
}

TEST(ColorMatch, HoldsTheHostsConversion) {
    StrictHost host;
    const PF_Pixel color = {0, 200, 30, 90};
    PF_Fixed hls[3];
    host::rgbToHls(color, hls);
    const ColorMatch match = makeColorMatch(host.in(), color, 0.25);
    EXPECT_EQ(match.hue, hls[0]);
    EXPECT_EQ(match.lightness, hls[1]);
    EXPECT_EQ(match.saturation, hls[2]);
    EXPECT_EQ(match.threshold, 6976);
}

TEST(ColorDistance, WrapsHueAroundTheCircle) {
    EXPECT_EQ(distance({350 * kDegree, 0, 0}, {10 * kDegree, 0, 0}), (20 * kDegree >> 7) >> 3);
    EXPECT_EQ(distance({10 * kDegree, 0, 0}, {350 * kDegree, 0, 0}), (20 * kDegree >> 7) >> 3);
    EXPECT_EQ(distance({0, 0, 0}, {180 * kDegree, 0, 0}), (180 * kDegree >> 7) >> 3);
    EXPECT_EQ(distance({0, 0, 0}, {180 * kDegree + 128 * 8, 0, 0}), ((180 * kDegree >> 7) - 8) >> 3);
}

TEST(ColorDistance, IsAtMost27904) {
    EXPECT_EQ(distance({0, 0, 0}, {180 * kDegree, 65536, 65536}), 27904);
    EXPECT_TRUE(matches({0, 0, 0}, makeColorMatch(HlsColor{180 * kDegree, 65536, 65536}, 1.0)));
}

TEST(ColorDistance, ToleratesSevenStepsAtRangeZero) {
    EXPECT_EQ(distance({0, 1000, 0}, {0, 1007, 0}), 0);
    EXPECT_EQ(distance({0, 1000, 0}, {0, 1008, 0}), 1);
    EXPECT_TRUE(matches({0, 1007, 0}, makeColorMatch(HlsColor{0, 1000, 0}, 0.0)));
    EXPECT_FALSE(matches({0, 992, 0}, makeColorMatch(HlsColor{0, 1000, 0}, 0.0)));
}

TEST(ColorDistance, AddsItsThreeTermsBeforeItShifts) {
    EXPECT_EQ(distance({128 * 3, 1003, 502}, {0, 1000, 500}), 1);
    EXPECT_EQ(distance({128 * 3 - 1, 1003, 502}, {0, 1000, 500}), 0);
}

TEST(ColorDistance, FollowsTheFormulaForAllColours) {
    Random random(13);
    for (int round = 0; round < 20000; ++round) {
        const auto color = [&random] {
            return HlsColor{random.below(360 * kDegree), random.between(0, 65536), random.between(0, 65536)};
        };
        const HlsColor a = color();
        const HlsColor b = color();
        ASSERT_EQ(distance(a, b),
                  plainDistance({a.hue, a.lightness, a.saturation}, {b.hue, b.lightness, b.saturation}));
    }
}

class HueOutsideTheCircle : public testing::TestWithParam<int32_t> {};

INSTANTIATE_TEST_SUITE_P(All, HueOutsideTheCircle,
                         testing::Values(kUndefinedHue, -1, 360 * kDegree,
                                         std::numeric_limits<int32_t>::max()));

/// A host whose conversion gives every grey this hue.
PF_Err convertedBy(StrictHost& host, int32_t hueOfGreys, const PF_Pixel& color, HlsColor& hls) {
    static int32_t hue = 0;
    hue = hueOfGreys;
    host.utils().colorCB.RGBtoHLS = [](PF_ProgPtr, PF_Pixel* rgb, PF_Fixed* out) -> PF_Err {
        PF_Fixed fixed[3];
        host::rgbToHls(*rgb, fixed);
        const bool grey = rgb->red == rgb->green && rgb->green == rgb->blue;
        out[0] = grey ? hue : fixed[0];
        out[1] = fixed[1];
        out[2] = fixed[2];
        return PF_Err_NONE;
    };
    return convertToHls(host.in(), color, hls);
}

TEST_P(HueOutsideTheCircle, CountsAsZero) {
    StrictHost host;
    HlsColor hls;
    EXPECT_EQ(convertedBy(host, GetParam(), {255, 8, 8, 8}, hls), PF_Err_NONE);
    EXPECT_EQ(hls.hue, 0);
    EXPECT_EQ(hls.lightness, 2056);
    EXPECT_EQ(hls.saturation, 0);
}

TEST_P(HueOutsideTheCircle, MakesNoGreyMatchAColourAtRangeZero) {
    StrictHost host;
    for (int hue = 0; hue < 360; hue += 5) {
        HlsColor black;
        convertedBy(host, GetParam(), {255, 0, 0, 0}, black);
        const ColorMatch entry = makeColorMatch(HlsColor{hue * kDegree, 32768, 65536}, 0.0);
        EXPECT_FALSE(matches(black, entry)) << hue;
        EXPECT_EQ(colorDistance(black, entry), plainDistance({0, black.lightness, black.saturation},
                                                             {entry.hue, entry.lightness, entry.saturation}));
    }
}

TEST(HueInsideTheCircle, StaysAsItIs) {
    StrictHost host;
    for (const int32_t hue : {0, 1, 180 * kDegree, 360 * kDegree - 1}) {
        HlsColor hls;
        convertedBy(host, hue, {255, 8, 8, 8}, hls);
        EXPECT_EQ(hls.hue, hue);
    }
}

TEST(ColorDistance, BearsAnyNumbers) {
    constexpr int32_t most = std::numeric_limits<int32_t>::max();
    constexpr int32_t least = std::numeric_limits<int32_t>::min();
    // Each difference is min - max, which wraps to 1.
    EXPECT_EQ(distance({least, least, least}, {most, most, most}), 0);
    // Each is max, and two of them add up to -2 by wrapping; hue becomes a turn minus max.
    EXPECT_EQ(distance({most, most, most}, {0, 0, 0}), (-2 + ((360 * kDegree - most) >> 7)) >> 3);
}

} // namespace
} // namespace kovalune::test
