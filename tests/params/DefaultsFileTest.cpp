#include "effect/params/DefaultsFile.h"

#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

TEST(ParseNumber, StopsAtTheFirstCharacterItCannotUse) {
    EXPECT_EQ(parseNumber("12.5abc"), 12.5);
    EXPECT_EQ(parseNumber("12,5"), 12.0);
    EXPECT_EQ(parseNumber("1.2.3"), 1.2);
    EXPECT_EQ(parseNumber("-3 4"), -3.0);
    EXPECT_EQ(parseNumber("1e2x"), 100.0);
    EXPECT_EQ(parseNumber("2e"), 2.0);
}

TEST(ParseNumber, ReadsEveryFormOfADecimalNumber) {
    EXPECT_EQ(parseNumber("+7.25"), 7.25);
    EXPECT_EQ(parseNumber(" \t-7.25"), -7.25);
    EXPECT_EQ(parseNumber(".5"), 0.5);
    EXPECT_EQ(parseNumber("5."), 5.0);
    EXPECT_EQ(parseNumber("1E-2"), 0.01);
    EXPECT_EQ(parseNumber("0.1"), 0.1);
}

TEST(ParseNumber, MakesZeroOfWhatIsNoNumber) {
    for (const char* text : {"", "  ", "abc", "-", "+", "+-5", "-+5", ".", ",5", "x1", "--1", "inf", "-inf",
                             "nan", "infinity"}) {
        EXPECT_EQ(parseNumber(text), 0.0) << text;
    }
}

TEST(FormatNumber, WritesSixDigitsBehindThePoint) {
    EXPECT_EQ(formatNumber(10.0), "10.000000");
    EXPECT_EQ(formatNumber(0.1), "0.100000");
    EXPECT_EQ(formatNumber(-2.5), "-2.500000");
    EXPECT_EQ(formatNumber(1234567.0), "1234567.000000");
    EXPECT_EQ(formatNumber(0.0000005), "0.000000");
    EXPECT_EQ(formatNumber(0.0000015), "0.000002");
    EXPECT_EQ(formatNumber(std::numeric_limits<double>::max()).size(), 309U + 7U);
    EXPECT_EQ(formatNumber(-std::numeric_limits<double>::max()).size(), 310U + 7U);
}

} // namespace
} // namespace kovalune::test
