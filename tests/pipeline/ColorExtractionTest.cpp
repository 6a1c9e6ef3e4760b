// The colour extraction against its plain twin.
#include "effect/pipeline/ColorExtraction.h"

#include "effect/share/AEUtil/AEException.h"
#include "tests/pipeline/ConversionWatch.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

struct Depth {
    PF_PixelFormat format;
    decltype(&extractColors8) extract;
};

class ColorExtraction : public testing::TestWithParam<Depth> {};

INSTANTIATE_TEST_SUITE_P(Depths, ColorExtraction,
                         testing::Values(Depth{PF_PixelFormat_ARGB32, extractColors8},
                                         Depth{PF_PixelFormat_ARGB64, extractColors16},
                                         Depth{PF_PixelFormat_ARGB128, extractColors32}),
                         [](const auto& test) { return formatName(test.param.format); });

std::vector<PlainMatch> randomList(Random& random) {
    std::vector<PlainMatch> list;
    const int count = random.below(5);
    for (int i = 0; i < count; ++i) {
        const auto channel = [&random] { return static_cast<uint8_t>(random.below(256)); };
        list.push_back({{0, channel(), channel(), channel()}, random.unit() * random.unit() * 0.6});
    }
    return list;
}

ColorMatches matchesOf(StrictHost& host, const std::vector<PlainMatch>& list) {
    ColorMatches matches;
    for (const PlainMatch& match : list) {
        matches.push_back(makeColorMatch(host.in(), match.color, match.range));
    }
    return matches;
}

PlainPicture somePicture(const Depth& depth, int32_t width, int32_t height, Random& random) {
    const Range range = random.chance(50) ? Range::kWild : Range::kOrdinary;
    return random.chance(60) ? flatPicture(depth.format, width, height, random, range)
                             : randomPicture(depth.format, width, height, random, range);
}

TEST_P(ColorExtraction, IsLikeThePlainOneForEveryNumberOfIterations) {
    const Depth depth = GetParam();
    Random random(111);
    for (int round = 0; round < 200; ++round) {
        const int32_t iterations = round % 8 + 1;
        host::judge::JudgeOptions options = shuffledOptions(iterations, 3, random.next());
        options.rowPadding = 4 * random.below(5);
        StrictHost host(options);
        const int32_t width = random.between(1, 70);
        const int32_t height = random.between(1, 30);
        const FrameRect rect = rectAt(random.below(4), random.below(4), width, height);
        TestWorld src(host, depth.format, rect.right + random.below(3), rect.bottom + random.below(3));
        const PlainPicture picture = somePicture(depth, src.width(), src.height(), random);
        write(picture, src);
        const std::vector<PlainMatch> list = randomList(random);
        const ColorMatches matches = matchesOf(host, list);
        const ConversionWatch watch(host);
        MaskPlane plane;
        ASSERT_EQ(depth.extract(plane, host.in(), src.get(), rect, matches, nullptr), PF_Err_NONE);
        const PlainExtracted expected = plainExtract(picture, rect, list, iterations);
        ASSERT_EQ(elementsOf(plane), expected.mask) << "round " << round;
        ASSERT_EQ(watch.count(), expected.conversions) << "round " << round;
        ASSERT_EQ(summaryFault(plane), "") << "round " << round;
        ASSERT_FALSE(plane.activityStale());
        ASSERT_EQ(difference(picture, src), "");
    }
}

/// With and without the last match of a list, a pixel's first match is told by plain extractions alone.
MatchCounts plainCounts(const PlainPicture& picture, const FrameRect& rect,
                        const std::vector<PlainMatch>& list, int32_t iterations) {
    MatchCounts counts = {};
    int64_t before = 0;
    for (std::size_t count = 1; count <= list.size(); ++count) {
        const auto length = static_cast<std::ptrdiff_t>(count);
        const Mask mask = plainExtract(picture, rect, {list.begin(), list.begin() + length}, iterations).mask;
        const int64_t matched = std::count(mask.elements.begin(), mask.elements.end(), 1);
        counts[count - 1] = matched - before;
        before = matched;
    }
    return counts;
}

