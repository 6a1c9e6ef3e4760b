#include "host/ColorConversion.h"

#include <gtest/gtest.h>

#include <array>

namespace kovalune::test {
using namespace host;
namespace {

using Hls = std::array<PF_Fixed, 3>;

Hls converted(A_u_char r, A_u_char g, A_u_char b) {
    Hls hls{-1, -1, -1};
    rgbToHls({255, r, g, b}, hls.data());
    return hls;
}

constexpr PF_Fixed kDegree = 65536;

TEST(ColorConversion, GreysHaveNoHueAndNoSaturation) {
    EXPECT_EQ(converted(0, 0, 0), (Hls{0, 0, 0}));
    EXPECT_EQ(converted(255, 255, 255), (Hls{0, 65536, 0}));
    EXPECT_EQ(converted(128, 128, 128), (Hls{0, 32897, 0})); // 128 / 255 of 65536, rounded
}

TEST(ColorConversion, PureColoursStandSixtyDegreesApart) {
    EXPECT_EQ(converted(255, 0, 0), (Hls{0, 32768, 65536}));
    EXPECT_EQ(converted(255, 255, 0), (Hls{60 * kDegree, 32768, 65536}));
    EXPECT_EQ(converted(0, 255, 0), (Hls{120 * kDegree, 32768, 65536}));
    EXPECT_EQ(converted(0, 255, 255), (Hls{180 * kDegree, 32768, 65536}));
    EXPECT_EQ(converted(0, 0, 255), (Hls{240 * kDegree, 32768, 65536}));
    EXPECT_EQ(converted(255, 0, 255), (Hls{300 * kDegree, 32768, 65536}));
}

TEST(ColorConversion, RoundsToTheNearestStep) {
    // Hue 240 + 60 * (3 - 180) / 242, lightness 248 / 510, saturation 242 / 248, by hand.
    EXPECT_EQ(converted(3, 180, 245), (Hls{12852639, 31868, 63950}));
    // Above half lightness the saturation is taken of what is missing to white.
    EXPECT_EQ(converted(255, 200, 200), (Hls{0, 58468, 65536}));
}

TEST(ColorConversion, HueJustBelowRedStaysBelowAFullTurn) {
    const Hls hls = converted(255, 0, 1);
    EXPECT_EQ(hls[0], 23577540); // 360 - 60 / 255 degrees
    EXPECT_LT(hls[0], 360 * kDegree);
}

} // namespace
} // namespace kovalune::test
