#include "render/shots/FrameList.h"

#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace shots;

namespace {

using Frames = std::vector<int64_t>;

TEST(FrameList, TakesNumbersAndRangesInTheirOrder) {
    EXPECT_EQ(parseFrames("7"), Frames({7}));
    EXPECT_EQ(parseFrames("0007"), Frames({7}));
    EXPECT_EQ(parseFrames("1-4"), Frames({1, 2, 3, 4}));
    EXPECT_EQ(parseFrames("1-10x4"), Frames({1, 5, 9}));
    EXPECT_EQ(parseFrames("4-1"), Frames({4, 3, 2, 1}));
    EXPECT_EQ(parseFrames("10-1x3"), Frames({10, 7, 4, 1}));
    EXPECT_EQ(parseFrames("-5--3"), Frames({-5, -4, -3}));
    EXPECT_EQ(parseFrames("-1-1"), Frames({-1, 0, 1}));
    EXPECT_EQ(parseFrames("3,1-4,2"), Frames({3, 1, 2, 4}));
    EXPECT_EQ(parseFrames("1, 3"), Frames({1, 3}));
}

TEST(FrameList, RefusesAllElse) {
    for (const char* text :
         {"", ",", "1,", "a", "1-", "1-2-3", "1-5x0", "1-5x-1", "1-5x", "1x2", "1.5", "1-2y", "+1", "0x10",
          "99999999999999999999", "1-2000000", "1000001-1999999,1-999999"}) {
        EXPECT_THROW(static_cast<void>(parseFrames(text)), text::Failure) << text;
    }
}

TEST(FrameList, IsWrittenAsItIsRead) {
    EXPECT_EQ(framesText(Frames{5, 6, 7, 8, 12, 14, 15}, 4), "0005-0008,0012,0014,0015");
    EXPECT_EQ(framesText(Frames{-2, -1, 0}, 2), "-2-00");
    EXPECT_EQ(parseFrames(framesText(Frames{-2, -1, 0}, 2)), Frames({-2, -1, 0}));
    EXPECT_EQ(framesText(Frames{}, 4), "");
}

} // namespace
} // namespace kovalune::test
