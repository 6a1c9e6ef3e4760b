#include "effect/raster/MaskPlane.h"

#include "effect/share/AEUtil/AEException.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/StrictHost.h"

#include <gtest/gtest.h>
#include <type_traits>
#include <utility>

namespace kovalune::test {
namespace {

void expectBounds(const FrameRect& bounds, int32_t top, int32_t left, int32_t bottom, int32_t right) {
    EXPECT_EQ(bounds.top, top);
    EXPECT_EQ(bounds.left, left);
    EXPECT_EQ(bounds.bottom, bottom);
    EXPECT_EQ(bounds.right, right);
}

void expectEmpty(const MaskPlane& plane) {
    EXPECT_EQ(plane.row(0), nullptr);
    EXPECT_EQ(plane.byteSize(), 0U);
    EXPECT_EQ(plane.width(), 0);
    EXPECT_EQ(plane.height(), 0);
    EXPECT_EQ(plane.rowBytes(), 0);
    EXPECT_EQ(plane.rowStride(), 0);
    expectBounds(plane.bounds(), 0, 0, 0, 0);
    EXPECT_EQ(plane.useCount(), 1) << "an empty plane has an owner of its own";
}

TEST(MaskPlaneStorage, DefaultPlaneIsEmptyWithBothFlagsDown) {
    const MaskPlane plane;
    expectEmpty(plane);
    EXPECT_FALSE(plane.activityStale());
    EXPECT_FALSE(plane.boundsStale());
}

TEST(MaskPlaneStorage, OfFiveByThreeTakes36Bytes) {
    StrictHost host;
    MaskPlane plane(host.in(), 5, 3);
    EXPECT_EQ(plane.width(), 5);
    EXPECT_EQ(plane.height(), 3);
    EXPECT_EQ(plane.rowBytes(), 8);
    EXPECT_EQ(plane.rowStride(), 8);
    EXPECT_EQ(plane.byteSize(), 36U);
    EXPECT_EQ(layoutFault(plane), "");
    expectBounds(plane.bounds(), 0, 0, 3, 5);
    EXPECT_TRUE(plane.activityStale());
    EXPECT_TRUE(plane.boundsStale());
    EXPECT_EQ(plane.useCount(), 1);
}

TEST(MaskPlaneStorage, FollowsTheFormulaForAllSmallSizes) {
    StrictHost host;
    for (int32_t w = 1; w <= 20; ++w) {
        for (int32_t h = 1; h <= 20; ++h) {
            MaskPlane plane(host.in(), w, h);
            const int32_t rowWords = (w + 3) / 4;
            const int32_t colWords = (h + 3) / 4;
            ASSERT_EQ(plane.rowBytes(), rowWords * 4);
            ASSERT_EQ(plane.byteSize(), static_cast<uint32_t>(((h + 1) * rowWords + colWords) * 4));
            ASSERT_EQ(layoutFault(plane), "") << w << " by " << h;
        }
    }
}

TEST(MaskPlaneStorage, IsOneHostHandleOfItsSizeAndIsNotCleared) {
    host::judge::JudgeOptions options = strictOptions();
    options.recordCalls = true;
    StrictHost host(options);
    const MaskPlane plane(host.in(), 5, 3);
    EXPECT_EQ(host.countCalls("host_new_handle"), 1);
    EXPECT_EQ(host.audit().liveHandles, 1);
    EXPECT_EQ(host.audit().liveLocks, 1);
    EXPECT_EQ(plane.row(1)[2], 0xCD) << "what the host left in fresh memory";
}

static_assert(!std::is_copy_constructible_v<MaskPlane> && !std::is_copy_assignable_v<MaskPlane>,
              "a second handle has to be asked for");
static_assert(!std::is_constructible_v<MaskView, MaskPlane>, "a view on a plane that ends at once");

TEST(MaskPlaneStorage, HandlesShareTheElements) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(0);
    MaskPlane second;
    second.shareOf(plane);
    EXPECT_EQ(second.row(0), plane.row(0));
    EXPECT_EQ(plane.useCount(), 2);
    second.row(2)[1] = 9;
    EXPECT_EQ(plane.row(2)[1], 9);
    second.clearTo(3);
    EXPECT_EQ(plane.row(0)[0], 3);
    EXPECT_TRUE(plane.rowActive(3));
    EXPECT_EQ(host.audit().liveHandles, 1);
}

TEST(MaskPlaneStorage, SharingTakesAllMarksAndReleasesTheOldBytes) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    MaskPlane other(host.in(), 7, 2);
    other.clearTo(1);
    EXPECT_EQ(host.audit().liveHandles, 2);
    plane.shareOf(other);
    EXPECT_EQ(host.audit().liveHandles, 1);
    EXPECT_EQ(plane.row(0), other.row(0));
    EXPECT_EQ(plane.width(), 7);
    EXPECT_EQ(plane.height(), 2);
    summariesOf(plane).rows[1] = 0;
    summariesOf(plane).columns[6] = 0;
    EXPECT_FALSE(other.rowActive(1));
    EXPECT_FALSE(other.colActive(6));
    EXPECT_EQ(plane.byteSize(), other.byteSize());
    EXPECT_FALSE(plane.activityStale());
    EXPECT_FALSE(plane.boundsStale());
    expectBounds(plane.bounds(), 0, 0, 2, 7);
}

