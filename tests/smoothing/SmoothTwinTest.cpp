// The smoothing against its plain twin, to the last bit, in every format and mode, on pictures that together bring up
// every pattern.

#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/SmoothScenes.h"
#include "tests/support/Effort.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

namespace kovalune::test {
namespace {

/// All that the twin counts.
constexpr std::string_view kPatterns[] = {"run to the left",
                                          "run to the right",
                                          "run upwards",
                                          "run downwards",
                                          "balanced run to the left",
                                          "balanced run to the right",
                                          "balanced run upwards",
                                          "balanced run downwards",
                                          "closed run to the left",
                                          "closed run to the right",
                                          "closed run upwards",
                                          "closed run downwards",
                                          "run along the first side",
                                          "run along the second side",
                                          "first side of a corner, to the left",
                                          "first side of a corner, to the right",
                                          "first side of a corner, upwards",
                                          "first side of a corner, downwards",
                                          "second side of a corner, to the left",
                                          "second side of a corner, to the right",
                                          "second side of a corner, upwards",
                                          "second side of a corner, downwards",
                                          "stretch below 1",
                                          "square at the left",
                                          "square at the right",
                                          "square above",
                                          "square below",
                                          "square over the row",
                                          "square under the row",
                                          "square left of the column",
                                          "square right of the column",
                                          "taper to the left",
                                          "taper to the right",
                                          "taper upwards",
                                          "taper downwards",
                                          "long taper",
                                          "vertical diagonal 1",
                                          "vertical diagonal 2",
                                          "vertical diagonal 3",
                                          "vertical diagonal 4",
                                          "horizontal diagonal 1",
                                          "horizontal diagonal 2",
                                          "horizontal diagonal 3",
                                          "horizontal diagonal 4",
                                          "fringe at the left",
                                          "fringe at the right",
                                          "right mend 1",
                                          "right mend 2",
                                          "right mend 3",
                                          "down mend 1",
                                          "down mend 2",
                                          "down mend 3",
                                          "down right mend 1",
                                          "down right mend 2",
                                          "three sides of four corners",
                                          "nub of four sides",
                                          "nub open at the left",
                                          "nub open at the right",
                                          "nub open at the top",
                                          "nub open at the bottom",
                                          "restore 1",
                                          "restore 2",
                                          "restore 3",
                                          "restore 4",
                                          "shoulder above, left",
                                          "shoulder above, right",
                                          "shoulder below, left",
                                          "shoulder below, right",
                                          "shoulder at the left, upper",
                                          "shoulder at the left, lower",
                                          "shoulder at the right, upper",
                                          "shoulder at the right, lower",
                                          "pixel of diagonal flags alone",
                                          "blend of equal alphas",
                                          "blend of a transparent colour",
                                          "blend over a transparent pixel",
                                          "blend of two alphas"};

/// At 8 bits faint alphas are cut to nothing in the cross filter. The other formats lose none.
constexpr std::string_view kPatternOf8Bits = "nub without colour";

struct NamedMode {
    const char* name;
    SmoothMode mode;
};

class SmoothTwin : public testing::TestWithParam<std::tuple<PF_PixelFormat, NamedMode>> {
protected:
    static PF_PixelFormat format() { return std::get<0>(GetParam()); }
    static SmoothMode mode() { return std::get<1>(GetParam()).mode; }

    void compare(SmoothScene scene) {
        const PlainPicture& picture = scene.picture;
        TestWorld source(host_, picture.format, picture.width, picture.height);
        TestWorld destination(host_, picture.format, picture.width, picture.height);
        write(picture, source);
        scene.params.inData = host_.in();
        scene.params.srcWorld = source.get();
        scene.params.dstWorld = destination.get();
        ASSERT_EQ(smoothBoundaries(scene.params), PF_Err_NONE);
        ASSERT_EQ(difference(picture, source), "") << "the source is never written";
        ASSERT_EQ(difference(PlainSmooth(scene.params, picture, counts_).run(), destination), "")
            << scene.text;
    }

    void compareRandom(int scenes, int32_t longest, Random& random) {
        for (int n = 0; n < scenes && !HasFailure(); ++n) {
            compare(randomSmoothScene(format(), mode(), random.between(1, longest),
                                      random.between(1, longest), random));
        }
    }

    StrictHost host_;
    PatternCounts counts_;
};

INSTANTIATE_TEST_SUITE_P(
    All, SmoothTwin,
    testing::Combine(testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128),
                     testing::Values(NamedMode{"Plain", SmoothMode::kPlain},
                                     NamedMode{"KeyRemoved", SmoothMode::kKeyRemoved},
                                     NamedMode{"KeyOnly", SmoothMode::kKeyOnly})),
    [](const auto& test) { return formatName(std::get<0>(test.param)) + std::get<1>(test.param).name; });

TEST_P(SmoothTwin, AgreesWhileEveryPatternComesUp) {
    Random random(101);
    compareRandom(cases(1000), 64, random);
    compareRandom(cases(1500), 12, random);
    if (kSanitized) {
        return; // some come up in all of them alone
    }
    for (const std::string_view pattern : kPatterns) {
        EXPECT_GT(counts_[pattern], 0) << pattern;
    }
    EXPECT_EQ(counts_["restore in column 0"], 0) << "its flags stand left of the picture";
    if (format() == PF_PixelFormat_ARGB32) {
        EXPECT_GT(counts_[kPatternOf8Bits], 0);
    }
}

TEST_P(SmoothTwin, AgreesOnPicturesOfOneRowOrColumn) {
    Random random(102);
    for (int n = 0; n < cases(400) && !HasFailure(); ++n) {
        const int32_t length = random.between(1, 40);
        const bool row = random.chance(50);
        compare(randomSmoothScene(format(), mode(), row ? length : random.between(1, 2),
                                  row ? random.between(1, 2) : length, random));
    }
}

/// Ramps of every length and strength, where the weights' rounding shows.
TEST_P(SmoothTwin, AgreesAtEveryStrengthAndCurve) {
    Random random(103);
    for (int strength = 1; strength <= 100 && !HasFailure(); ++strength) {
        for (const int32_t curve : {-100, -37, 0, 2, 100}) {
            SmoothScene scene = randomSmoothScene(format(), mode(), 33, 17, random);
            scene.params.strength = strength;
            scene.params.curve = curve;
            compare(scene);
        }
    }
}

} // namespace
} // namespace kovalune::test
