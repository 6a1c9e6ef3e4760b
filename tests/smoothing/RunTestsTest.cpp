// Runs, tapers, dots and the balance of two runs, on flag maps made by hand. What holds for rows is tried on columns as
// well, with rows and columns exchanged.

#include "effect/smoothing/RunTests.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <string>

namespace kovalune::test {
namespace {

constexpr int32_t kLong = 20;
constexpr int32_t kShort = 8;

struct LengthCase {
    std::string name;
    std::vector<MarkedCell> cells;
    int32_t expected;
    int32_t x = 8;
};

using Measure = int32_t (*)(const EdgeFlagMap&, int32_t, int32_t);
constexpr int32_t kRow = 3;

int32_t measureInRow(Measure measure, const LengthCase& c) {
    HandMap map(kLong, kShort, c.cells);
    return measure(map.map(), c.x, kRow);
}

int32_t measureInColumn(Measure measure, const LengthCase& c) {
    std::vector<MarkedCell> cells;
    for (const MarkedCell& cell : c.cells) {
        cells.push_back(transposed(cell));
    }
    HandMap map(kShort, kLong, cells);
    return measure(map.map(), kRow, c.x);
}

std::vector<MarkedCell> operator+(std::vector<MarkedCell> a, const std::vector<MarkedCell>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// The same flags in `count` cells of row `y`, from `x` on in steps of `by`.
std::vector<MarkedCell> line(int32_t x, int32_t y, int flags, int count, int32_t by) {
    std::vector<MarkedCell> cells;
    for (int i = 0; i < count; ++i) {
        cells.push_back({x + i * by, y, flags});
    }
    return cells;
}

std::vector<MarkedCell> top(int count, int32_t by, int32_t x = 8) {
    return line(x + by, kRow - 1, 2, count, by);
}
std::vector<MarkedCell> bottom(int count, int32_t by, int32_t x = 8) {
    return line(x + by, kRow, 2, count, by);
}

using Cells = std::vector<MarkedCell>;

/// What both directions have in common; `by` is -1 or 1.
std::vector<LengthCase> runsEitherWay(int32_t by) {
    const int32_t k = 8 + by;
    return {
        {"Nothing", {}, 0},
        {"AlongTheTop", top(2, by), 2},
        {"AlongTheBottom", bottom(2, by), 2},
        {"LongerBottom", top(1, by) + bottom(2, by), 2},
        {"LongerTop", top(2, by) + bottom(1, by), 2},
        {"TopClosedByAStep", top(2, by) + Cells{{k + by, kRow, 1}}, 1},
        {"TopEndsWhereItsRowHasAStep", top(1, by) + Cells{{k + by, 2, 3}, {k + 2 * by, 2, 2}}, 1},
        {"StepOnTheNextPixelForbidsTop", top(2, by) + Cells{{k, kRow, 1}}, 0},
        {"StepOnTheNextPixelForbidsBottom", Cells{{k, kRow, 3}}, 0},
        {"BottomEndsWhereItsOwnRowHasAStep", bottom(1, by) + Cells{{k + by, kRow, 3}}, 1},
        {"BottomEndsWhereTheRowBelowHasAStep", bottom(2, by) + Cells{{k + by, kRow + 1, 1}}, 1},
        {"OfThreeAtTheTopIsACorner", top(3, by), 0},
        {"OfThreeAtTheBottomIsACorner", bottom(3, by), 0},
        {"ShortBottomBesideACornerAtTheTop", top(3, by) + bottom(2, by), 2},
        {"ShortTopBesideACornerAtTheBottom", top(1, by) + bottom(4, by), 1},
        {"ClosedCornerLeavesTheBottom", top(3, by) + Cells{{k + 3 * by, kRow, 1}} + bottom(2, by), 2},
    };
}

std::vector<LengthCase> leftRuns() {
    std::vector<LengthCase> cases = runsEitherWay(-1);
    const std::vector<LengthCase> own = {
        {"FallingAboveForbidsTop", top(2, -1) + Cells{{8, 2, 4}}, 0},
        {"FallingAboveLeavesTheBottom", top(2, -1) + bottom(1, -1) + Cells{{8, 2, 4}}, 1},
        {"RisingAboveForbidsNothing", top(2, -1) + Cells{{8, 2, 8}}, 2},
        {"RisingForbidsTheBottom", top(1, -1) + bottom(2, -1) + Cells{{8, 3, 8}}, 1},
        {"FallingForbidsNothing", top(1, -1) + bottom(2, -1) + Cells{{8, 3, 4}}, 2},
        {"OfThreeAtTheTopGoesOnBehindTheStep", top(3, -1) + Cells{{9, 3, 2}}, 3},
        {"OfThreeAtTheTopNeedsTheOtherSide", top(3, -1) + Cells{{8, 3, 2}}, 0},
        {"OfThreeAtTheBottomGoesOnBehindTheStep", bottom(3, -1) + Cells{{9, 2, 2}}, 3},
        {"OfThreeAtTheBottomNeedsTheOtherSide", bottom(3, -1) + Cells{{8, 2, 2}}, 0},
        // Three pixels from the step to the border.
        {"ToTheBorderCountsOneLess", top(2, -1, 2), 2, 2},
        {"AlongTheBottomToTheBorderCountsOneLess", bottom(2, -1, 2), 2, 2},
        {"AtTheBorder", {}, 0, 0},
    };
    cases.insert(cases.end(), own.begin(), own.end());
    return cases;
}

std::vector<LengthCase> rightRuns() {
    std::vector<LengthCase> cases = runsEitherWay(1);
    const std::vector<LengthCase> own = {
        {"RisingAboveForbidsTop", top(2, 1) + Cells{{8, 2, 8}}, 0},
        {"RisingAboveLeavesTheBottom", top(2, 1) + bottom(1, 1) + Cells{{8, 2, 8}}, 1},
        {"FallingAboveForbidsNothing", top(2, 1) + Cells{{8, 2, 4}}, 2},
        {"FallingForbidsTheBottom", top(1, 1) + bottom(2, 1) + Cells{{8, 3, 4}}, 1},
        {"RisingForbidsNothing", top(1, 1) + bottom(2, 1) + Cells{{8, 3, 8}}, 2},
        {"OfThreeAtTheTopGoesOnBehindTheStep", top(3, 1) + Cells{{8, 3, 2}}, 3},
        {"OfThreeAtTheTopNeedsTheOtherSide", top(3, 1) + Cells{{7, 3, 2}}, 0},
        {"OfThreeAtTheBottomGoesOnBehindTheStep", bottom(3, 1) + Cells{{8, 2, 2}}, 3},
        {"OfThreeAtTheBottomNeedsTheOtherSide", bottom(3, 1) + Cells{{7, 2, 2}}, 0},
        // Two pixels from the step to the border.
        {"ToTheBorderCountsAll", top(2, 1, 17), 2, 17},
        {"AlongTheBottomToTheBorderCountsAll", bottom(2, 1, 17), 2, 17},
        {"AtTheBorder", {}, 0, 18},
    };
    cases.insert(cases.end(), own.begin(), own.end());
    return cases;
}

std::vector<MarkedCell> thinLine(int count, int32_t by, int32_t x = 8) {
    return top(count, by, x) + bottom(count, by, x);
}

std::vector<LengthCase> tapersEitherWay(int32_t by) {
    const int32_t k = 8 + by;
    std::vector<LengthCase> cases = {
        {"Nothing", {}, 0},
        {"OneSideAloneTop", top(3, by), 0},
        {"OneSideAloneBottom", bottom(3, by), 0},
        {"EndsWithTheTop", thinLine(2, by) + Cells{{k + 2 * by, kRow, 2}}, 2},
        {"EndsWithTheBottom", thinLine(2, by) + Cells{{k + 2 * by, kRow - 1, 2}}, 2},
        {"EndsAtAStepAbove", thinLine(3, by) + Cells{{k + 2 * by, kRow - 1, 1}}, 2},
        {"EndsAtAStepBelow", thinLine(3, by) + Cells{{k + 2 * by, kRow + 1, 1}}, 2},
        {"EndsAtAStepOfItsOwn", thinLine(3, by) + Cells{{k + 2 * by, kRow, 1}}, 2},
        {"IsNoneWithAStepOnTheNextPixel", thinLine(3, by) + Cells{{k, kRow, 1}}, 0},
    };
    constexpr int32_t kCounted[] = {0, 1, 2, 3, 4, 5, 5, 6, 6, 7};
    for (int n = 1; n <= 9; ++n) {
        const int32_t x = by < 0 ? 12 : 8;
        cases.push_back({"Of" + std::to_string(n), thinLine(n, by, x), kCounted[n], x});
    }
    return cases;
}

/// Every flag around the blunt end by itself, over a line of three: those of `gate` forbid the taper.
void addGates(std::vector<LengthCase>& cases, int32_t by, const std::vector<MarkedCell>& gate) {
    for (int32_t y = kRow - 1; y <= kRow; ++y) {
        for (int32_t x = 8 - 1; x <= 8 + 1; ++x) {
            if (x == 8 + by) {
                continue; // a cell of the line itself
            }
            for (const int flag : {1, 2, 4, 8}) {
                int32_t expected = 3;
                for (const MarkedCell& cell : gate) {
                    expected = cell.x == x && cell.y == y && (cell.flags & flag) != 0 ? 0 : expected;
                }
                cases.push_back(
                    {"Flag" + std::to_string(flag) + "At" + std::to_string(x) + "_" + std::to_string(y),
                     thinLine(3, by) + Cells{{x, y, flag}}, expected});
            }
        }
    }
}

std::vector<LengthCase> leftTapers() {
    std::vector<LengthCase> cases = tapersEitherWay(-1);
    addGates(cases, -1, {{8, 2, 4}, {9, 2, 2}, {9, 3, 1 | 2}, {8, 3, 8}});
    cases.push_back({"ToTheBorderCountsOneLess", thinLine(2, -1, 2), 2, 2});
    return cases;
}

std::vector<LengthCase> rightTapers() {
    std::vector<LengthCase> cases = tapersEitherWay(1);
    addGates(cases, 1, {{8, 2, 2 | 8}, {7, 3, 1}, {8, 3, 2 | 4}});
    cases.push_back({"ToTheBorderCountsAll", thinLine(2, 1, 17), 2, 17});
    return cases;
}

struct Walk {
    const char* name;
    Measure inRow;
    Measure inColumn;
    std::vector<LengthCase> (*cases)();
};

class Lengths : public testing::TestWithParam<Walk> {};

INSTANTIATE_TEST_SUITE_P(Walks, Lengths,
                         testing::Values(Walk{"RunLeftAndUp", measureRunLeft, measureRunUp, leftRuns},
                                         Walk{"RunRightAndDown", measureRunRight, measureRunDown, rightRuns},
                                         Walk{"TaperLeftAndUp", measureTaperLeft, measureTaperUp, leftTapers},
                                         Walk{"TaperRightAndDown", measureTaperRight, measureTaperDown,
                                              rightTapers}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(Lengths, AreMeasuredInRowsAndColumns) {
    for (const LengthCase& c : GetParam().cases()) {
        EXPECT_EQ(measureInRow(GetParam().inRow, c), c.expected) << c.name << " in a row";
        EXPECT_EQ(measureInColumn(GetParam().inColumn, c), c.expected) << c.name << " in a column";
    }
}

/// Walls all around the 2 by 2 pixels from (4, 3) on, and a tail of one wall that makes a step beside them.
Cells squareAt4And3() {
    return {{3, 3, 1}, {3, 4, 1}, {5, 3, 1}, {5, 4, 1}, {4, 2, 2}, {5, 2, 2}, {4, 4, 2}, {5, 4, 2}};
}

struct SquareCase {
    const char* name;
    Side side;
    int32_t x, y;
};

/// Every place from which the square is found.
constexpr SquareCase kSquares[] = {
    {"LeftLower", Side::kLeft, 5, 4},   {"LeftUpper", Side::kLeft, 5, 3}, {"RightLower", Side::kRight, 3, 4},
    {"RightUpper", Side::kRight, 3, 3}, {"UpLower", Side::kUp, 5, 4},     {"UpUpper", Side::kUp, 4, 4},
    {"DownRight", Side::kDown, 5, 2},   {"DownLeft", Side::kDown, 4, 2},
};

class Squares : public testing::TestWithParam<SquareCase> {
protected:
    static bool found(const Cells& cells) {
        HandMap map(10, 9, cells);
        return isIsolatedSquare(map.map(), GetParam().side, GetParam().x, GetParam().y);
    }
};

INSTANTIATE_TEST_SUITE_P(Places, Squares, testing::ValuesIn(kSquares),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(Squares, AreFoundBesideTheStep) {
    EXPECT_TRUE(found(squareAt4And3()));
}

TEST_P(Squares, LackNoWall) {
    const Cells whole = squareAt4And3();
    for (std::size_t i = 0; i < whole.size(); ++i) {
        Cells broken = whole;
        broken.erase(broken.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_FALSE(found(broken)) << "without the wall of " << whole[i].x << ", " << whole[i].y;
    }
}

TEST_P(Squares, HaveNoWallInside) {
    for (const MarkedCell& inside : Cells{{4, 3, 1}, {4, 3, 2}, {4, 4, 1}, {5, 3, 2}}) {
        EXPECT_FALSE(found(squareAt4And3() + Cells{inside})) << inside.x << ", " << inside.y;
    }
}

TEST_P(Squares, StandOnOneSideOfTheStepAlone) {
    HandMap none(10, 9);
    const SquareCase& c = GetParam();
    EXPECT_FALSE(isIsolatedSquare(none.map(), c.side, c.x, c.y));
    // A wall on the other side of the step as well: two candidates, so none.
    const bool inRow = c.side == Side::kLeft || c.side == Side::kRight;
    const int32_t column = c.side == Side::kRight ? c.x + 1 : c.x;
    const int32_t row = c.side == Side::kDown ? c.y + 1 : c.y;
    const Cells both =
        inRow ? Cells{{column, c.y, 2}, {column, c.y - 1, 2}} : Cells{{c.x, row, 1}, {c.x - 1, row, 1}};
    EXPECT_FALSE(found(squareAt4And3() + both));
}

TEST(SquaresAtTheBorder, AreNotLookedForBeyondIt) {
    HandMap map(3, 3, line(0, 0, 3, 3, 1) + line(0, 1, 3, 3, 1) + line(0, 2, 3, 3, 1));
    EXPECT_FALSE(isIsolatedSquare(map.map(), Side::kRight, 2, 1));
    EXPECT_FALSE(isIsolatedSquare(map.map(), Side::kDown, 1, 2));
    for (const Side side : {Side::kLeft, Side::kRight, Side::kUp, Side::kDown}) {
        for (int32_t y = -1; y <= 3; ++y) {
            EXPECT_FALSE(isIsolatedSquare(map.map(), side, 0, y));
        }
        for (int32_t x = -1; x <= 3; ++x) {
            EXPECT_FALSE(isIsolatedSquare(map.map(), side, x, 0));
        }
    }
}

TEST(Balance, OfTwoRunsFollowsTheirLengths) {
    HandMap map(9, 9);
    const auto balance = [&map](int32_t own, int32_t far, int32_t strength) {
        return balancedStrength(map.map(), Side::kLeft, own, far, 4, 4, strength);
    };
    EXPECT_EQ(balance(1, 1, 70), 50);
    EXPECT_EQ(balance(1, 1, 100), 71);
    EXPECT_EQ(balance(4, 4, 70), 50);
    EXPECT_EQ(balance(3, 3, 100), 71);
    EXPECT_EQ(balance(4, 1, 70), 87);
    EXPECT_EQ(balance(1, 2, 70), 0);
    EXPECT_EQ(balance(1, 4, 70), -100);
    EXPECT_EQ(balance(3, 7, 50), -11) << "truncated toward zero";
    EXPECT_EQ(balance(2, 3, 33), 11);
}

TEST_P(Squares, ShortenTheRampBesideThem) {
    HandMap map(10, 9, squareAt4And3());
    const SquareCase& c = GetParam();
    EXPECT_EQ(balancedStrength(map.map(), c.side, 1, 1, c.x, c.y, 70), 7);
    EXPECT_EQ(balancedStrength(map.map(), c.side, 1, 1, c.x, c.y, 99), 9);
    EXPECT_EQ(balancedStrength(map.map(), c.side, 2, 2, c.x, c.y, 70), 50) << "only of one pixel";
    EXPECT_EQ(balancedStrength(map.map(), c.side, 1, 2, c.x, c.y, 70), 0);
}

struct NearSquare {
    const char* name;
    Side side;
    int32_t x, y; ///< one pixel beside the line from which the square is found
};

class NearSquares : public testing::TestWithParam<NearSquare> {};

INSTANTIATE_TEST_SUITE_P(
    Places, NearSquares,
    testing::Values(NearSquare{"LeftOver", Side::kLeft, 5, 2}, NearSquare{"LeftUnder", Side::kLeft, 5, 5},
                    NearSquare{"RightOver", Side::kRight, 3, 2}, NearSquare{"RightUnder", Side::kRight, 3, 5},
                    NearSquare{"UpBefore", Side::kUp, 3, 4}, NearSquare{"UpBehind", Side::kUp, 6, 4},
                    NearSquare{"DownBefore", Side::kDown, 3, 2}, NearSquare{"DownBehind", Side::kDown, 6, 2}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_P(NearSquares, ShortenTheRampLess) {
    HandMap map(10, 9, squareAt4And3());
    const NearSquare& c = GetParam();
    ASSERT_FALSE(isIsolatedSquare(map.map(), c.side, c.x, c.y));
    EXPECT_EQ(balancedStrength(map.map(), c.side, 1, 1, c.x, c.y, 70), 25);
    EXPECT_EQ(balancedStrength(map.map(), c.side, 1, 1, c.x, c.y, 100), 36);
}

} // namespace
} // namespace kovalune::test
