#include "effect/raster/MaskedCopy.h"

#include "tests/reference/PlainBlur.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

struct Depth {
    PF_PixelFormat format;
    MaskedPass* copy;
};

class MaskedCopy : public testing::TestWithParam<Depth> {};

INSTANTIATE_TEST_SUITE_P(Depths, MaskedCopy,
                         testing::Values(Depth{PF_PixelFormat_ARGB64, copyMasked16},
                                         Depth{PF_PixelFormat_ARGB128, copyMasked32}),
                         [](const auto& test) { return formatName(test.param.format); });

TEST_P(MaskedCopy, MovesWholePixelsUnderTheMaskAndNothingElse) {
    const Depth depth = GetParam();
    Random random(21);
    for (int round = 0; round < 120; ++round) {
        host::judge::JudgeOptions options = shuffledOptions(random.between(1, 9), 2, random.next());
        options.rowPadding = 4 * random.below(6);
        StrictHost host(options);
        const int32_t width = random.between(1, 70);
        const int32_t height = random.between(1, 70);
        const FrameRect rect = rectAt(random.below(5), random.below(5), width, height);
        TestWorld src(host, depth.format, rect.right + random.below(4), rect.bottom + random.below(4));
        TestWorld dst(host, depth.format, src.width(), src.height());
        const PlainPicture source =
            randomPicture(depth.format, src.width(), src.height(), random, Range::kWild);
        PlainPicture expected = randomPicture(depth.format, src.width(), src.height(), random, Range::kWild);
        write(source, src);
        write(expected, dst);
        const Mask mask =
            makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))], width, height, random);
        const bool clearOutside = random.chance(50);
        const MaskPlane plane = planeOf(host, mask);
        EXPECT_EQ(depth.copy(host.in(), {dst.get(), src.get(), rect, plane, clearOutside}), PF_Err_NONE);
        plainMaskedCopy(rect, mask, clearOutside, source, expected);
        ASSERT_EQ(difference(expected, dst), "") << "round " << round;
        ASSERT_EQ(difference(source, src), "") << "round " << round;
    }
}

TEST_P(MaskedCopy, VisitsRowsWhateverTheSummarySays) {
    const Depth depth = GetParam();
    StrictHost host;
    Random random(3);
    TestWorld src(host, depth.format, 4, 2);
    TestWorld dst(host, depth.format, 4, 2);
    write(randomPicture(depth.format, 4, 2, random), src);
    write(randomPicture(depth.format, 4, 2, random), dst);
    MaskPlane mask(host.in(), 4, 2);
    mask.clearTo(0);
    mask.row(0)[1] = 1;
    EXPECT_EQ(depth.copy(host.in(), {dst.get(), src.get(), wholeRect(4, 2), mask, true}), PF_Err_NONE);
    PlainPicture expected(depth.format, 4, 2);
    expected.at(1, 0) = read(src).at(1, 0);
    EXPECT_EQ(difference(expected, dst), "");
}

TEST_P(MaskedCopy, HandsBackTheHostsCode) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld world(host, depth.format, 4, 2);
    MaskPlane mask(host.in(), 4, 2);
    mask.clearTo(1);
    host::judge::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 99;
    host.arm(plan);
    EXPECT_EQ(depth.copy(host.in(), {world.get(), world.get(), wholeRect(4, 2), mask}), 99);
    EXPECT_EQ(host.struckCall(), "iterate_generic");
}

TEST_P(MaskedCopy, OfAMissingWorldIsOutOfMemory) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld world(host, depth.format, 4, 2);
    MaskPlane mask(host.in(), 4, 2);
    mask.clearTo(1);
    EXPECT_EQ(depth.copy(host.in(), {nullptr, world.get(), wholeRect(4, 2), mask}), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(depth.copy(host.in(), {world.get(), nullptr, wholeRect(4, 2), mask}), PF_Err_OUT_OF_MEMORY);
}

} // namespace
} // namespace kovalune::test
