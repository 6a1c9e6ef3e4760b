#include "effect/share/SizeProduct.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

static_assert(sizeProduct<int64_t>(32767, 32767 * 16) == int64_t{17178820624}, "no product in 32 bits");
static_assert(sizeProduct<int64_t>(-3, int64_t{1} << 40) == -3 * (int64_t{1} << 40),
              "rows may stand before the first");
static_assert(sizeProduct<int32_t>(46341, 46340) == 2147441940, "what fits is taken");

#ifndef NDEBUG
TEST(SizeProductDeathTest, EndsTheProcessOfADebugBuildWhereItDoesNotFit) {
    EXPECT_DEATH(static_cast<void>(sizeProduct<int32_t>(46341, 46341)), "does not fit");
    EXPECT_DEATH(static_cast<void>(sizeProduct<uint32_t>(-1, 5)), "does not fit");
    EXPECT_DEATH(static_cast<void>(sizeProduct<int64_t>(int64_t{1} << 32, uint64_t{1} << 31)),
                 "does not fit");
}
#endif

TEST(SizeProduct, IsThatOfAllNumbers) {
    for (const int64_t a : {-32767, -1, 0, 1, 5, 32767, 65536}) {
        for (const int64_t b : {-524272, 0, 3, 524272}) {
            EXPECT_EQ(sizeProduct<int64_t>(static_cast<int32_t>(a), static_cast<int32_t>(b)), a * b);
        }
    }
}

} // namespace
} // namespace kovalune::test
