#include "effect/pipeline/Coverage.h"

#include "effect/share/AEUtil/AEException.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

struct Depth {
    PF_PixelFormat format;
    decltype(&coverage8) coverage;
};

class Coverage : public testing::TestWithParam<Depth> {};

INSTANTIATE_TEST_SUITE_P(Depths, Coverage,
                         testing::Values(Depth{PF_PixelFormat_ARGB32, coverage8},
                                         Depth{PF_PixelFormat_ARGB64, coverage16},
                                         Depth{PF_PixelFormat_ARGB128, coverage32}),
                         [](const auto& test) { return formatName(test.param.format); });

/// The smallest alpha above 0 that the format knows.
double leastAlpha(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB128 ? static_cast<double>(std::numeric_limits<float>::denorm_min())
                                            : 1.0;
}

TEST_P(Coverage, MarksPixelsOfNonZeroAlphaWithTrueSummaries) {
    const Depth depth = GetParam();
    Random random(81);
    for (int round = 0; round < 90; ++round) {
        host::judge::JudgeOptions options = shuffledOptions(random.between(1, 9), 3, random.next());
        options.rowPadding = 4 * random.below(5);
        StrictHost host(options);
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 150), random.between(1, 25), random);
        const FrameRect rect = rectAt(random.below(4), random.below(4), mask.width, mask.height);
        TestWorld src(host, depth.format, rect.right + random.below(3), rect.bottom + random.below(3));
        PlainPicture picture = randomPicture(depth.format, src.width(), src.height(), random);
        Mask expected(mask.width, mask.height);
        bool any = false;
        for (int32_t y = 0; y < mask.height; ++y) {
            for (int32_t x = 0; x < mask.width; ++x) {
                const bool in = mask.at(x, y) != 0;
                const bool faint = random.chance(50);
                picture.at(rect.left + x, rect.top + y).alpha = !in     ? 0.0
                                                                : faint ? leastAlpha(depth.format)
                                                                        : fullScale(depth.format);
                expected.at(x, y) = in ? 1 : 0;
                any = any || in;
            }
        }
        write(picture, src);
        MaskPlane plane;
        ASSERT_EQ(depth.coverage(plane, host.in(), src.get(), rect), PF_Err_NONE);
        ASSERT_EQ(elementsOf(plane), expected) << "round " << round;
        ASSERT_EQ(summaryFault(plane), "") << "round " << round;
        ASSERT_FALSE(plane.activityStale());
        ASSERT_EQ(plane.boundsStale(), any);
        ASSERT_EQ(difference(picture, src), "");
    }
}

TEST_P(Coverage, HandsOverAFreshPlaneAndLeavesOtherHandlesAlone) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld src(host, depth.format, 4, 4);
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(9);
    MaskPlane old;
    old.shareOf(plane);
    EXPECT_EQ(depth.coverage(plane, host.in(), src.get(), wholeRect(4, 4)), PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane), Mask(4, 4, 0));
    EXPECT_EQ(elementsOf(old), Mask(4, 4, 9));
    EXPECT_EQ(old.useCount(), 1);
    EXPECT_EQ(plane.useCount(), 1);
}

TEST_P(Coverage, HandsItsPlaneOverWhenTheHostFails) {
    const Depth depth = GetParam();
    host::judge::JudgeOptions options = strictOptions();
    options.recordCalls = true;
    StrictHost host(options);
    TestWorld src(host, depth.format, 4, 4);
    src.at<uint8_t>(0, 0) = 1;
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(9);
    host::judge::FaultPlan plan;
    plan.failCall = 4; // after the three calls that make the plane
    plan.failCode = 99;
    host.arm(plan);
    EXPECT_EQ(depth.coverage(plane, host.in(), src.get(), wholeRect(4, 4)), 99);
    EXPECT_EQ(host.struckCall(), "iterate_generic");
    EXPECT_EQ(elementsOf(plane), Mask(4, 4, 0));
}

TEST_P(Coverage, OfAMissingWorldIsOutOfMemory) {
    const Depth depth = GetParam();
    StrictHost host;
    MaskPlane plane;
    EXPECT_EQ(depth.coverage(plane, host.in(), nullptr, wholeRect(4, 4)), PF_Err_OUT_OF_MEMORY);
}

TEST_P(Coverage, WithoutMemoryForItsPlaneRaises) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld src(host, depth.format, 4, 4);
    MaskPlane plane;
    host::judge::FaultPlan plan;
    plan.failCall = 2;
    host.arm(plan);
    EXPECT_THROW(depth.coverage(plane, host.in(), src.get(), wholeRect(4, 4)), AEUtil::AEException);
}

TEST(CoverageOfFloats, CountsAnyAlphaThatIsNotZero) {
    StrictHost host;
    TestWorld src(host, PF_PixelFormat_ARGB128, 6, 1);
    const float alphas[6] = {-0.5F,    std::numeric_limits<float>::quiet_NaN(), 0.0F, -0.0F,
                             1.0e-45F, -std::numeric_limits<float>::infinity()};
    for (int32_t x = 0; x < 6; ++x) {
        src.at<PF_PixelFloat>(x, 0).alpha = alphas[x];
    }
    MaskPlane plane;
    EXPECT_EQ(coverage32(plane, host.in(), src.get(), wholeRect(6, 1)), PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane).elements, (std::vector<uint8_t>{1, 1, 0, 0, 1, 1}));
}

} // namespace
} // namespace kovalune::test
