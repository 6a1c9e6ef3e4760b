#include "text/NearestNames.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace text;

namespace {

using Names = std::vector<std::string>;

TEST(NearestNames, DistanceCountsAddedDroppedReplacedAndSwappedLetters) {
    EXPECT_EQ(editDistance("", ""), 0U);
    EXPECT_EQ(editDistance("abc", ""), 3U);
    EXPECT_EQ(editDistance("", "ab"), 2U);
    EXPECT_EQ(editDistance("blur", "blurs"), 1U);
    EXPECT_EQ(editDistance("blur", "bur"), 1U);
    EXPECT_EQ(editDistance("blur", "blun"), 1U);
    EXPECT_EQ(editDistance("blur", "bulr"), 1U);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
}

TEST(NearestNames, DistanceIgnoresCase) {
    EXPECT_EQ(editDistance("BLUR amount", "Blur Amount"), 0U);
}

TEST(NearestNames, TheNearestComesFirst) {
    const Names names = {"Color 1 Range", "Color 1", "Color 2", "View"};
    EXPECT_EQ(nearestNames("Colour 2", names), (Names{"Color 2", "Color 1"}));
}

TEST(NearestNames, EquallyNearNamesKeepTheirOrder) {
    const Names names = {"Color 2", "Color 3", "Color 1"};
    EXPECT_EQ(nearestNames("Color 9", names), names);
}

TEST(NearestNames, GivesNoMoreThanAskedFor) {
    const Names names = {"Color 1", "Color 2", "Color 3", "Color 4"};
    EXPECT_EQ(nearestNames("Color", names).size(), 3U);
    EXPECT_EQ(nearestNames("Color", names, 1), (Names{"Color 1"}));
}

TEST(NearestNames, ANameThatHoldsTheTextIsNear) {
    EXPECT_EQ(nearestNames("blur", {"View", "Boundary Blur Of A Stage"}),
              (Names{"Boundary Blur Of A Stage"}));
}

TEST(NearestNames, LeavesOutWhatIsFar) {
    EXPECT_TRUE(nearestNames("qqqqqqqq", {"View", "Blur Amount"}).empty());
    EXPECT_TRUE(nearestNames("", {"Blur Amount"}).empty());
}

} // namespace
} // namespace kovalune::test
