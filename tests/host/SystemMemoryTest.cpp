#include "host/SystemMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace kovalune::test {
using namespace host;
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

class SystemMemorySizes : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(All, SystemMemorySizes,
                         testing::Values(1, 63, 4096, kMegabyte - 1, kMegabyte, kMegabyte + 1, 2 * kMegabyte,
                                         5 * kMegabyte + 4097));

TEST_P(SystemMemorySizes, AllBytesAreThereAndZerosWhereItSaysSo) {
    const SystemMemory memory = takeFromSystem(GetParam());
    ASSERT_NE(memory.base, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(memory.base) % kSystemAlignment, 0U);
    EXPECT_GE(memory.bytes, GetParam());
    std::byte* const end = memory.base + memory.bytes;
    if (memory.zeros) {
        EXPECT_TRUE(std::all_of(memory.base, end, [](std::byte byte) { return byte == std::byte{0}; }));
    }
    std::fill(memory.base, end, std::byte{0xA5});
    EXPECT_EQ(end[-1], std::byte{0xA5});
    giveToSystem(memory);
}

TEST(SystemMemory, BlocksNextToEachOtherAreApart) {
    SystemMemory blocks[4];
    for (SystemMemory& block : blocks) {
        block = takeFromSystem(3 * kMegabyte + 17);
        ASSERT_NE(block.base, nullptr);
    }
    for (int i = 0; i < 4; ++i) {
        std::fill(blocks[i].base, blocks[i].base + blocks[i].bytes, static_cast<std::byte>(i + 1));
    }
    giveToSystem(blocks[1]);
    for (const int i : {0, 2, 3}) {
        EXPECT_TRUE(std::all_of(blocks[i].base, blocks[i].base + blocks[i].bytes,
                                [i](std::byte byte) { return byte == static_cast<std::byte>(i + 1); }));
        giveToSystem(blocks[i]);
    }
}

#if defined(__linux__)
TEST(SystemMemory, LargeBlocksComeAsZeros) {
    const SystemMemory memory = takeFromSystem(2 * kMegabyte);
    EXPECT_TRUE(memory.zeros);
    giveToSystem(memory);
}
#endif

} // namespace
} // namespace kovalune::test
