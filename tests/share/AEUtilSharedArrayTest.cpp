#include "effect/share/AEUtil/SharedArray.h"
#include "tests/frame/StubHost.h"
#include "tests/support/AllocationControl.h"

#include <gtest/gtest.h>
#include <utility>

namespace AEUtil {
namespace {

using kovalune::test::kHandleSuiteText;
using kovalune::test::liveAllocations;
using kovalune::test::NoMemory;
using kovalune::test::StubHost;

/// Counts its calls and deletes nothing.
struct CountingDeleter {
    int* calls;
    void operator()(uint8_t*) const { ++*calls; }
};

/// As the host's memory does where its suite is missing.
struct ThrowingDeleter {
    void operator()(uint8_t*) const { throw 516L; }
};

TEST(SharedArray, StartsWithoutAnArrayButWithABlock) {
    const long before = liveAllocations();
    {
        const SharedArray array;
        EXPECT_EQ(array.address(), nullptr);
        EXPECT_EQ(array.useCount(), 1);
        EXPECT_EQ(liveAllocations(), before + 1);
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedArray, HasNoBlockWithoutMemoryForOne) {
    const NoMemory failing;
    const SharedArray array;
    EXPECT_EQ(array.useCount(), 0);
    EXPECT_EQ(array.address(), nullptr);
    const SharedArray copy = array;
    EXPECT_EQ(copy.useCount(), 0);
}

TEST(SharedArray, CopiesShareAndCount) {
    const long before = liveAllocations();
    {
        const SharedArray first(5);
        EXPECT_EQ(first.useCount(), 1);
        {
            const SharedArray second = first;
            EXPECT_EQ(second.address(), first.address());
            EXPECT_EQ(first.useCount(), 2);
            EXPECT_EQ(second.useCount(), 2);
        }
        EXPECT_EQ(first.useCount(), 1);
        first.address()[4] = 9;
        EXPECT_EQ(first.address()[0], 0);
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedArray, AssignmentReleasesTheOldBlockAndSharesTheNew) {
    const long before = liveAllocations();
    {
        SharedArray first(5);
        const SharedArray second(7);
        first = second;
        EXPECT_EQ(first.address(), second.address());
        EXPECT_EQ(second.useCount(), 2);
        EXPECT_EQ(liveAllocations(), before + 2);
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedArray, AssignmentToItselfChangesNothing) {
    const long before = liveAllocations();
    {
        SharedArray array(5);
        uint16_t* const address = array.address();
        array.address()[2] = 3;
        const SharedArray& itself = array;
        array = itself;
        EXPECT_EQ(array.address(), address);
        EXPECT_EQ(array.address()[2], 3);
        EXPECT_EQ(array.useCount(), 1);
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedArray, ThrowsWithoutMemoryForItsElements) {
    const long before = liveAllocations();
    bool thrown = false;
    {
        const NoMemory failing;
        try {
            const SharedArray array(5);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    }
    EXPECT_TRUE(thrown);
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedCount, ReleasesTheArrayWithTheLastHandle) {
    int deleted = 0;
    uint8_t array = 0;
    SharedCount first = SharedCount::adopt(&array, CountingDeleter{&deleted});
    SharedCount second = first;
    EXPECT_EQ(second.useCount(), 2);
    first.release();
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(first.useCount(), 0);
    EXPECT_EQ(second.useCount(), 1);
    second.release();
    EXPECT_EQ(deleted, 1);
    second.release();
    EXPECT_EQ(deleted, 1);
}

TEST(SharedCount, FreesTheBlockOfANullArrayWithoutItsDeleter) {
    int deleted = 0;
    const long before = liveAllocations();
    {
        const SharedCount handle = SharedCount::adopt<uint8_t>(nullptr, CountingDeleter{&deleted});
        EXPECT_EQ(handle.useCount(), 1);
        EXPECT_EQ(liveAllocations(), before + 1);
    }
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedCount, DeletesAnArrayForWhichThereIsNoBlock) {
    int deleted = 0;
    uint8_t array = 0;
    bool thrown = false;
    {
        const NoMemory failing;
        try {
            const SharedCount handle = SharedCount::adopt(&array, CountingDeleter{&deleted});
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    }
    EXPECT_TRUE(thrown);
    EXPECT_EQ(deleted, 1);
}

TEST(SharedCount, AssignmentCountsOnBothSides) {
    int deletedFirst = 0;
    int deletedSecond = 0;
    uint8_t array = 0;
    {
        SharedCount first = SharedCount::adopt(&array, CountingDeleter{&deletedFirst});
        SharedCount second = SharedCount::adopt(&array, CountingDeleter{&deletedSecond});
        second = first;
        EXPECT_EQ(deletedSecond, 1);
        EXPECT_EQ(first.useCount(), 2);
        const SharedCount& itself = first;
        first = itself;
        EXPECT_EQ(first.useCount(), 2);
        EXPECT_EQ(deletedFirst, 0);
    }
    EXPECT_EQ(deletedFirst, 1);
}

TEST(SharedCount, MovingLeavesTheCountAlone) {
    int deleted = 0;
    uint8_t array = 0;
    SharedCount first = SharedCount::adopt(&array, CountingDeleter{&deleted});
    const SharedCount second = std::move(first);
    EXPECT_EQ(second.useCount(), 1);
    EXPECT_EQ(deleted, 0);
}

TEST(SharedCount, GivesHostMemoryBackToTheHost) {
    StubHost host;
    {
        auto* const bytes = static_cast<uint8_t*>(AEMemory::alloc(40, &host.basic));
        const SharedCount first = SharedCount::adopt(bytes, array_deleterAE<uint8_t>{&host.basic});
        const SharedCount second = first;
        EXPECT_EQ(host.liveHandles(), 1);
        EXPECT_EQ(host.liveLocks(), 1);
    }
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(SharedCount, LetsAFailureOfTheReleaseOutAndStillFreesItsBlock) {
    const long before = liveAllocations();
    uint8_t array = 0;
    long code = 0;
    {
        SharedCount handle = SharedCount::adopt(&array, ThrowingDeleter());
        try {
            handle.release();
        } catch (long thrown) {
            code = thrown;
        }
        EXPECT_EQ(handle.useCount(), 0);
    }
    EXPECT_EQ(code, 516);
    EXPECT_EQ(liveAllocations(), before);
}

TEST(SharedCount, LetsAFailureOutOfItsEnd) {
    uint8_t array = 0;
    long code = 0;
    try {
        const SharedCount handle = SharedCount::adopt(&array, ThrowingDeleter());
    } catch (long thrown) {
        code = thrown;
    }
    EXPECT_EQ(code, 516);
}

TEST(SharedCount, KeepsAFailureOfTheReleaseBackWhileAnExceptionPasses) {
    StubHost host;
    auto* const bytes = static_cast<uint8_t*>(AEMemory::alloc(40, &host.basic));
    try {
        const SharedCount handle = SharedCount::adopt(bytes, array_deleterAE<uint8_t>{&host.basic});
        host.missingSuites = {kHandleSuiteText};
        throw 7;
    } catch (int thrown) {
        EXPECT_EQ(thrown, 7);
    }
    EXPECT_EQ(host.liveHandles(), 1);
    host.missingSuites.clear();
    AEMemory::release(bytes, &host.basic);
}

} // namespace
} // namespace AEUtil
