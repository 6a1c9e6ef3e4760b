#include "effect/pipeline/DepthConversion.h"

#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

TEST(ChannelConversion, WidensToFullScale) {
    EXPECT_EQ(widenChannel(0), 0);
    EXPECT_EQ(widenChannel(1), 129);
    EXPECT_EQ(widenChannel(128), 16448);
    EXPECT_EQ(widenChannel(254), 32640);
    EXPECT_EQ(widenChannel(255), 32768);
}

TEST(ChannelConversion, NarrowsByRounding) {
    EXPECT_EQ(narrowChannel(0), 0);
    EXPECT_EQ(narrowChannel(64), 0);
    EXPECT_EQ(narrowChannel(65), 1);
    EXPECT_EQ(narrowChannel(32768), 255);
}

TEST(ChannelConversion, FollowsTheFormulasForEveryValue) {
    for (int32_t c = 0; c <= 255; ++c) {
        ASSERT_EQ(widenChannel(static_cast<uint8_t>(c)), (c * 32768 + 128) / 255);
        ASSERT_EQ(narrowChannel(widenChannel(static_cast<uint8_t>(c))), c);
    }
    for (int32_t c = 0; c <= 65535; ++c) {
        ASSERT_EQ(narrowChannel(static_cast<uint16_t>(c)), ((c * 255 + 16384) >> 15) % 256);
    }
}

PlainPixel converted(const PlainPixel& p, bool widen) {
    const auto channel = [widen](double c) {
        const auto value = static_cast<int64_t>(c);
        return static_cast<double>(widen ? (value * 32768 + 128) / 255 : ((value * 255 + 16384) >> 15) & 255);
    };
    return {channel(p.alpha), channel(p.red), channel(p.green), channel(p.blue)};
}

class DepthConversion : public testing::TestWithParam<bool> {
protected:
    bool widens() const { return GetParam(); }
    PF_PixelFormat from() const { return widens() ? PF_PixelFormat_ARGB32 : PF_PixelFormat_ARGB64; }
    PF_PixelFormat to() const { return widens() ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32; }
    MaskedPass* convert() const { return widens() ? widenTo16 : narrowTo8; }
};

INSTANTIATE_TEST_SUITE_P(Ways, DepthConversion, testing::Bool(),
                         [](const auto& test) { return test.param ? "Widen" : "Narrow"; });

TEST_P(DepthConversion, ConvertsAllChannelsUnderTheMask) {
    Random random(91);
    for (int round = 0; round < 120; ++round) {
        host::judge::JudgeOptions options = shuffledOptions(random.between(1, 9), 2, random.next());
        options.rowPadding = 4 * random.below(5);
        StrictHost host(options);
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 70), random.between(1, 25), random);
        const FrameRect rect = rectAt(random.below(4), random.below(4), mask.width, mask.height);
        TestWorld src(host, from(), rect.right + random.below(3), rect.bottom + random.below(3));
        TestWorld dst(host, to(), src.width(), src.height());
        const PlainPicture source = randomPicture(from(), src.width(), src.height(), random, Range::kWild);
        PlainPicture expected = randomPicture(to(), src.width(), src.height(), random, Range::kWild);
        write(source, src);
        write(expected, dst);
        const bool clearOutside = random.chance(50);
        for (int32_t y = 0; y < mask.height; ++y) {
            for (int32_t x = 0; x < mask.width; ++x) {
                PlainPixel& pixel = expected.at(rect.left + x, rect.top + y);
                if (mask.at(x, y) != 0) {
                    pixel = converted(source.at(rect.left + x, rect.top + y), widens());
                } else if (clearOutside) {
                    pixel = {};
                }
            }
        }
        const MaskPlane plane = planeOf(host, mask);
        EXPECT_EQ(convert()(host.in(), {dst.get(), src.get(), rect, plane, clearOutside}), PF_Err_NONE);
        ASSERT_EQ(difference(expected, dst), "") << "round " << round;
        ASSERT_EQ(difference(source, src), "") << "round " << round;
    }
}

TEST_P(DepthConversion, HandsBackTheHostsCode) {
    StrictHost host;
    TestWorld src(host, from(), 3, 3);
    TestWorld dst(host, to(), 3, 3);
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(1);
    host::judge::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 99;
    host.arm(plan);
    EXPECT_EQ(convert()(host.in(), {dst.get(), src.get(), wholeRect(3, 3), mask}), 99);
}

TEST_P(DepthConversion, OfAMissingWorldIsOutOfMemory) {
    StrictHost host;
    TestWorld src(host, from(), 3, 3);
    TestWorld dst(host, to(), 3, 3);
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(1);
    EXPECT_EQ(convert()(host.in(), {nullptr, src.get(), wholeRect(3, 3), mask}), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(convert()(host.in(), {dst.get(), nullptr, wholeRect(3, 3), mask}), PF_Err_OUT_OF_MEMORY);
}

} // namespace
} // namespace kovalune::test
