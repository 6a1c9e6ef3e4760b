#include "effect/raster/MaskPlane.h"

#include "tests/support/MaskShapes.h"
#include "tests/support/Random.h"
#include "tests/support/StrictHost.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

Mask plainUnion(const Mask& mask, const Mask& other) {
    Mask result = mask;
    for (int32_t y = 0; y < std::min(mask.height, other.height); ++y) {
        for (int32_t x = 0; x < std::min(mask.width, other.width); ++x) {
            if (other.at(x, y) != 0) {
                result.at(x, y) = other.at(x, y);
            }
        }
    }
    return result;
}

/// All bytes 0, but a summary that counts as stale.
MaskPlane staleEmptyPlane(StrictHost& host, int32_t w, int32_t h) {
    MaskPlane plane(host.in(), w, h);
    std::fill_n(plane.row(0), plane.byteSize(), uint8_t{0});
    EXPECT_TRUE(plane.activityStale());
    return plane;
}

TEST(MaskPlaneUnion, AddsTheOthersElementsOverTheSmallerSize) {
    StrictHost host;
    Random random(5);
    for (int round = 0; round < 300; ++round) {
        const auto shape = [&random] { return kMaskShapes[static_cast<std::size_t>(random.below(9))]; };
        const Mask mask = makeMask(shape(), random.between(1, 17), random.between(1, 17), random);
        const Mask added = makeMask(shape(), random.between(1, 17), random.between(1, 17), random);
        MaskPlane plane = planeOf(host, mask);
        const MaskPlane other = planeOf(host, added);
        plane.unionWith(other);
        ASSERT_EQ(elementsOf(plane), plainUnion(mask, added)) << "round " << round;
        ASSERT_EQ(summaryFault(plane), "") << "round " << round;
        ASSERT_EQ(elementsOf(other), added) << "the other one is only read";
        ASSERT_TRUE(plane.boundsStale());
        ASSERT_FALSE(plane.activityStale());
    }
}

TEST(MaskPlaneUnion, LeavesAStaleSummaryStale) {
    StrictHost host;
    MaskPlane plane = staleEmptyPlane(host, 4, 4);
    MaskPlane other(host.in(), 4, 4);
    other.clearTo(1);
    plane.unionWith(other);
    EXPECT_TRUE(plane.activityStale());
    EXPECT_TRUE(plane.boundsStale());
}

TEST(MaskPlaneUnion, VisitsAllRowsOfAPlaneWithAStaleSummary) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 3);
    plane.clearTo(0);
    MaskPlane other = staleEmptyPlane(host, 4, 3);
    other.row(1)[2] = 7;
    summariesOf(other).rows[0] = 99;
    plane.unionWith(other);
    EXPECT_EQ(plane.row(1)[2], 7);
    EXPECT_EQ(summaryFault(plane), "");
}

TEST(MaskPlaneUnion, TrustsASummaryThatIsNotStaleAndSoLosesRows) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 3);
    plane.clearTo(0);
    MaskPlane other(host.in(), 4, 3);
    other.clearTo(0);
    other.row(1)[2] = 7;
    other.row(2)[3] = 7;
    summariesOf(other).rows[2] = 1;
    plane.unionWith(other);
    EXPECT_EQ(plane.row(1)[2], 0);
    EXPECT_EQ(plane.row(2)[3], 7);
    EXPECT_FALSE(plane.colActive(2));
}

TEST(MaskPlaneUnion, CopiesValuesAsTheyAre) {
    StrictHost host;
    MaskPlane plane(host.in(), 2, 1);
    plane.clearTo(1);
    MaskPlane other(host.in(), 2, 1);
    other.clearTo(7);
    plane.unionWith(other);
    EXPECT_EQ(plane.row(0)[0], 7);
    plane.invert();
    EXPECT_EQ(plane.row(0)[0], 0);
}

TEST(MaskPlaneUnion, StartsARowsMarkFromItsOwnSummary) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 2);
    plane.clearTo(0);
    const PlaneSummaries summaries = summariesOf(plane);
    summaries.rows[0] = 55;
    summaries.rows[1] = 55;
    MaskPlane other(host.in(), 4, 2);
    other.clearTo(0);
    summariesOf(other).rows[0] = 1;
    plane.unionWith(other);
    EXPECT_EQ(summaries.rows[0], 1) << "visited: marked before, so marked still";
    EXPECT_EQ(summaries.rows[1], 55) << "skipped";
}

TEST(MaskPlaneUnion, WithAnEmptyPlaneChangesNothing) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 2);
    plane.clearTo(3);
    plane.unionWith(MaskPlane());
    EXPECT_EQ(elementsOf(plane), Mask(4, 2, 3));
    EXPECT_TRUE(plane.boundsStale());
}

} // namespace
} // namespace kovalune::test
