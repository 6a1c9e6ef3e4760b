#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kovalune::test {
using namespace host;
namespace {

TEST(Handle, HoldsItsSizeAndBytes) {
    Stage stage;
    stage.during([](Call& c) {
        PF_Handle handle = c.utils().host_new_handle(100);
        EXPECT_EQ(c.utils().host_get_handle_size(handle), 100U);
        void* bytes = c.utils().host_lock_handle(handle);
        std::memset(bytes, 5, 100);
        EXPECT_EQ(*handle, bytes);
        EXPECT_EQ(c.utils().host_lock_handle(handle), bytes);
        c.utils().host_unlock_handle(handle);
        c.utils().host_unlock_handle(handle);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Handle, AnEmptyHandleCanBeLocked) {
    Stage stage;
    stage.during([](Call& c) {
        PF_Handle handle = c.utils().host_new_handle(0);
        EXPECT_NE(c.utils().host_lock_handle(handle), nullptr);
        c.utils().host_unlock_handle(handle);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Handle, ResizeKeepsTheBytesThatFit) {
    Stage stage;
    stage.during([](Call& c) {
        PF_Handle handle = c.utils().host_new_handle(4);
        std::memcpy(*handle, "abcd", 4);
        EXPECT_EQ(c.utils().host_resize_handle(1000, &handle), PF_Err_NONE);
        EXPECT_EQ(c.utils().host_get_handle_size(handle), 1000U);
        EXPECT_EQ(std::memcmp(*handle, "abcd", 4), 0);
        EXPECT_EQ(c.utils().host_resize_handle(2, &handle), PF_Err_NONE);
        EXPECT_EQ(std::memcmp(*handle, "ab", 2), 0);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Handle, AnImpossibleSizeGivesNoHandle) {
    Stage stage;
    stage.during([](Call& c) {
        EXPECT_EQ(c.utils().host_new_handle(static_cast<A_HandleSize>(-1)), nullptr);
        PF_Handle handle = c.utils().host_new_handle(4);
        EXPECT_EQ(c.utils().host_resize_handle(static_cast<A_HandleSize>(-1), &handle), PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(c.utils().host_get_handle_size(handle), 4U);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
}

TEST(Handle, LocksAndHandlesLeftBehindAreCounted) {
    Stage stage;
    PF_Handle kept = nullptr;
    stage.during([&](Call& c) {
        kept = c.utils().host_new_handle(4);
        c.utils().host_lock_handle(kept);
        return PF_Err_NONE;
    });
    const judge::AuditReport report = stage.host.audit();
    EXPECT_EQ(report.liveHandles, 1);
    EXPECT_EQ(report.liveLocks, 1);
    EXPECT_FALSE(report.clean());
    stage.during([&](Call& c) {
        c.utils().host_unlock_handle(kept);
        c.utils().host_dispose_handle(kept);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Handle, AStaleHandleIsNoticedAfterNewOnesToo) {
    Stage stage;
    stage.during([](Call& c) {
        for (int round = 0; round < 20; ++round) {
            PF_Handle stale = c.utils().host_new_handle(4);
            c.utils().host_dispose_handle(stale);
            PF_Handle fresh = c.utils().host_new_handle(4);
            EXPECT_NE(fresh, stale);
            c.utils().host_dispose_handle(stale);
            EXPECT_EQ(c.utils().host_lock_handle(stale), nullptr);
            c.utils().host_unlock_handle(stale);
            c.utils().host_dispose_handle(fresh);
        }
        return PF_Err_NONE;
    });
    const judge::AuditReport report = stage.host.audit();
    EXPECT_EQ(report.liveHandles, 0);
    ASSERT_EQ(report.misuse.size(), 60U);
    EXPECT_EQ(report.misuse[0], "dispose of an unknown handle");
    EXPECT_EQ(report.misuse[1], "lock of an unknown handle");
    EXPECT_EQ(report.misuse[2], "unlock of an unknown handle");
}

TEST(Handle, ResizeOfALockedHandleIsMisuse) {
    Stage stage;
    stage.during([](Call& c) {
        PF_Handle handle = c.utils().host_new_handle(4);
        c.utils().host_lock_handle(handle);
        EXPECT_EQ(c.utils().host_resize_handle(8, &handle), PF_Err_BAD_CALLBACK_PARAM);
        c.utils().host_unlock_handle(handle);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

} // namespace
} // namespace kovalune::test
