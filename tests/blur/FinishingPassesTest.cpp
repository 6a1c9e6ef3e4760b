#include "effect/blur/FinishingPasses.h"

#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

struct Depth {
    PF_PixelFormat format;
    decltype(&clearAlphaOutside8) clear;
};

class ClearAlphaOutside : public testing::TestWithParam<Depth> {};

INSTANTIATE_TEST_SUITE_P(Depths, ClearAlphaOutside,
                         testing::Values(Depth{PF_PixelFormat_ARGB32, clearAlphaOutside8},
                                         Depth{PF_PixelFormat_ARGB64, clearAlphaOutside16},
                                         Depth{PF_PixelFormat_ARGB128, clearAlphaOutside32}),
                         [](const auto& test) { return formatName(test.param.format); });

TEST_P(ClearAlphaOutside, ZeroesAlphaWhereTheMaskIsZeroAndNothingElse) {
    const Depth depth = GetParam();
    Random random(71);
    for (int round = 0; round < 90; ++round) {
        host::HostOptions options = shuffledOptions(random.between(1, 9), 2, random.next());
        options.rowPadding = 4 * random.below(5);
        StrictHost host(options);
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 25), random.between(1, 25), random);
        const FrameRect rect = rectAt(random.below(4), random.below(4), mask.width, mask.height);
        TestWorld dst(host, depth.format, rect.right + random.below(3), rect.bottom + random.below(3));
        PlainPicture expected = randomPicture(depth.format, dst.width(), dst.height(), random, Range::kWild);
        write(expected, dst);
        for (int32_t y = 0; y < mask.height; ++y) {
            for (int32_t x = 0; x < mask.width; ++x) {
                if (mask.at(x, y) == 0) {
                    expected.at(rect.left + x, rect.top + y).alpha = 0.0;
                }
            }
        }
        EXPECT_EQ(depth.clear(host.in(), dst.get(), rect, planeOf(host, mask)), PF_Err_NONE);
        ASSERT_EQ(difference(expected, dst), "") << "round " << round;
    }
}

TEST_P(ClearAlphaOutside, HandsBackTheHostsCode) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld dst(host, depth.format, 3, 3);
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(0);
    host::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 99;
    host.arm(plan);
    EXPECT_EQ(depth.clear(host.in(), dst.get(), wholeRect(3, 3), mask), 99);
}

TEST_P(ClearAlphaOutside, OfAMissingWorldIsOutOfMemory) {
    const Depth depth = GetParam();
    StrictHost host;
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(0);
    EXPECT_EQ(depth.clear(host.in(), nullptr, wholeRect(3, 3), mask), PF_Err_OUT_OF_MEMORY);
}

} // namespace
} // namespace kovalune::test
