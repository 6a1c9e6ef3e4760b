// Floats of 16 bits against those of the OpenEXR file format's own library.

#include "render/samples/HalfFloat.h"

#include <Imath/half.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace kovalune::test {

using namespace samples;

namespace {

float otherFloat(uint16_t half) {
    Imath::half value;
    value.setBits(half);
    return value;
}

TEST(HalfFloat, EveryHalfIsTheSameFloat) {
    for (uint32_t half = 0; half <= 0xffff; ++half) {
        const uint16_t bits = static_cast<uint16_t>(half);
        ASSERT_EQ(std::bit_cast<uint32_t>(floatOfHalf(bits)), std::bit_cast<uint32_t>(otherFloat(bits)))
            << std::hex << half;
    }
}

// Where the rounding turns: at every half, in the middles between two, and beside both.
TEST(HalfFloat, FloatsAroundEveryStepBecomeTheSameHalf) {
    for (uint64_t step = 0; step <= UINT32_MAX; step += 0x1000) {
        for (const uint64_t beside : {0U, 1U, 0xfffU}) {
            const float value = std::bit_cast<float>(static_cast<uint32_t>(step + beside));
            ASSERT_EQ(halfOfFloat(value), Imath::half(value).bits()) << std::hex << step + beside;
        }
    }
}

TEST(HalfFloat, SmallFloatsBecomeTheSameHalf) {
    constexpr uint32_t kSmallest = 0x32000000; // a quarter of the smallest half
    constexpr uint32_t kNormal = 0x38800000;
    for (uint32_t bits = kSmallest; bits <= kNormal; bits += 61) {
        const float value = std::bit_cast<float>(bits);
        ASSERT_EQ(halfOfFloat(value), Imath::half(value).bits()) << std::hex << bits;
        ASSERT_EQ(halfOfFloat(-value), Imath::half(-value).bits()) << std::hex << bits;
    }
}

// A float on the way would land on the middle, and the half on the wrong side of it.
TEST(HalfFloat, DoublesAreRoundedOnce) {
    constexpr double kNear = 0x1p-40; // a float has no digits for it
    for (uint32_t half = 0; half < 0x7bff; ++half) {
        const auto below = static_cast<double>(floatOfHalf(static_cast<uint16_t>(half)));
        const auto above = static_cast<double>(floatOfHalf(static_cast<uint16_t>(half + 1)));
        const double middle = (below + above) / 2;
        const double little = middle * kNear;
        ASSERT_EQ(halfOfDouble(below), half);
        ASSERT_EQ(halfOfDouble(middle - little), half);
        ASSERT_EQ(halfOfDouble(middle), half % 2 == 0 ? half : half + 1);
        ASSERT_EQ(halfOfDouble(middle + little), half + 1);
        ASSERT_EQ(halfOfDouble(-middle - little), 0x8000 | (half + 1));
    }
    EXPECT_EQ(halfOfDouble(1e300), 0x7c00);
    EXPECT_EQ(halfOfDouble(-1e300), 0xfc00);
    EXPECT_EQ(halfOfDouble(1e-300), 0);
    EXPECT_EQ(halfOfDouble(65520 - 0x1p-30), 0x7bff);
}

} // namespace
} // namespace kovalune::test
