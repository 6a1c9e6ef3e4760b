#include "host/judge/GuardedMemory.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace kovalune::test {
using namespace host;
using namespace host::judge;
namespace {

/// The judge's memory without a host.
struct Scene {
    JudgeOptions options;
    FaultDesk faults;
    Ledger ledger{options, faults};
    GuardedMemory memory{options, ledger};
    MemoryPool pool;
};

const BlockPolicy kPolicy{.poolCapBytes = 4096};

TEST(GuardedMemory, PoolsNothingUnderAudit) {
    Scene scene;
    scene.options.audit = true;
    scene.memory.give(scene.pool, scene.memory.take(scene.pool, 1000, kPolicy), kPolicy);
    EXPECT_EQ(scene.pool.pooledBytes(), 0U);
}

TEST(GuardedMemory, IsTheHostsOwnWithoutAudit) {
    Scene scene;
    const MemoryBlock block = scene.memory.take(scene.pool, 1000, kPolicy);
    EXPECT_FALSE(block.guarded);
    scene.memory.give(scene.pool, block, kPolicy);
    EXPECT_EQ(scene.pool.pooledBytes(), 1000U);
}

// The option may change while blocks are in use: each keeps the form that it has.
TEST(GuardedMemory, TakesBlocksBackThatAreOlderThanTheOption) {
    Scene scene;
    const MemoryBlock plain = scene.memory.take(scene.pool, 1000, kPolicy);
    scene.options.audit = true;
    const MemoryBlock guarded = scene.memory.take(scene.pool, 1000, kPolicy);
    EXPECT_TRUE(guarded.guarded);
    scene.memory.give(scene.pool, plain, kPolicy);
    scene.options.audit = false;
    scene.memory.give(scene.pool, guarded, kPolicy);
    EXPECT_EQ(scene.pool.pooledBytes(), 0U);
    EXPECT_TRUE(scene.ledger.report().clean());
}

TEST(GuardedMemory, PayloadIsAlignedButForTheOffset) {
    Scene scene;
    for (const bool audit : {false, true}) {
        scene.options.audit = audit;
        const BlockPolicy policy{.dataOffset = 12};
        const MemoryBlock block = scene.memory.take(scene.pool, 100, policy);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block.payload) % 64, 12U);
        EXPECT_EQ(block.payloadBytes, 100U);
        scene.memory.give(scene.pool, block, policy);
    }
}

} // namespace
} // namespace kovalune::test
