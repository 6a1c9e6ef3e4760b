#include "effect/raster/MaskPlane.h"

#include "tests/support/MaskShapes.h"
#include "tests/support/Random.h"
#include "tests/support/StrictHost.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr uint8_t kGarbage = 0x3C;

/// The plane becomes the mask's elements, its padding and summaries full of garbage.
void fillWithGarbageAround(MaskPlane& plane, const Mask& mask) {
    std::fill_n(plane.row(0), plane.byteSize(), kGarbage);
    for (int32_t y = 0; y < mask.height; ++y) {
        for (int32_t x = 0; x < mask.width; ++x) {
            plane.row(y)[x] = mask.at(x, y);
        }
    }
}

/// Of garbage, and stale.
MaskPlane stalePlaneOf(StrictHost& host, const Mask& mask) {
    MaskPlane plane(host.in(), mask.width, mask.height);
    fillWithGarbageAround(plane, mask);
    return plane;
}

void expectPaddingUntouched(MaskPlane& plane) {
    const PlaneSummaries summaries = summariesOf(plane);
    for (int32_t y = 0; y < plane.height(); ++y) {
        for (int32_t x = plane.width(); x < plane.rowStride(); ++x) {
            ASSERT_EQ(plane.row(y)[x], kGarbage) << "padding of row " << y;
        }
    }
    for (const uint8_t* byte = summaries.rows + plane.height(); byte != summaries.columns; ++byte) {
        ASSERT_EQ(*byte, kGarbage) << "padding of the row summary";
    }
    for (const uint8_t* byte = summaries.columns + plane.width(); byte != plane.row(0) + plane.byteSize();
         ++byte) {
        ASSERT_EQ(*byte, kGarbage) << "padding of the column summary";
    }
}

bool isZero(const FrameRect& rect) {
    return rect.top == 0 && rect.left == 0 && rect.bottom == 0 && rect.right == 0;
}

/// Calls `check(mask)` for all shapes in many sizes.
template <class Check>
void forManyMasks(const Check& check) {
    Random random(11);
    for (int round = 0; round < 20; ++round) {
        for (const MaskShape shape : kMaskShapes) {
            const int32_t width = random.between(1, 70);
            const int32_t height = random.between(1, 19);
            check(makeMask(shape, width, height, random));
            if (testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(MaskPlaneOperations, ClearToZeroEmptiesElementsSummariesAndBounds) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane = stalePlaneOf(host, mask);
        plane.clearTo(0);
        ASSERT_EQ(elementsOf(plane), Mask(mask.width, mask.height, 0));
        ASSERT_EQ(summaryFault(plane), "");
        ASSERT_TRUE(isZero(plane.bounds()));
        ASSERT_FALSE(plane.activityStale());
        ASSERT_FALSE(plane.boundsStale());
        expectPaddingUntouched(plane);
    });
}

TEST(MaskPlaneOperations, ClearToAValueFillsEverything) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane = stalePlaneOf(host, mask);
        plane.clearTo(200);
        ASSERT_EQ(elementsOf(plane), Mask(mask.width, mask.height, 200));
        const PlaneSummaries summaries = summariesOf(plane);
        ASSERT_EQ(std::count(summaries.rows, summaries.rows + plane.height(), 1), mask.height);
        ASSERT_EQ(std::count(summaries.columns, summaries.columns + plane.width(), 1), mask.width);
        ASSERT_EQ(plane.bounds().top, 0);
        ASSERT_EQ(plane.bounds().left, 0);
        ASSERT_EQ(plane.bounds().bottom, mask.height);
        ASSERT_EQ(plane.bounds().right, mask.width);
        ASSERT_FALSE(plane.activityStale());
        ASSERT_FALSE(plane.boundsStale());
        expectPaddingUntouched(plane);
    });
}

TEST(MaskPlaneOperations, InvertSwapsInAndOutAndRebuildsTheSummaries) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane = stalePlaneOf(host, mask);
        plane.invert();
        Mask inverted = mask;
        for (uint8_t& element : inverted.elements) {
            element = element == 0 ? 1 : 0;
        }
        ASSERT_EQ(elementsOf(plane), inverted);
        ASSERT_EQ(summaryFault(plane), "");
        ASSERT_FALSE(plane.activityStale());
        ASSERT_TRUE(plane.boundsStale());
        expectPaddingUntouched(plane);
    });
}

TEST(MaskPlaneOperations, InvertOfAllZeroGivesAllOneWithAllSummaryBytesOne) {
    StrictHost host;
    MaskPlane plane(host.in(), 6, 5);
    plane.clearTo(0);
    plane.invert();
    EXPECT_EQ(elementsOf(plane), Mask(6, 5, 1));
    const PlaneSummaries summaries = summariesOf(plane);
    EXPECT_EQ(std::count(summaries.rows, summaries.rows + 5, 1), 5);
    EXPECT_EQ(std::count(summaries.columns, summaries.columns + 6, 1), 6);
}

TEST(MaskPlaneOperations, InvertTakesAnyValueForIn) {
    StrictHost host;
    MaskPlane plane(host.in(), 3, 1);
    plane.clearTo(7);
    plane.row(0)[1] = 0;
    plane.invert();
    EXPECT_EQ(elementsOf(plane).elements, (std::vector<uint8_t>{0, 1, 0}));
    EXPECT_FALSE(plane.colActive(0));
    EXPECT_TRUE(plane.colActive(1));
}