TEST(MaskPlaneStorage, SurvivesSharingItself) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(5);
    plane.shareOf(plane);
    EXPECT_EQ(plane.useCount(), 1);
    EXPECT_EQ(plane.row(3)[3], 5);
}

TEST(MaskPlaneStorage, MarksBelongToTheHandle) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    MaskPlane second;
    second.shareOf(plane);
    plane.clearTo(5);
    EXPECT_FALSE(plane.activityStale());
    EXPECT_TRUE(second.activityStale());
    EXPECT_TRUE(second.rowActive(3)) << "the bytes themselves are shared";
}

TEST(MaskPlaneStorage, MovingHandsTheBytesOver) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(5);
    MaskPlane taken(std::move(plane));
    EXPECT_EQ(taken.useCount(), 1);
    EXPECT_EQ(taken.row(3)[3], 5);
    EXPECT_FALSE(taken.activityStale());
    MaskPlane other(host.in(), 7, 2);
    EXPECT_EQ(host.audit().liveHandles, 2);
    other = std::move(taken);
    EXPECT_EQ(host.audit().liveHandles, 1);
    EXPECT_EQ(other.width(), 4);
    EXPECT_EQ(other.useCount(), 1);
    EXPECT_EQ(other.row(3)[3], 5);
    EXPECT_FALSE(other.activityStale()) << "the marks go with the bytes";
    EXPECT_FALSE(other.boundsStale());
    expectBounds(other.bounds(), 0, 0, 4, 4);
}

TEST(MaskPlaneStorage, LivesAsLongAsItsLastHandle) {
    StrictHost host;
    {
        MaskPlane kept;
        {
            MaskPlane plane(host.in(), 4, 4);
            plane.clearTo(8);
            kept.shareOf(plane);
        }
        EXPECT_EQ(kept.useCount(), 1);
        EXPECT_EQ(kept.row(3)[0], 8);
        EXPECT_EQ(host.audit().liveHandles, 1);
    }
    EXPECT_EQ(host.audit().liveHandles, 0);
}

TEST(MaskPlaneStorage, ResizeLeavesOtherHandlesOnTheOldBytes) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(6);
    MaskPlane old;
    old.shareOf(plane);
    plane.resize(host.in(), 5, 3);
    EXPECT_NE(plane.row(0), old.row(0));
    EXPECT_EQ(plane.byteSize(), 36U);
    EXPECT_TRUE(plane.activityStale());
    EXPECT_TRUE(plane.boundsStale());
    expectBounds(plane.bounds(), 0, 0, 3, 5);
    EXPECT_EQ(old.useCount(), 1);
    EXPECT_EQ(old.row(3)[3], 6);
    EXPECT_EQ(old.width(), 4);
}

TEST(MaskPlaneStorage, ResizeToNothingLeavesAnEmptyPlaneWithBothFlagsUp) {
    StrictHost host;
    for (const auto& [w, h] : {std::pair<int32_t, int32_t>{0, 9}, {9, 0}, {0, 0}, {0, 65536}}) {
        MaskPlane plane(host.in(), 4, 4);
        plane.clearTo(1);
        plane.resize(host.in(), w, h);
        expectEmpty(plane);
        EXPECT_TRUE(plane.activityStale());
        EXPECT_TRUE(plane.boundsStale());
        EXPECT_EQ(host.audit().liveHandles, 0);
    }
}

/// The code that making a plane raises where this host call fails.
PF_Err codeOfFailedCall(StrictHost& host, int call) {
    host::judge::FaultPlan plan;
    plan.failCall = call;
    host.arm(plan);
    try {
        const MaskPlane plane(host.in(), 5, 3);
    } catch (const AEUtil::AEException& error) {
        return error.code();
    } catch (long missingSuite) {
        return static_cast<PF_Err>(missingSuite);
    }
    return PF_Err_NONE;
}

TEST(MaskPlaneStorage, FailureOfAnyHostCallRaisesAndLeavesNothing) {
    StrictHost host;
    EXPECT_EQ(codeOfFailedCall(host, 1), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(host.struckCall(), "AcquireSuite");
    EXPECT_EQ(codeOfFailedCall(host, 2), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(host.struckCall(), "host_new_handle");
    EXPECT_EQ(codeOfFailedCall(host, 3), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(host.struckCall(), "host_lock_handle");
    EXPECT_EQ(host.audit().liveHandles, 0);
    EXPECT_EQ(host.audit().liveSuites, 0);
}

TEST(MaskPlaneStorage, FailedResizeLeavesThePlaneAsItWas) {
    StrictHost host;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(2);
    host::judge::FaultPlan plan;
    plan.failCall = 2;
    host.arm(plan);
    EXPECT_THROW(plane.resize(host.in(), 50, 50), AEUtil::AEException);
    EXPECT_EQ(host.struckCall(), "host_new_handle");
    EXPECT_EQ(plane.width(), 4);
    EXPECT_EQ(plane.row(3)[3], 2);
    EXPECT_EQ(plane.useCount(), 1);
}

TEST(MaskPlaneStorage, SizesBeyond32BitsAreOutOfMemory) {
    StrictHost host;
    for (const int32_t side : {70000, 1 << 20, 0x7ffffff0}) {
        try {
            const MaskPlane plane(host.in(), side, side);
            FAIL() << side;
        } catch (const AEUtil::AEException& error) {
            EXPECT_EQ(error.code(), PF_Err_OUT_OF_MEMORY);
        }
    }
}

} // namespace
} // namespace kovalune::test
