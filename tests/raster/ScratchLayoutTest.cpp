// Scratch memory that is dealt out in parts.

#include "effect/raster/ScratchBlock.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(ScratchLayout, GivesEachPartItsOwnCacheLines) {
    alignas(64) uint8_t memory[512] = {};
    ScratchLayout layout(memory);
    EXPECT_EQ(layout.take<uint8_t>(1), memory);
    EXPECT_EQ(static_cast<void*>(layout.take<double>(9)), memory + 64);
    EXPECT_EQ(static_cast<void*>(layout.take<uint32_t>(16)), memory + 192);
    EXPECT_EQ(static_cast<void*>(layout.take<uint16_t>(33)), memory + 256);
    EXPECT_EQ(layout.bytes(), 384U);
}

TEST(ScratchLayout, TellsWithoutMemoryHowMuchItTakes) {
    ScratchLayout layout;
    EXPECT_EQ(layout.bytes(), 0U);
    EXPECT_EQ(layout.take<uint8_t>(1), nullptr);
    EXPECT_EQ(layout.take<double>(9), nullptr);
    EXPECT_EQ(layout.bytes(), 192U);
}

} // namespace
} // namespace kovalune::test
