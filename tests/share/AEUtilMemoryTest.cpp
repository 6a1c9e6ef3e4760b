#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/AEMemory.h"
#include "effect/share/AEUtil/HandleLock.h"
#include "tests/frame/StubHost.h"

#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace AEUtil {
namespace {

using kovalune::test::kHandleSuiteText;
using kovalune::test::StubHost;
using Texts = std::vector<std::string>;

const std::string kSignature =
    "void *__cdecl AEUtil::AEMemory::alloc(unsigned int,unsigned int,const struct SPBasicSuite *,"
    "unsigned int,unsigned int)";

template <class Value>
Value at(const void* address, std::ptrdiff_t offset) {
    Value value;
    std::memcpy(&value, static_cast<const std::byte*>(address) + offset, sizeof value);
    return value;
}

struct Failure {
    PF_Err code = 0;
    std::string text;
};

Failure failureOfAlloc(std::size_t bytes, StubHost& host) {
    try {
        AEMemory::alloc(bytes, &host.basic);
    } catch (const AEException& exception) {
        return {exception.code(), exception.what()};
    }
    return {};
}

TEST(AEMemory, AllocOfNothingCallsNoHostFunction) {
    StubHost host;
    EXPECT_EQ(AEMemory::alloc(0, &host.basic), nullptr);
    EXPECT_EQ(AEMemory::alloc(1000, nullptr), nullptr);
    EXPECT_EQ(host.calls, Texts{});
}

/// A host's handle function may come back here, from inside.
TEST(AEMemory, MayBeEnteredAgainFromTheHostsHandleFunctions) {
    StubHost host;
    void* inner = nullptr;
    host.fault = [&](const std::string& call, int nth) {
        if (call == "host_new_handle" && nth == 1) {
            inner = AEMemory::alloc(8, &host.basic);
            EXPECT_NE(inner, nullptr);
        } else if (call == "host_dispose_handle" && nth == 1) {
            AEMemory::release(inner, &host.basic);
        }
        return PF_Err{0};
    };
    void* const outer = AEMemory::alloc(16, &host.basic);
    EXPECT_NE(outer, nullptr);
    EXPECT_EQ(host.liveHandles(), 2);
    AEMemory::release(outer, &host.basic);
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(AEMemory, PutsAHeaderOf32BytesAheadOfTheBlock) {
    StubHost host;
    void* const block = AEMemory::alloc(1000, &host.basic);
    ASSERT_EQ(host.liveHandles(), 1);
    const PF_Handle handle = host.blocks.begin()->first;
    EXPECT_EQ(block, static_cast<std::byte*>(*handle) + 32);
    EXPECT_EQ(at<PF_Handle>(block, -32), handle);
    const std::ptrdiff_t flag = -32 + static_cast<std::ptrdiff_t>(sizeof(PF_Handle));
    EXPECT_EQ(at<uint32_t>(block, flag), 1U);
    EXPECT_EQ(at<uint32_t>(block, flag + 4), 1000U);
    EXPECT_EQ(at<uint64_t>(block, flag + 8), 0U);
    AEMemory::release(block, &host.basic);
}

TEST(AEMemory, KeepsTheBlockLockedToItsRelease) {
    StubHost host;
    void* const block = AEMemory::alloc(1, &host.basic);
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite " + kHandleSuiteText, "host_new_handle 33",
                                     "host_lock_handle", "ReleaseSuite " + kHandleSuiteText}));
    EXPECT_EQ(host.liveLocks(), 1);
    host.callTexts.clear();
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite " + kHandleSuiteText, "host_unlock_handle",
                                     "host_dispose_handle", "ReleaseSuite " + kHandleSuiteText}));
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(AEMemory, GivesAllOfTheBytesAskedFor) {
    StubHost host;
    void* const block = AEMemory::alloc(777, &host.basic);
    std::memset(block, 0xEE, 777);
    EXPECT_EQ(at<uint8_t>(block, 776), 0xEE);
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(AEMemory, SaysWhichSizeTheHostCouldNotGive) {
    StubHost host;
    host.failAll("host_new_handle", 4);
    const Failure failure = failureOfAlloc(1000, host);
    EXPECT_EQ(failure.code, 4);
    EXPECT_EQ(failure.text, "..\\..\\..\\share\\AEUtil\\AEMemory(45): " + kSignature +
                                "メモリ確保に失敗しました。alloc_size=1032\n");
    EXPECT_EQ(host.suiteBalance(), 0);
    EXPECT_EQ(host.count("host_lock_handle"), 0);
}

TEST(AEMemory, LeavesNoHandleBehindThatCannotBeLocked) {
    StubHost host;
    host.failAll("host_lock_handle", 4);
    const Failure failure = failureOfAlloc(1000, host);
    EXPECT_EQ(failure.code, 4);
    EXPECT_EQ(failure.text, "..\\..\\..\\share\\AEUtil\\AEMemory(56): " + kSignature +
                                "メモリ確保に失敗しました。alloc_size=1032\n");
    EXPECT_EQ(host.callTexts,
              (Texts{"AcquireSuite " + kHandleSuiteText, "host_new_handle 1032", "host_lock_handle",
                     "host_dispose_handle", "ReleaseSuite " + kHandleSuiteText}));
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(AEMemory, CanBeUsedAgainBehindAFailure) {
    StubHost host;
    host.fault = [](const std::string& call, int nth) {
        return call == "host_new_handle" && nth == 1 ? PF_Err{4} : PF_Err{0};
    };
    EXPECT_EQ(failureOfAlloc(8, host).code, 4);
    void* const block = AEMemory::alloc(8, &host.basic);
    EXPECT_NE(block, nullptr);
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.liveHandles(), 0);
}

#if SIZE_MAX > 0xffffffffU
TEST(AEMemory, RefusesWhatTheHeaderCannotTell) {
    StubHost host;
    EXPECT_EQ(failureOfAlloc(std::size_t{1} << 32, host).code, 4);
    EXPECT_EQ(failureOfAlloc((std::size_t{1} << 32) - 32, host).code, 4);
    EXPECT_EQ(failureOfAlloc(SIZE_MAX, host).code, 4);
    EXPECT_EQ(host.liveHandles(), 0);
}
#endif

TEST(AEMemory, ThrowsALongWithoutTheHandleSuite) {
    StubHost host;
    void* const block = AEMemory::alloc(8, &host.basic);
    host.missingSuites = {kHandleSuiteText};
    EXPECT_THROW(AEMemory::alloc(8, &host.basic), long);
    EXPECT_THROW(AEMemory::release(block, &host.basic), long);
    EXPECT_EQ(host.liveHandles(), 1);
    host.missingSuites.clear();
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.liveHandles(), 0);
}

