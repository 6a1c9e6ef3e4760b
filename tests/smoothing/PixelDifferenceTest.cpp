// Four pairs of pixels compared at once against the single comparison, at and around the limit, with transparent pixels, values
// beyond full scale, and in float what is no number.

#include "effect/smoothing/PixelDifference.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace kovalune::test {
namespace {

template <class Format>
class FourPixels : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(FourPixels, AllFormats);

uint8_t anyChannel(Random& random, uint8_t /*kind*/) {
    return static_cast<uint8_t>(random.chance(20) ? 0 : random.next());
}
uint16_t anyChannel(Random& random, uint16_t /*kind*/) {
    return static_cast<uint16_t>(random.chance(20) ? 0 : random.next());
}
float anyChannel(Random& random, float /*kind*/) {
    constexpr float kOdd[] = {0.0F,
                              -0.0F,
                              std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN(),
                              std::numeric_limits<float>::denorm_min(),
                              1.0e30F};
    return random.chance(30) ? kOdd[random.below(7)] : static_cast<float>(random.unit() * 2.0 - 0.5);
}

template <class Format>
typename Format::Pixel anyPixel(Random& random) {
    using Channel = typename Format::Channel;
    const auto channel = [&random] { return anyChannel(random, Channel{}); };
    return {channel(), channel(), channel(), channel()};
}

/// The same pixel, or one with a channel a little or far off.
template <class Format>
typename Format::Pixel nearTo(typename Format::Pixel pixel, Random& random) {
    using Channel = typename Format::Channel;
    if (random.chance(40)) {
        const auto step =
            static_cast<Channel>(static_cast<double>(Format::kFullScale) * random.below(12) / 255.0);
        pixel.red = static_cast<Channel>(pixel.red + step);
    }
    return random.chance(20) ? anyPixel<Format>(random) : pixel;
}

TYPED_TEST(FourPixels, DifferAsEachDoes) {
    using Format = TypeParam;
    Random random(81);
    int differing = 0;
    for (int round = 0; round < 40000; ++round) {
        std::vector<typename Format::Pixel> a;
        std::vector<typename Format::Pixel> b;
        for (int i = 0; i < 4; ++i) {
            a.push_back(anyPixel<Format>(random));
            b.push_back(nearTo<Format>(a.back(), random));
        }
        const auto limit = SmoothOf<Format>::limitOf(random.chance(50) ? 10 : random.between(-2, 300));
        uint32_t expected = 0;
        for (uint32_t i = 0; i < 4; ++i) {
            expected |= uint32_t{pixelsDiffer<Format>(a[i], b[i], limit)} << i;
        }
        ASSERT_EQ(fourPixelsDiffer<Format>(a.data(), b.data(), limit), expected) << "round " << round;
        differing += expected != 0 ? 1 : 0;
    }
    EXPECT_GT(differing, 1000);
    EXPECT_LT(differing, 39000);
}

} // namespace
} // namespace kovalune::test
