// Runs, steps and tapers as long as the longest side, against the plain twin; and a map of that side both ways.

#include "effect/smoothing/EdgeFlagMap.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/support/Effort.h"
#include "tests/support/SparseMemory.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace kovalune::test {
namespace {

constexpr int32_t kSide = 32767;

/// Where a border between two colours steps from the upper line down to the lower one, or back.
using Steps = std::vector<int32_t>;

PlainPicture pictureOf(PF_PixelFormat format, const Steps& steps, bool isTurned) {
    const double full = fullScale(format);
    PlainPicture picture(format, isTurned ? 4 : kSide, isTurned ? kSide : 4);
    for (int32_t along = 0; along < kSide; ++along) {
        int32_t border = 1;
        for (const int32_t step : steps) {
            border = along >= step ? 3 - border : border;
        }
        for (int32_t across = 0; across < 4; ++across) {
            picture.at(isTurned ? across : along, isTurned ? along : across) =
                across < border ? PlainPixel{full, full, 0.0, 0.0} : PlainPixel{full, 0.0, 0.0, full};
        }
    }
    return picture;
}

class LongRuns : public testing::TestWithParam<PF_PixelFormat> {};

INSTANTIATE_TEST_SUITE_P(Formats, LongRuns,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128),
                         [](const auto& test) { return formatName(test.param); });

TEST_P(LongRuns, AreBlendedAsTheTwinDoes) {
    PatternCounts counts;
    for (const Steps& steps :
         {Steps{1}, Steps{kSide - 1}, Steps{16000}, Steps{2, kSide - 2}, Steps{1, 2, 32000}}) {
        for (const bool isTurned : {false, true}) {
            if (kSanitized && isTurned != (steps.size() == 2)) {
                continue;
            }
            const PlainPicture picture = pictureOf(GetParam(), steps, isTurned);
            host::judge::JudgeOptions options = strictOptions();
            options.allowHuge = true;
            StrictHost host(options);
            TestWorld source(host, GetParam(), picture.width, picture.height);
            TestWorld destination(host, GetParam(), picture.width, picture.height);
            write(picture, source);
            SmoothParams params;
            params.strength = 100;
            params.pixelFormat = GetParam();
            params.inData = host.in();
            params.srcWorld = source.get();
            params.dstWorld = destination.get();
            ASSERT_EQ(smoothBoundaries(params), PF_Err_NONE);
            const PlainPicture expected = PlainSmooth(params, picture, counts).run();
            ASSERT_EQ(difference(expected, destination), "") << steps.front() << " turned " << isTurned;
            EXPECT_NE(difference(picture, destination), "");
        }
    }
    EXPECT_GT(counts["run to the right"] + counts["run downwards"], 0);
}

#if UINTPTR_MAX > 0xffffffffU

TEST(LargeFlagMap, HasACellForEachPixelOfTheLongestSides) {
    const int32_t row = EdgeFlagMap::rowCells(kSide);
    const int32_t rows = EdgeFlagMap::rowCount(kSide);
    const RepeatedMemory memory(static_cast<std::size_t>(row) * static_cast<std::size_t>(rows));
    if (!memory.isThere()) {
        GTEST_SKIP() << "the system has no such addresses in a row";
    }
    PF_EffectWorld world{};
    world.data = static_cast<PF_PixelPtr>(static_cast<void*>(memory.data()));
    world.rowbytes = row;
    world.width = row / 4;
    world.height = rows;
    EdgeFlagMap map(world, kSide, kSide);
    const uint8_t* const origin = memory.data() + row + EdgeFlagMap::kLeftMargin;
    for (const auto& [x, y] : {std::pair{0, 0}, std::pair{-4, -1}, std::pair{kSide - 1, 16384},
                               std::pair{kSide - 1, kSide - 1}, std::pair{kSide, kSide}}) {
        EXPECT_EQ(map.cell(x, y) - origin, int64_t{y} * row + x);
        EXPECT_EQ(map(x, y), 0);
        map.add(x, y, EDGE_RISING);
        EXPECT_TRUE(FlagView<false>(map, x, y - 1).has(0, 1, EDGE_RISING));
        EXPECT_TRUE(FlagView<true>(map, x, y - 1).has(1, 0, EDGE_RISING));
    }
    EXPECT_EQ(map.cell(kSide, kSide),
              memory.data() + int64_t{row} * rows - row + EdgeFlagMap::kLeftMargin + kSide);
}

#endif

} // namespace
} // namespace kovalune::test