TEST(AEMemory, ReleaseOfNothingCallsNoHostFunction) {
    StubHost host;
    void* const block = AEMemory::alloc(8, &host.basic);
    const std::size_t calls = host.calls.size();
    AEMemory::release(nullptr, &host.basic);
    AEMemory::release(block, nullptr);
    EXPECT_EQ(host.calls.size(), calls);
    AEMemory::release(block, &host.basic);
}

TEST(AEMemory, ReleaseSkipsANullHandleInTheHeader) {
    StubHost host;
    void* const block = AEMemory::alloc(8, &host.basic);
    const auto handle = at<PF_Handle>(block, -32);
    std::memset(static_cast<std::byte*>(block) - 32, 0, sizeof handle);
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.count("host_unlock_handle"), 0);
    EXPECT_EQ(host.count("host_dispose_handle"), 0);
    std::memcpy(static_cast<std::byte*>(block) - 32, &handle, sizeof handle);
    AEMemory::release(block, &host.basic);
    EXPECT_EQ(host.liveHandles(), 0);
}

// ---- Threads: a handle suite that notices when two are inside

std::atomic<int> inside{0};
std::atomic<bool> overlapped{false};

void passThrough() {
    if (inside.fetch_add(1) != 0) {
        overlapped = true;
    }
    std::this_thread::yield();
    inside.fetch_sub(1);
}

