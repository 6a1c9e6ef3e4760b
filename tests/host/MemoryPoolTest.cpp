#include "host/MemoryPool.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace kovalune::test {
using namespace host;
namespace {

const BlockPolicy kPooled{.poolCapBytes = 4096};
const BlockPolicy kFresh{.poolCapBytes = 4096, .fresh = true};

TEST(MemoryPool, ReusesABlockOfTheSameSize) {
    MemoryPool pool;
    const MemoryBlock first = pool.take(1000, kPooled);
    pool.give(first, kPooled);
    EXPECT_EQ(pool.pooledBytes(), 1000U);
    const MemoryBlock second = pool.take(1000, kPooled);
    EXPECT_EQ(second.payload, first.payload);
    EXPECT_EQ(pool.pooledBytes(), 0U);
    pool.give(second, kPooled);
}

TEST(MemoryPool, LeavesAMuchLargerBlockAlone) {
    MemoryPool pool;
    pool.give(pool.take(4000, kPooled), kPooled);
    const MemoryBlock small = pool.take(100, kPooled);
    EXPECT_EQ(pool.pooledBytes(), 4000U);
    pool.give(small, kPooled);
}

TEST(MemoryPool, KeepsNoMoreThanTheCap) {
    MemoryPool pool;
    const MemoryBlock a = pool.take(3000, kPooled);
    const MemoryBlock b = pool.take(3000, kPooled);
    pool.give(a, kPooled);
    pool.give(b, kPooled);
    EXPECT_EQ(pool.pooledBytes(), 3000U);
}

TEST(MemoryPool, KeepsWhatCameLastInThePlaceOfWhatCameFirst) {
    MemoryPool pool;
    const MemoryBlock first = pool.take(1500, kPooled);
    const MemoryBlock second = pool.take(1600, kPooled);
    const MemoryBlock third = pool.take(1700, kPooled);
    pool.give(second, kPooled);
    pool.give(first, kPooled);
    pool.give(third, kPooled);
    EXPECT_EQ(pool.pooledBytes(), 3200U);
    const MemoryBlock again = pool.take(1500, kPooled);
    EXPECT_EQ(again.payload, first.payload);
    pool.give(again, kPooled);
}

TEST(MemoryPool, OfSeveralBlocksThatFitTheLatestIsTaken) {
    MemoryPool pool;
    const MemoryBlock first = pool.take(1000, kPooled);
    const MemoryBlock second = pool.take(1000, kPooled);
    pool.give(first, kPooled);
    pool.give(second, kPooled);
    const MemoryBlock again = pool.take(1000, kPooled);
    EXPECT_EQ(again.payload, second.payload);
    pool.give(again, kPooled);
}

TEST(MemoryPool, OnlyMemoryAsItCameFromTheSystemIsSaidToBeZeros) {
    constexpr std::size_t kLarge = std::size_t{3} << 20;
    const BlockPolicy policy{.poolCapBytes = 2 * kLarge};
    MemoryPool pool;
    const MemoryBlock fresh = pool.take(kLarge, policy);
    if (fresh.zeros) {
        EXPECT_EQ(fresh.payload[kLarge - 1], std::byte{0});
    }
    fresh.payload[7] = std::byte{1};
    pool.give(fresh, policy);
    const MemoryBlock used = pool.take(kLarge, policy);
    EXPECT_EQ(used.payload, fresh.payload);
    EXPECT_FALSE(used.zeros);
    pool.give(used, policy);
}

TEST(MemoryPool, KeepsAndReusesNoFreshBlock) {
    MemoryPool pool;
    pool.give(pool.take(1000, kFresh), kFresh);
    EXPECT_EQ(pool.pooledBytes(), 0U);
    pool.give(pool.take(1000, kPooled), kPooled);
    const MemoryBlock fresh = pool.take(1000, kFresh);
    EXPECT_EQ(pool.pooledBytes(), 1000U);
    pool.give(fresh, kFresh);
    EXPECT_EQ(pool.pooledBytes(), 1000U);
}

TEST(MemoryPool, PayloadIsAlignedButForTheOffset) {
    MemoryPool pool;
    for (const bool fresh : {false, true}) {
        const BlockPolicy policy{.dataOffset = 12, .tailBytes = 5, .fresh = fresh};
        const MemoryBlock block = pool.take(100, policy);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block.payload) % 64, 12U);
        pool.give(block, policy);
    }
}

TEST(MemoryPool, ARequestBeyondAllMemoryGivesNothing) {
    MemoryPool pool;
    EXPECT_EQ(pool.take(SIZE_MAX - 10, kPooled).payload, nullptr);
}

} // namespace
} // namespace kovalune::test
