#include "effect/raster/MaskPlane.h"

#include "tests/support/MaskShapes.h"
#include "tests/support/StrictHost.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(MaskPlane16, OfFiveByThreeTakes60Bytes) {
    StrictHost host;
    MaskPlane16 plane(host.in(), 5, 3);
    EXPECT_EQ(plane.rowBytes(), 16);
    EXPECT_EQ(plane.rowStride(), 8);
    EXPECT_EQ(plane.byteSize(), 60U);
    EXPECT_EQ(layoutFault(plane), "");
    EXPECT_TRUE(plane.activityStale());
    EXPECT_TRUE(plane.boundsStale());
}

TEST(MaskPlane16, FollowsTheFormulaForAllSmallSizes) {
    StrictHost host;
    for (int32_t w = 1; w <= 20; ++w) {
        for (int32_t h = 1; h <= 20; ++h) {
            MaskPlane16 plane(host.in(), w, h);
            const int32_t rowWords = (w + 3) / 4;
            const int32_t colWords = (h + 3) / 4;
            ASSERT_EQ(plane.rowBytes(), rowWords * 8);
            ASSERT_EQ(plane.rowStride(), rowWords * 4);
            ASSERT_EQ(plane.byteSize(), static_cast<uint32_t>((h * 8 + 4) * rowWords + colWords * 4));
            ASSERT_EQ(layoutFault(plane), "") << w << " by " << h;
        }
    }
}

TEST(MaskPlane16, FillFarWrites1000AndMarksEverything) {
    StrictHost host;
    MaskPlane16 plane(host.in(), 5, 3);
    const uint16_t padding = plane.row(2)[5];
    plane.fillFar();
    for (int32_t y = 0; y < 3; ++y) {
        EXPECT_EQ(std::count(plane.row(y), plane.row(y) + 5, 1000), 5) << "row " << y;
    }
    EXPECT_EQ(plane.row(2)[5], padding);
    const PlaneSummaries summaries = summariesOf(plane);
    EXPECT_EQ(std::count(summaries.rows, summaries.rows + 3, 1), 3);
    EXPECT_EQ(std::count(summaries.columns, summaries.columns + 5, 1), 5);
    EXPECT_EQ(plane.bounds().bottom, 3);
    EXPECT_EQ(plane.bounds().right, 5);
    EXPECT_FALSE(plane.activityStale());
    EXPECT_FALSE(plane.boundsStale());
}

TEST(MaskPlane16, HandlesShareTheElements) {
    StrictHost host;
    MaskPlane16 plane(host.in(), 5, 3);
    plane.fillFar();
    MaskPlane16 second;
    second.shareOf(plane);
    second.row(1)[4] = 3;
    EXPECT_EQ(plane.row(1)[4], 3);
    EXPECT_EQ(plane.useCount(), 2);
    EXPECT_EQ(host.audit().liveHandles, 1);
}

} // namespace
} // namespace kovalune::test
