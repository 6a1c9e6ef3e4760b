#include "effect/raster/MaskRuns.h"
#include "tests/support/Random.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace kovalune::test {
namespace {

using Runs = std::vector<std::pair<int32_t, int32_t>>;

Runs plainRuns(const std::vector<uint8_t>& mask, int32_t x, int32_t end) {
    Runs runs;
    for (bool inside = false; x < end; ++x) {
        const bool in = mask[static_cast<std::size_t>(x)] != 0;
        if (in && !inside) {
            runs.emplace_back(x, x);
        }
        if (in) {
            runs.back().second = x + 1;
        }
        inside = in;
    }
    return runs;
}

TEST(MaskRuns, AreThoseOfAPlainWalkWhateverTheMaskHolds) {
    Random random(71);
    for (int round = 0; round < 2000; ++round) {
        const int32_t count = random.below(70);
        const int32_t density = random.below(5);
        std::vector<uint8_t> mask(
            static_cast<std::size_t>(count)); // of its own length: reading past it is noticed
        for (uint8_t& byte : mask) {
            const bool in = random.below(4) < density;
            byte = in ? static_cast<uint8_t>(1 + random.below(255)) : uint8_t{0};
        }
        const int32_t from = random.below(count + 1);
        Runs runs;
        forEachRun(mask.data(), from, count,
                   [&](int32_t first, int32_t past) { runs.emplace_back(first, past); });
        EXPECT_EQ(runs, plainRuns(mask, from, count));
        Runs gaps;
        forEachGap(mask.data(), from, count,
                   [&](int32_t first, int32_t past) { gaps.emplace_back(first, past); });
        std::vector<uint8_t> opposite = mask;
        for (uint8_t& element : opposite) {
            element = element == 0 ? 1 : 0;
        }
        EXPECT_EQ(gaps, plainRuns(opposite, from, count));
        const Runs all = plainRuns(mask, 0, count);
        EXPECT_EQ(endOfMaskedIn(mask.data(), 0, count), all.empty() ? 0 : all.back().second);
    }
}

} // namespace
} // namespace kovalune::test