struct PlainBlock {
    void* memory;
};

PF_Handle plainNew(A_HandleSize size) {
    passThrough();
    auto* const block = new PlainBlock{::operator new(static_cast<std::size_t>(size))};
    return &block->memory;
}
void* plainLock(PF_Handle handle) {
    passThrough();
    return *handle;
}
void plainUnlock(PF_Handle) {
    passThrough();
}
void plainDispose(PF_Handle handle) {
    passThrough();
    ::operator delete(*handle);
    delete static_cast<PlainBlock*>(static_cast<void*>(handle));
}
const PFHandleSuite1 plainHandles = {plainNew, plainLock, plainUnlock, plainDispose, nullptr, nullptr};

int32_t plainAcquire(const char*, int32_t, const void** table) {
    *table = &plainHandles;
    return 0;
}
int32_t plainRelease(const char*, int32_t) {
    return 0;
}

TEST(AEMemory, EntersTheHostsHandleFunctionsOneThreadAtATime) {
    SPBasicSuite basic = {};
    basic.AcquireSuite = plainAcquire;
    basic.ReleaseSuite = plainRelease;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&basic] {
            for (int n = 0; n < 500; ++n) {
                AEMemory::release(AEMemory::alloc(64, &basic), &basic);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(overlapped.load());
}

TEST(HandleLock, LocksForItsScope) {
    StubHost host;
    const PF_Handle handle = host.utils.host_new_handle(16);
    {
        const HandleLock lock(&host.in, handle);
        ASSERT_NE(lock.memory(), nullptr);
        EXPECT_EQ(lock.memory(), host.memoryOf(handle));
        EXPECT_EQ(host.liveLocks(), 1);
    }
    EXPECT_EQ(host.liveLocks(), 0);
    host.utils.host_dispose_handle(handle);
}

TEST(HandleLock, HasNoMemoryWhereTheHandleIsNullOrCannotBeLocked) {
    StubHost host;
    {
        const HandleLock lock(&host.in, nullptr);
        EXPECT_EQ(lock.memory(), nullptr);
    }
    EXPECT_EQ(host.calls, Texts{});
    const PF_Handle handle = host.utils.host_new_handle(16);
    host.failAll("host_lock_handle", 4);
    {
        const HandleLock lock(&host.in, handle);
        EXPECT_EQ(lock.memory(), nullptr);
    }
    EXPECT_EQ(host.count("host_unlock_handle"), 0);
    host.utils.host_dispose_handle(handle);
}

TEST(NewHandle, IsLockedForItsScopeAndStaysWithTheHost) {
    StubHost host;
    PF_Handle kept = nullptr;
    {
        const NewHandle handle(&host.in, 16);
        EXPECT_EQ(handle.err(), 0);
        kept = handle.handle();
        EXPECT_EQ(handle.memory(), host.memoryOf(kept));
        EXPECT_EQ(host.liveLocks(), 1);
    }
    EXPECT_EQ(host.liveLocks(), 0);
    EXPECT_EQ(host.count("host_dispose_handle"), 0);
    host.utils.host_dispose_handle(kept);
}

TEST(NewHandle, SaysThatTheHostMadeNone) {
    StubHost host;
    host.failAll("host_new_handle", 4);
    const NewHandle handle(&host.in, 16);
    EXPECT_EQ(handle.err(), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(handle.err(PF_Err_INTERNAL_STRUCT_DAMAGED), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(handle.memory(), nullptr);
    EXPECT_EQ(host.count("host_lock_handle"), 0);
}

TEST(NewHandle, IsDisposedOfOnceWhereItCannotBeLocked) {
    StubHost host;
    host.failAll("host_lock_handle", 4);
    {
        const NewHandle handle(&host.in, 16);
        EXPECT_EQ(handle.err(), PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(handle.handle(), nullptr);
        EXPECT_EQ(handle.memory(), nullptr);
    }
    EXPECT_EQ(host.count("host_dispose_handle"), 1);
    EXPECT_EQ(host.count("host_unlock_handle"), 0);
}

} // namespace
} // namespace AEUtil