TEST(MaskPlaneOperations, RefreshActivityRebuildsTheSummariesOnly) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane(host.in(), mask.width, mask.height);
        plane.clearTo(0);
        ASSERT_FALSE(plane.boundsStale());
        fillWithGarbageAround(plane, mask);
        plane.refreshActivity();
        ASSERT_EQ(elementsOf(plane), mask);
        ASSERT_EQ(summaryFault(plane), "");
        const PlaneSummaries summaries = summariesOf(plane);
        ASSERT_LE(*std::max_element(summaries.rows, summaries.rows + plane.height()), 1);
        ASSERT_LE(*std::max_element(summaries.columns, summaries.columns + plane.width()), 1);
        ASSERT_FALSE(plane.activityStale());
        ASSERT_TRUE(plane.boundsStale());
        expectPaddingUntouched(plane);
    });
}

TEST(MaskPlaneOperations, RefreshActivityOfAPlaneWithoutRowsRefreshesTheBounds) {
    MaskPlane plane;
    ASSERT_FALSE(plane.boundsStale());
    plane.refreshActivity();
    EXPECT_FALSE(plane.activityStale());
    EXPECT_TRUE(plane.boundsStale());
    EXPECT_TRUE(isZero(plane.bounds()));
}

FrameRect plainBounds(const Mask& mask) {
    int32_t top = mask.height;
    int32_t left = mask.width;
    int32_t bottom = 0;
    int32_t right = 0;
    for (int32_t y = 0; y < mask.height; ++y) {
        for (int32_t x = 0; x < mask.width; ++x) {
            if (mask.at(x, y) != 0) {
                top = std::min(top, y);
                left = std::min(left, x);
                bottom = std::max(bottom, y + 1);
                right = std::max(right, x + 1);
            }
        }
    }
    return {static_cast<int16_t>(top), static_cast<int16_t>(left), static_cast<int16_t>(bottom),
            static_cast<int16_t>(right)};
}

TEST(MaskPlaneOperations, RefreshBoundsFindsTheElementsAlsoOfAStalePlane) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane = stalePlaneOf(host, mask);
        const FrameRect plain = plainBounds(mask);
        const bool holds = plain.top < plain.bottom;
        ASSERT_EQ(plane.refreshBounds(), holds);
        ASSERT_FALSE(plane.activityStale());
        ASSERT_EQ(plane.boundsStale(), !holds);
        if (holds) {
            ASSERT_EQ(plane.bounds().top, plain.top);
            ASSERT_EQ(plane.bounds().left, plain.left);
            ASSERT_EQ(plane.bounds().bottom, plain.bottom);
            ASSERT_EQ(plane.bounds().right, plain.right);
        } else {
            ASSERT_TRUE(isZero(plane.bounds()));
        }
    });
}

TEST(MaskPlaneOperations, RefreshBoundsTrustsSummariesThatAreNotStale) {
    StrictHost host;
    MaskPlane plane(host.in(), 8, 8);
    plane.clearTo(0);
    plane.row(6)[6] = 1;
    EXPECT_FALSE(plane.refreshBounds());
    summariesOf(plane).rows[3] = 1;
    summariesOf(plane).columns[5] = 1;
    EXPECT_TRUE(plane.refreshBounds());
    EXPECT_EQ(plane.bounds().top, 3);
    EXPECT_EQ(plane.bounds().bottom, 4);
    EXPECT_EQ(plane.bounds().left, 5);
    EXPECT_EQ(plane.bounds().right, 6);
}

TEST(MaskPlaneOperations, CopyFromTakesElementsSummariesAndNothingElse) {
    StrictHost host;
    forManyMasks([&](const Mask& mask) {
        MaskPlane plane = stalePlaneOf(host, mask);
        const MaskPlane other = planeOf(host, mask);
        plane.copyFrom(other);
        ASSERT_EQ(elementsOf(plane), mask);
        ASSERT_EQ(summaryFault(plane), "");
        ASSERT_FALSE(plane.activityStale());
        ASSERT_TRUE(plane.boundsStale());
        ASSERT_EQ(plane.useCount(), 1) << "no second handle on the other's bytes";
        expectPaddingUntouched(plane);
    });
}

TEST(MaskPlaneOperations, CopyFromASmallerPlaneLeavesTheRestEmpty) {
    StrictHost host;
    MaskPlane plane(host.in(), 3, 2);
    plane.clearTo(9);
    MaskPlane other(host.in(), 2, 1);
    other.clearTo(7);
    plane.copyFrom(other);
    EXPECT_EQ(elementsOf(plane).elements, (std::vector<uint8_t>{7, 7, 0, 0, 0, 0}));
    EXPECT_EQ(summaryFault(plane), "");
}

TEST(MaskPlaneOperations, CopyFromItsOwnBytesChangesNothing) {
    StrictHost host;
    MaskPlane plane(host.in(), 3, 2);
    plane.clearTo(9);
    MaskPlane second;
    second.shareOf(plane);
    plane.copyFrom(second);
    EXPECT_EQ(elementsOf(plane), Mask(3, 2, 9));
    EXPECT_EQ(summaryFault(plane), "");
}

} // namespace
} // namespace kovalune::test
