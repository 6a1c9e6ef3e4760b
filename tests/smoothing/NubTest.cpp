// Pixels that stick out: which flags make one, and what the cross filter makes of it.

#include "effect/smoothing/Patterns.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kovalune::test {
namespace {

constexpr int32_t kX = 3;
constexpr int32_t kY = 3;

enum Bit { kLeft = 1, kRight = 2, kTop = 4, kBottom = 8, kNw = 16, kNe = 32, kSw = 64, kSe = 128 };

std::vector<MarkedCell> cellsOf(int bits) {
    const std::pair<int, MarkedCell> places[] = {
        {kLeft, {kX - 1, kY, 1}},   {kRight, {kX, kY, 1}},  {kTop, {kX, kY - 1, 2}}, {kBottom, {kX, kY, 2}},
        {kNw, {kX - 1, kY - 1, 4}}, {kNe, {kX, kY - 1, 8}}, {kSw, {kX - 1, kY, 8}},  {kSe, {kX, kY, 4}},
    };
    std::vector<MarkedCell> cells;
    for (const auto& [bit, cell] : places) {
        if ((bits & bit) != 0) {
            cells.push_back(cell);
        }
    }
    return cells;
}

bool isNubOf(int bits) {
    const HandScene<Argb8> scene(cellsOf(bits), 70, 7, 7);
    return isNub(FlagWindow(scene.context().map, kX, kY));
}

TEST(Nub, OfThreeSidesHasTheCornersAwayFromTheFourth) {
    const struct {
        int sides, corners;
    } kOpenings[] = {{kRight | kTop | kBottom, kNe | kSe},
                     {kLeft | kTop | kBottom, kNw | kSw},
                     {kLeft | kRight | kBottom, kSw | kSe},
                     {kLeft | kRight | kTop, kNw | kNe}};
    for (const auto& opening : kOpenings) {
        for (int corners = 0; corners < 256; corners += 16) {
            const bool expected =
                (corners & opening.corners) == opening.corners && corners != (kNw | kNe | kSw | kSe);
            EXPECT_EQ(isNubOf(opening.sides | corners), expected) << opening.sides << " " << corners;
        }
    }
}

TEST(Nub, OfFourSidesHasACornerOfEachDiagonal) {
    int nubs = 0;
    for (int corners = 0; corners < 256; corners += 16) {
        const bool expected = (corners & (kNw | kSe)) != 0 && (corners & (kNe | kSw)) != 0;
        EXPECT_EQ(isNubOf(15 | corners), expected) << corners;
        nubs += expected ? 1 : 0;
    }
    EXPECT_EQ(nubs, 9);
}

TEST(Nub, HasThreeSides) {
    for (int bits = 0; bits < 256; ++bits) {
        const int sides = (bits & 1) + (bits >> 1 & 1) + (bits >> 2 & 1) + (bits >> 3 & 1);
        if (sides < 3) {
            EXPECT_FALSE(isNubOf(bits)) << bits;
        }
    }
}

/// The filter on a picture whose source is all `around` and whose destination is `own` at (x, y).
template <class Format>
PlainPixel softened(const PlainPixel& around, const PlainPixel& own, int32_t strength, int32_t x, int32_t y,
                    int32_t width = 3, int32_t height = 3) {
    HandScene<Format> scene({}, strength, width, height);
    for (int32_t row = 0; row < height; ++row) {
        for (int32_t column = 0; column < width; ++column) {
            scene.source().set(column, row, around);
        }
    }
    // The source's own pixel plays no part.
    scene.source().set(x, y, {fullScale(formatOf<Format>()), 0.0, 0.0, 0.0});
    scene.destination().set(x, y, own);
    const PlainPicture before = scene.result();
    softenNub(scene.context(), x, y);
    PlainPicture expected = before;
    expected.at(x, y) = scene.destination().get(x, y);
    EXPECT_EQ(difference(expected, scene.result()), "") << "nothing but the pixel changes";
    return scene.destination().get(x, y);
}

void expectAll(const PlainPixel& p, double alpha, double colour) {
    EXPECT_EQ(p.alpha, alpha);
    EXPECT_EQ(p.red, colour);
    EXPECT_EQ(p.green, colour);
    EXPECT_EQ(p.blue, colour);
}

PlainPixel grey(double alpha, double colour) {
    return {alpha, colour, colour, colour};
}

TEST(CrossFilter8, IsAMeanOfThePixelAndItsNeighbours) {
    // 63 shares of each neighbour and 254 of the pixel, over 509.
    expectAll(softened<Argb8>(grey(255, 100), grey(255, 200), 100, 1, 1), 255, 149);
}

TEST(CrossFilter8, LeavesOutNeighboursBeyondTheBorder) {
    for (const int32_t x : {0, 2}) {
        for (const int32_t y : {0, 2}) {
            expectAll(softened<Argb8>(grey(255, 100), grey(255, 200), 100, x, y), 255, 166);
        }
    }
    expectAll(softened<Argb8>(grey(255, 100), grey(255, 200), 100, 0, 0, 1, 1), 255, 200);
}

TEST(CrossFilter8, CountsFaintNeighboursInTheAlphaAlone) {
    // 3 * 16383 is less than a 16-bit unit.
    expectAll(softened<Argb8>(grey(3, 255), grey(100, 40), 100, 1, 1), 52, 39);
    expectAll(softened<Argb8>(grey(1, 255), grey(0, 40), 100, 1, 1), 0, 40);
}

TEST(CrossFilter8, OfTransparentPixelsKeepsTheirColours) {
    expectAll(softened<Argb8>(grey(0, 255), grey(0, 40), 100, 1, 1), 0, 40);
    expectAll(softened<Argb8>(grey(0, 255), grey(100, 40), 100, 1, 1), 50, 40);
    expectAll(softened<Argb8>(grey(255, 200), grey(0, 40), 100, 1, 1), 127, 198);
}

TEST(CrossFilter16, IsAMeanOfThePixelAndItsNeighbours) {
    expectAll(softened<Argb16>(grey(32768, 10000), grey(32768, 20000), 100, 1, 1), 32768, 15000);
    expectAll(softened<Argb16>(grey(32768, 10000), grey(32768, 20000), 100, 0, 0), 32768, 16667);
    expectAll(softened<Argb16>(grey(32768, 10000), grey(32768, 20000), 100, 0, 0, 1, 1), 32768, 20000);
}

TEST(CrossFilter16, OfTransparentPixelsKeepsTheirColours) {
    expectAll(softened<Argb16>(grey(0, 10000), grey(0, 777), 100, 1, 1), 0, 777);
    expectAll(softened<Argb16>(grey(0, 10000), grey(32768, 20000), 100, 1, 1), 16384, 20000);
    expectAll(softened<Argb16>(grey(32768, 10000), grey(0, 20000), 100, 1, 1), 16384, 10000);
}

TEST(CrossFilter32, IsAMeanOfThePixelAndItsNeighboursWithoutRounding) {
    // Four quarters and one whole.
    expectAll(softened<Argb32>(grey(1.0, 0.5), grey(1.0, 2.0), 100, 1, 1), 1.0, 1.25);
    expectAll(softened<Argb32>(grey(1.0, 0.5), grey(1.0, 2.0), 100, 2, 0), 1.0, 1.5);
    expectAll(softened<Argb32>(grey(1.0, 0.5), grey(1.0, 2.0), 100, 0, 0, 1, 1), 1.0, 2.0);
}

TEST(CrossFilter32, OfTransparentPixelsKeepsTheirColours) {
    expectAll(softened<Argb32>(grey(0.0, 0.5), grey(0.0, 0.25), 100, 1, 1), 0.0, 0.25);
    expectAll(softened<Argb32>(grey(0.0, 0.5), grey(1.0, 0.25), 100, 1, 1), 0.5, 0.25);
    expectAll(softened<Argb32>(grey(1.0, 0.5), grey(0.0, 0.25), 100, 1, 1), 0.5, 0.5);
}

} // namespace
} // namespace kovalune::test
