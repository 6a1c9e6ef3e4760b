// The 8-bit level by which a frame matches a pixel, as tools ask for it.

#include "effect/Kovalune.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace kovalune::test {
namespace {

TEST(MatchedLevel, OfAnIntegerIsTheNearest) {
    for (uint32_t level = 0; level <= 255; ++level) {
        ASSERT_EQ(matchedLevel(static_cast<uint8_t>(level)), level);
    }
    for (uint32_t channel = 0; channel <= 32768; ++channel) {
        ASSERT_EQ(matchedLevel(static_cast<uint16_t>(channel)), (channel * 255 + 16384) / 32768) << channel;
    }
}

TEST(MatchedLevel, OfAFloatWrapsAround) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    for (const auto& [channel, level] : {std::pair(0.0F, 0),
                                         {1.0F, 255},
                                         {0.5F, 128},
                                         {0.0019F, 0},
                                         {0.002F, 1},
                                         {256.0F / 255.0F, 0},
                                         {2.0F, 254},
                                         {-0.001F, 0},
                                         {-0.01F, 254},
                                         {-1.0F, 2},
                                         {1e6F, 192},
                                         {1e9F, 0},
                                         {-1e9F, 0},
                                         {inf, 0},
                                         {-inf, 0},
                                         {std::numeric_limits<float>::quiet_NaN(), 0}}) {
        EXPECT_EQ(matchedLevel(channel), level) << channel;
    }
}

} // namespace
} // namespace kovalune::test
