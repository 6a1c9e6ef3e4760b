// Single cases of the colour extension in pictures small enough to be worked out by hand. Masks and results are
// drawn: '#' core, '.' area, ' ' outside both.
#include "tests/blur/ColorExtensionScene.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using Drawing = std::vector<std::string>;

Mask drawn(const Drawing& drawing, const std::string& marks) {
    Mask mask(static_cast<int32_t>(drawing[0].size()), static_cast<int32_t>(drawing.size()));
    for (int32_t y = 0; y < mask.height; ++y) {
        for (int32_t x = 0; x < mask.width; ++x) {
            const char mark = drawing[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            mask.at(x, y) = marks.find(mark) != std::string::npos ? 1 : 0;
        }
    }
    return mask;
}

/// 'o' is core outside the area.
PlainExtension jobOf(const Drawing& drawing, double reach, bool stopAtGap = true) {
    const Mask seed = drawn(drawing, "#o");
    return {wholeRect(seed.width, seed.height), seed, drawn(drawing, "#."), reach, stopAtGap};
}

constexpr double kFound = 0.25; ///< red of the scratch world at its first pixel, of full scale

class ExtensionEdges : public testing::TestWithParam<ExtensionDriver> {
protected:
    /// Runs over opaque source pixels, each with its place as colour: green its column, blue its row, red 1;
    /// the destination is all zero and the scratch world has its colour at its first pixel only.
    void run(const PlainExtension& job) {
        Random random(1);
        scene_.reset(); // the host made last answers
        scene_ = std::make_unique<ExtensionScene>(GetParam(), strictOptions(), job, random);
        PlainPicture source(GetParam().format, scene_->src.width(), scene_->src.height());
        for (int32_t y = 0; y < source.height; ++y) {
            for (int32_t x = 0; x < source.width; ++x) {
                source.at(x, y) = {full(), full(), static_cast<double>(x), static_cast<double>(y)};
            }
        }
        PlainPicture blank(source.format, source.width, source.height);
        write(blank, scene_->dst);
        blank.at(0, 0) = {full(), kFound * full(), 0.0, 0.0};
        write(blank, scene_->spread);
        write(source, scene_->src);
        ASSERT_EQ(scene_->run(GetParam()), PF_Err_NONE);
        result_.emplace(read(scene_->dst));
    }

    double full() const { return fullScale(GetParam().format); }
    const PlainPixel& at(int32_t x, int32_t y) const { return result_->at(x, y); }

    /// What an alpha of full scale becomes at this length.
    double alphaAt(double length, double reach) const {
        const double alpha = static_cast<double>((static_cast<float>(reach) - static_cast<float>(length)) *
                                                 static_cast<float>(full())) /
                             reach;
        return GetParam().format == PF_PixelFormat_ARGB64 ? std::trunc(alpha)
                                                          : static_cast<double>(static_cast<float>(alpha));
    }

    void expectFrom(int32_t x, int32_t y, int32_t coreX, int32_t coreY, double length) const {
        const PlainPixel& pixel = at(x, y);
        EXPECT_EQ(pixel.green, coreX) << "column of core for " << x << ", " << y;
        EXPECT_EQ(pixel.blue, coreY) << "row of core for " << x << ", " << y;
        EXPECT_EQ(pixel.red, full()) << x << ", " << y;
        EXPECT_EQ(pixel.alpha, alphaAt(length, scene_->job.reach)) << x << ", " << y;
    }

    /// The scratch world's first colour.
    void expectNothingFound(int32_t x, int32_t y, double alpha = 0.0) const {
        EXPECT_EQ(at(x, y).red, kFound * full()) << x << ", " << y;
        EXPECT_EQ(at(x, y).alpha, alpha) << x << ", " << y;
    }

    void expectUntouched(int32_t x, int32_t y) const {
        EXPECT_EQ(at(x, y).red, 0.0) << x << ", " << y;
        EXPECT_EQ(at(x, y).alpha, 0.0) << x << ", " << y;
    }

    std::unique_ptr<ExtensionScene> scene_;
    std::optional<PlainPicture> result_;
};

INSTANTIATE_TEST_SUITE_P(Drivers, ExtensionEdges, testing::ValuesIn(kExtensionDrivers), extensionName);

TEST_P(ExtensionEdges, ReachBelowTwoFindsNothing) {
    for (const double reach : {1.0, 1.5, 1.99}) {
        run(jobOf({"...", ".#.", "..."}, reach));
        for (int32_t n = 0; n < 9; ++n) {
            if (n != 4) {
                expectNothingFound(n % 3, n / 3);
            }
        }
    }
}

TEST_P(ExtensionEdges, CoreKeepsItsSourcePixel) {
    PlainExtension job = jobOf({".....", ".###.", ".#o#.", "....."}, 4.0);
    Random random(2);
    ExtensionScene scene(GetParam(), strictOptions(), job, random);
    const PlainPicture source = read(scene.src);
    ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
    const PlainPicture result = read(scene.dst);
    for (const auto& [x, y] : {std::pair<int32_t, int32_t>{1, 1}, {2, 1}, {3, 1}, {1, 2}, {2, 2}, {3, 2}}) {
        EXPECT_EQ(result.at(x, y).alpha, source.at(x, y).alpha);
        EXPECT_EQ(result.at(x, y).red, source.at(x, y).red);
    }
}

TEST_P(ExtensionEdges, OutsideBothMasksNothingIsWritten) {
    run(jobOf({"     ", " .#. ", "     "}, 5.0));
    expectUntouched(0, 0);
    expectUntouched(0, 1);
    expectUntouched(2, 2);
    expectFrom(1, 1, 2, 1, 1.0);
}

TEST_P(ExtensionEdges, BesideTheCoreAlphaIsScaledByTheReachLessOne) {
    run(jobOf({".....", "..#..", "....."}, 7.5));
    expectFrom(1, 1, 2, 1, 1.0);
    expectFrom(3, 1, 2, 1, 1.0);
    const double scaled = 6.5 * full() / 7.5;
    EXPECT_NEAR(at(1, 1).alpha, scaled, full() * 1e-4);
}

TEST_P(ExtensionEdges, ARowsOutermostColumnsAreNeverReachedAlongIt) {
    // Not even right beside core.
    run(jobOf({"   ", ".#."}, 9.0));
    expectNothingFound(0, 1);
    expectNothingFound(2, 1);
    // The spread leaves out a column's outermost rows likewise, but there the look along the column meets the
    // core itself, which the look along a row does not see.
    run(jobOf({".", "#", "."}, 9.0));
    expectFrom(0, 0, 0, 1, 1.0);
    expectFrom(0, 2, 0, 1, 1.0);
}

TEST_P(ExtensionEdges, LooksBackNeverSeeTheFirstLineAndLooksAheadSeeTheLast) {
    // Entries beside (1, 1): in the first and in the last column, in the first and in the last row.
    run(jobOf({"..", "..", "# "}, 9.0));
    expectNothingFound(1, 1);
    run(jobOf({"...", "...", "  #"}, 9.0));
    expectFrom(1, 1, 2, 2, std::sqrt(2.0));
    run(jobOf({"..#", ".. ", "..."}, 9.0));
    expectNothingFound(1, 1);
    run(jobOf({"...", ".. ", "..#"}, 9.0));
    expectFrom(1, 1, 2, 2, std::sqrt(2.0));
}

TEST_P(ExtensionEdges, InTheFirstRowAPixelDoesNotSeeWhatReachedItAlongTheRow) {
    run(jobOf({"..#..", "     "}, 9.0));
    expectNothingFound(1, 0);
    expectNothingFound(3, 0);
    EXPECT_EQ(read(scene_->spread).at(1, 0).green, 2.0) << "although the spread was there";
}

TEST_P(ExtensionEdges, ALookBackBeginsAtThePixelItself) {
    run(jobOf({".......", "...#...", ".......", ".......", "......."}, 5.0));
    expectFrom(3, 3, 3, 1, 2.0); // straight below: the vertical spread's entry at the pixel itself
    expectFrom(3, 2, 3, 1, 1.0);
}

TEST_P(ExtensionEdges, WithCoreLeftAndAboveThePixelTakesWhatTheVerticalSpreadLeftThere) {
    // Both at the distance 2 of (3, 3).
    run(jobOf({".....", "...#.", ".....", ".#...", "....."}, 5.0));
    expectFrom(3, 3, 3, 1, 2.0);
}

TEST_P(ExtensionEdges, TheVerticalSpreadOverwritesAShorterWayAlongTheRow) {
    // (3, 3) is 1 from the core in its row and 2 from the one above: the row's length wins and has its alpha,
    // the column's colour stands there.
    run(jobOf({".....", "...#.", ".....", "..#..", "....."}, 5.0));
    expectFrom(3, 3, 3, 1, 1.0);
}

TEST_P(ExtensionEdges, OfCoreAsNearOnBothSidesTheOneBeforeSpreads) {
    run(jobOf({".......", ".#...#.", "......."}, 6.0));
    expectFrom(3, 1, 1, 1, 2.0);
    run(jobOf({"...", ".#.", "...", "...", "...", ".#.", "..."}, 6.0));
    expectFrom(1, 3, 1, 1, 2.0);
}

TEST_P(ExtensionEdges, TheRowWinsATieAgainstTheColumn) {
    // From (3, 3): along the row to (2, 3), whose column holds core 1 above; along the column to (3, 4), whose row
    // holds core 1 to the right.
    run(jobOf({"......", "......", "..#...", "......", "....#.", "......"}, 6.0));
    expectFrom(3, 3, 2, 2, std::sqrt(2.0));
    // Of left and right the left, of up and down the up.
    run(jobOf({".......", "..#.#..", ".......", "......."}, 6.0));
    expectFrom(3, 2, 2, 1, std::sqrt(2.0));
}

TEST_P(ExtensionEdges, AVerticalSpreadOverALaterStretchLeavesItsDistanceInTheCore) {
    // The core at (2, 4) keeps the 2 that the stretch at (2, 2) left there, and the pixel beside it sees that
    // entry with the core's own colour; the row's own distance is 1 and wins.
    run(jobOf({".....", ".....", "..#..", ".....", "..#..", ".....", "....."}, 9.0));
    expectFrom(3, 4, 2, 4, 1.0);
    // Where the core cannot spread along its row, only that entry is left: sqrt(2^2 + 1^2).
    run(jobOf({"   ", " # ", " . ", " #.", "   "}, 9.0));
    expectFrom(2, 3, 1, 3, std::sqrt(5.0));
    // A core that no stretch above passes over shows no entry.
    run(jobOf({"   ", "   ", " . ", " #.", "   "}, 9.0));
    expectNothingFound(2, 3);
    // Nor one that only a stretch below passes by.
    run(jobOf({"   ", " #.", " . ", " # ", "   "}, 9.0));
    expectNothingFound(2, 1);
}

TEST_P(ExtensionEdges, GapsStopTheSpreadsOnlyWhenAsked) {
    const Drawing drawing = {".........", ".#. .....", "........."};
    run(jobOf(drawing, 9.0, false));
    expectFrom(4, 1, 1, 1, 3.0);
    expectUntouched(3, 1);
    run(jobOf(drawing, 9.0, true));
    // Around the gap: two to the left in the row above, whose entry is 1 above core.
    EXPECT_NE(at(4, 1).alpha, alphaAt(3.0, 9.0));
    const Drawing single = {"         ", ".#. ....."};
    run(jobOf(single, 9.0, true));
    expectNothingFound(5, 1);
    run(jobOf(single, 9.0, false));
    expectFrom(5, 1, 1, 1, 4.0);
}

TEST_P(ExtensionEdges, ThePixelsOwnLookAlwaysStopsAtAGap) {
    // (5, 2) could see the entries below the core only through the gap in column 3.
    for (const bool stopAtGap : {false, true}) {
        run(jobOf({".......", ".#.    ", ".. ....", "       "}, 9.0, stopAtGap));
        expectNothingFound(5, 2);
    }
}

TEST_P(ExtensionEdges, CoreOutsideTheAreaGivesColour) {
    run(jobOf({".....", "..o..", "....."}, 4.0));
    expectFrom(3, 1, 2, 1, 1.0);
    expectNothingFound(2, 2); // the last row, which no walk down writes, and the core is a gap to its look
}

TEST_P(ExtensionEdges, TheEndOfTheReachGetsLittleAlphaAndBeyondNone) {
    Drawing rows = {std::string(20, ' '), std::string(20, '.')};
    rows[1][2] = '#';
    run(jobOf(rows, 6.5));
    expectFrom(7, 1, 2, 1, 5.0); // R is 6: five pixels are reached
    EXPECT_GT(at(7, 1).alpha, 0.0);
    expectNothingFound(8, 1);
    expectNothingFound(9, 1);
}

TEST_P(ExtensionEdges, ADiagonalBeyondTheReachKeepsItsColourWithoutAlpha) {
    // (5, 5) is sqrt(32) from the core at (1, 1), each way within the reach of 5.
    run(jobOf(
        {"........", ".#......", "........", "........", "........", "........", "........", "........"},
        5.5));
    expectFrom(5, 5, 1, 1, 5.5);
    EXPECT_EQ(at(5, 5).alpha, 0.0);
}

TEST_P(ExtensionEdges, WithoutAnyCoreEverythingIsTransparentUpToAReachOfAThousand) {
    for (const double reach : {1.0, 30.0, 999.5, 1000.0}) {
        run(jobOf({"...", "..."}, reach));
        expectNothingFound(2, 1);
    }
    run(jobOf({"...", "..."}, 1001.0));
    expectNothingFound(2, 1, alphaAt(1000.0, 1001.0));
    EXPECT_GT(at(2, 1).alpha, 0.0);
}

TEST_P(ExtensionEdges, TheLargestReachEndsShortOfThousand) {
    Drawing rows = {std::string(1200, ' '), std::string(1200, '.')};
    rows[1][100] = '#';
    run(jobOf(rows, 1001.0));
    expectFrom(1099, 1, 100, 1, 999.0);
    expectNothingFound(1100, 1, alphaAt(1000.0, 1001.0));
}

TEST_P(ExtensionEdges, AReachOfNothingOrLessFindsNothing) {
    run(jobOf({"...", ".#.", "..."}, -3.0));
    EXPECT_EQ(std::abs(at(0, 0).alpha), 0.0);
    run(jobOf({"...", ".#.", "..."}, 0.0));
    if (GetParam().format == PF_PixelFormat_ARGB64) {
        expectNothingFound(0, 0);
    } else {
        EXPECT_TRUE(std::isnan(at(0, 0).alpha));
    }
}

TEST_P(ExtensionEdges, RowsThatTheSummaryCallsEmptyAreLeftAlone) {
    const PlainExtension job = jobOf({"...", ".#.", "..."}, 4.0);
    Random random(3);
    ExtensionScene scene(GetParam(), strictOptions(), job, random);
    const PlainPicture before = read(scene.dst);
    summariesOf(scene.limit).rows[1] = 0;
    summariesOf(scene.seed).columns[1] = 0; // gates nothing
    ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
    const PlainPicture after = read(scene.dst);
    for (int32_t x = 0; x < 3; ++x) {
        EXPECT_EQ(after.at(x, 1).red, before.at(x, 1).red);
    }
    EXPECT_EQ(read(scene.spread).at(1, 1).red, read(scene.src).at(1, 1).red) << "the vertical spread's";
}

TEST_P(ExtensionEdges, InfiniteAlphaTravelsByTheFormula) {
    if (GetParam().format != PF_PixelFormat_ARGB128) {
        return;
    }
    const PlainExtension job = jobOf({".....", ".....", ".#...", ".....", "....."}, 3.0);
    Random random(4);
    ExtensionScene scene(GetParam(), strictOptions(), job, random);
    scene.src.at<PF_PixelFloat>(1, 2).alpha = std::numeric_limits<float>::infinity();
    ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
    EXPECT_EQ(scene.dst.at<PF_PixelFloat>(2, 2).alpha, std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(scene.dst.at<PF_PixelFloat>(3, 3).alpha) ||
                scene.dst.at<PF_PixelFloat>(3, 3).alpha > 0.0F);
}

} // namespace
} // namespace kovalune::test
