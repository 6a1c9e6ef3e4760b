#include "effect/raster/SameBytes.h"
#include "effect/raster/PixelTraits.h"
#include "tests/support/Random.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

TEST(SameBytes, DifferByAnyBit) {
    for (std::size_t at = 0; at < 132; ++at) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::vector<uint8_t> a(132, 0x5a);
            std::vector<uint8_t> b = a;
            EXPECT_TRUE(areSameBytes<132>(a.data(), b.data()));
            b[at] = static_cast<uint8_t>(b[at] ^ 1U << bit);
            EXPECT_FALSE(areSameBytes<132>(a.data(), b.data()));
            EXPECT_EQ(areSameBytes<20>(a.data(), b.data()), at >= 20);
        }
    }
}

template <class Format>
class SamePixels : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(SamePixels, AllFormats);

TYPED_TEST(SamePixels, EndWhereAnyChannelIsAnother) {
    using Pixel = typename TypeParam::Pixel;
    Random random(7);
    for (int round = 0; round < 3000; ++round) {
        std::vector<Pixel> pixels(static_cast<std::size_t>(random.between(1, 90)), Pixel{1, 2, 3, 4});
        for (int n = random.below(3); n > 0; --n) {
            Pixel& other = pixels[static_cast<std::size_t>(random.below(static_cast<int>(pixels.size())))];
            other = random.chance(50) ? Pixel{1, 2, 3, 5} : Pixel{0, 2, 3, 4};
        }
        const auto end = static_cast<int32_t>(pixels.size());
        const int32_t x = random.below(end);
        int32_t expected = x + 1;
        while (expected < end &&
               std::memcmp(&pixels[static_cast<std::size_t>(x)], &pixels[static_cast<std::size_t>(expected)],
                           sizeof(Pixel)) == 0) {
            ++expected;
        }
        ASSERT_EQ(endOfSamePixels(pixels.data(), x, end), expected) << "round " << round;
    }
}

} // namespace
} // namespace kovalune::test