TEST_P(ColorExtraction, CountsThePixelsOfEachColourWithoutAnotherResultOrCall) {
    const Depth depth = GetParam();
    Random random(112);
    int several = 0;
    for (int round = 0; round < 400; ++round) {
        const int32_t iterations = round % 8 + 1;
        host::judge::JudgeOptions options = shuffledOptions(iterations, 3, random.next());
        options.recordCalls = true;
        StrictHost host(options);
        const FrameRect rect =
            rectAt(random.below(4), random.below(4), random.between(1, 70), random.between(1, 30));
        TestWorld src(host, depth.format, rect.right, rect.bottom);
        const PlainPicture picture = somePicture(depth, src.width(), src.height(), random);
        write(picture, src);
        const std::vector<PlainMatch> list = randomList(random);
        const ColorMatches matches = matchesOf(host, list);
        const ConversionWatch watch(host);
        MaskPlane plane;
        host.clearCalls();
        ASSERT_EQ(depth.extract(plane, host.in(), src.get(), rect, matches, nullptr), PF_Err_NONE);
        const std::vector<std::string> calls = host.callNames();
        const auto conversions = watch.count();
        MaskPlane counted;
        MatchCounts counts = {7, 7, 7, 7};
        host.clearCalls();
        ASSERT_EQ(depth.extract(counted, host.in(), src.get(), rect, matches, &counts), PF_Err_NONE);
        EXPECT_EQ(host.callNames(), calls);
        EXPECT_EQ(watch.count(), 2 * conversions);
        EXPECT_EQ(elementsOf(counted), elementsOf(plane)) << "round " << round;
        EXPECT_EQ(summaryFault(counted), "");
        ASSERT_EQ(counts, plainCounts(picture, rect, list, iterations)) << "round " << round;
        several += counts[0] > 0 && counts[1] > 0 ? 1 : 0;
    }
    EXPECT_GT(several, 20);
}

TEST_P(ColorExtraction, HandsOverAFreshPlaneAndLeavesOtherHandlesAlone) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld src(host, depth.format, 4, 4);
    MaskPlane plane(host.in(), 4, 4);
    plane.clearTo(9);
    MaskPlane old;
    old.shareOf(plane);
    EXPECT_EQ(depth.extract(plane, host.in(), src.get(), wholeRect(4, 4), {}, nullptr), PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane), Mask(4, 4, 0));
    EXPECT_EQ(elementsOf(old), Mask(4, 4, 9));
    EXPECT_EQ(plane.useCount(), 1);
}

TEST_P(ColorExtraction, HandsItsPlaneOverWhenTheHostFails) {
    const Depth depth = GetParam();
    for (const bool after : {false, true}) {
        StrictHost host;
        TestWorld src(host, depth.format, 4, 4);
        PlainPicture white(depth.format, 4, 4);
        for (PlainPixel& pixel : white.pixels) {
            const double full = fullScale(depth.format);
            pixel = {full, full, full, full};
        }
        write(white, src);
        const ColorMatches everything = {makeColorMatch(HlsColor(), 1.0)};
        MaskPlane plane(host.in(), 4, 4);
        plane.clearTo(9);
        host::judge::FaultPlan plan;
        plan.failCall = 4; // after the three calls that make the plane
        plan.failCode = 99;
        plan.failIterateAfter = after;
        host.arm(plan);
        EXPECT_EQ(depth.extract(plane, host.in(), src.get(), wholeRect(4, 4), everything, nullptr), 99);
        EXPECT_EQ(host.struckCall(), "iterate_generic");
        EXPECT_EQ(elementsOf(plane), Mask(4, 4, after ? 1 : 0));
        EXPECT_EQ(summaryFault(plane), "");
        EXPECT_FALSE(plane.activityStale());
    }
}

TEST_P(ColorExtraction, OfAMissingWorldIsOutOfMemory) {
    const Depth depth = GetParam();
    StrictHost host;
    MaskPlane plane;
    EXPECT_EQ(depth.extract(plane, host.in(), nullptr, wholeRect(4, 4), {}, nullptr), PF_Err_OUT_OF_MEMORY);
}

TEST_P(ColorExtraction, WithoutMemoryForItsPlaneRaises) {
    const Depth depth = GetParam();
    StrictHost host;
    TestWorld src(host, depth.format, 4, 4);
    MaskPlane plane;
    host::judge::FaultPlan plan;
    plan.failCall = 2;
    host.arm(plan);
    EXPECT_THROW(depth.extract(plane, host.in(), src.get(), wholeRect(4, 4), {}, nullptr),
                 AEUtil::AEException);
}

} // namespace
} // namespace kovalune::test
