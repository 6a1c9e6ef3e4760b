// Where pixels lie: bounds, rows, windows, scales. Whatever the host's layout is, the frame is the reference's.

#include "adapters/openfx/Render.h"
#include "tests/adapters/openfx/Stage.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kovalune::test {

using namespace openfx;

namespace {

constexpr int kWidth = 75;
constexpr int kHeight = 46;

struct Layout {
    int padding;
    bool isTopFirst;
    int left;
    int bottom;
    int offset;
};

constexpr Layout kLayouts[] = {
    {0, false, 0, 0, 0},     {0, true, 0, 0, 0},   {12, false, -30, 17, 0},
    {52, true, 1000, -9, 0}, {3, true, -7, -7, 1},
};

TEST(OpenFxHabits, RowsAreNegativeOrPaddedAndBoundsLieAnywhere) {
    Stage stage;
    chooseColours(*stage.instance);
    for (const char* const depth : kDepths) {
        for (const Layout& layout : kLayouts) {
            const PictureForm form = {.depth = depth,
                                      .padding = layout.padding,
                                      .isTopFirst = layout.isTopFirst,
                                      .left = layout.left,
                                      .bottom = layout.bottom,
                                      .offset = layout.offset};
            TestPicture source = drawn(form, kWidth, kHeight);
            PictureForm turned = form;
            turned.isTopFirst = !form.isTopFirst;
            TestPicture output(turned, kWidth, kHeight);
            ASSERT_EQ(stage.render(&source, output), kOk);
            const host::Image expected = stage.expected(source);
            EXPECT_TRUE(output.image() == expected) << depth << ' ' << layout.padding << ' ' << layout.left;
            EXPECT_FALSE(expected == source.image()) << "a frame that shows nothing";
        }
    }
}

/// Sets what the expected picture has at places of the plane; elsewhere transparent black.
host::Image placed(const host::Image& from, const RectI& bounds, const RectI& at) {
    host::Image image(from.format(), at.x2 - at.x1, at.y2 - at.y1);
    for (int y = at.y1; y < at.y2; ++y) {
        for (int x = at.x1; x < at.x2; ++x) {
            if (x >= bounds.x1 && x < bounds.x2 && y >= bounds.y1 && y < bounds.y2) {
                image.at<PF_Pixel>(x - at.x1, at.y2 - 1 - y) =
                    from.at<PF_Pixel>(x - bounds.x1, bounds.y2 - 1 - y);
            }
        }
    }
    return image;
}

TEST(OpenFxPlaces, OutsideOfTheSourceIsTransparent) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source = drawn({.left = 5, .bottom = -3}, kWidth, kHeight);
    const host::Image expected = stage.expected(source);
    for (const PictureForm& form :
         {PictureForm{.left = 0, .bottom = -10}, PictureForm{.left = 40, .bottom = 20},
          PictureForm{.left = -200, .bottom = 0}}) {
        TestPicture output(form, 90, 70);
        ASSERT_EQ(stage.render(&source, output), kOk);
        EXPECT_TRUE(output.image() == placed(expected, source.bounds(), output.bounds())) << form.left;
    }
}

TEST(OpenFxHabits, AHostThatTilesAllTheSameGetsThePartOfTheWholeFrame) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source = drawn({.left = 5, .bottom = -3}, kWidth, kHeight);
    TestPicture whole({.left = 5, .bottom = -3}, kWidth, kHeight);
    ASSERT_EQ(stage.render(&source, whole), kOk);
    TestPicture tiled({.left = 5, .bottom = -3}, kWidth, kHeight);
    const RectI bounds = tiled.bounds();
    int tiles = 0;
    for (int y = bounds.y1; y < bounds.y2; y += 20) {
        for (int x = bounds.x1; x < bounds.x2; x += 30) {
            ASSERT_EQ(
                stage.render(&source, tiled,
                             {.window = {x, y, std::min(x + 30, bounds.x2), std::min(y + 20, bounds.y2)}}),
                kOk);
            EXPECT_EQ(tiled == whole, ++tiles == 9);
        }
    }
}

TEST(OpenFxPlaces, NothingIsWrittenOutsideOfTheWindowOrTheOutput) {
    Stage stage;
    TestPicture source = drawn({}, kWidth, kHeight);
    TestPicture output({.left = 10, .bottom = 10}, 20, 20);
    ASSERT_EQ(stage.render(&source, output, {.window = {-50, 15, 60, 16}}), kOk);
    const TestPicture untouched({.left = 10, .bottom = 10}, 20, 20);
    for (int y = 0; y < 20; ++y) {
        const bool same = std::memcmp(output.at(0, y), untouched.at(0, y), 20 * 4) == 0;
        EXPECT_EQ(same, y != 14) << y;
    }
    TestPicture another({.left = 10, .bottom = 10}, 20, 20);
    ASSERT_EQ(stage.render(&source, another, {.window = {12, 18, 15, 11}}), kOk);
    EXPECT_TRUE(another.isUntouched());
}

TEST(OpenFxHabits, TheScaleIsTheActionsAndTheSizeTheImages) {
    Stage stage;
    chooseColours(*stage.instance);
    stage.instance->set("process1BoundaryBlur", {40.0});
    TestPicture source = drawn({}, kWidth, kHeight);
    const host::Image atFull = stage.expected(source);
    for (const A_u_long denominator : {2U, 3U, 4U}) {
        TestPicture output({}, kWidth, kHeight);
        const double scale = 1.0 / denominator;
        ASSERT_EQ(stage.render(&source, output, {.scaleX = scale, .scaleY = scale}), kOk);
        EXPECT_TRUE(output.image() == stage.expected(source, {1, denominator})) << denominator;
        EXPECT_FALSE(output.image() == atFull) << denominator;
    }
}

TEST(OpenFxPlaces, AScaleIsTheNearestFraction) {
    const auto fraction = [](double scale) {
        const PF_RationalScale found = nearestFraction(scale);
        return std::to_string(found.num) + '/' + std::to_string(found.den);
    };
    EXPECT_EQ(fraction(1.0), "1/1");
    EXPECT_EQ(fraction(0.5), "1/2");
    EXPECT_EQ(fraction(1.0 / 3.0), "1/3");
    EXPECT_EQ(fraction(0.3), "3/10");
    EXPECT_EQ(fraction(2.0), "2/1");
    EXPECT_EQ(fraction(static_cast<double>(0.1F)), "1/10");
    EXPECT_EQ(fraction(1.0 / 32767.0), "1/32767");
    EXPECT_EQ(fraction(1e-9), "1/32767");
    for (const double none : {0.0, -1.0, std::nan(""), 1e30}) {
        EXPECT_EQ(fraction(none), "1/1") << none;
    }
}

TEST(OpenFxPlaces, NoSourceIsTransparentBlack) {
    Stage stage;
    TestPicture empty({}, 0, 0);
    for (TestPicture* const source : {static_cast<TestPicture*>(nullptr), &empty}) {
        TestPicture output({.depth = "OfxBitDepthFloat"}, 9, 7);
        ASSERT_EQ(stage.render(source, output), kOk);
        EXPECT_TRUE(output.image() == host::Image(PF_PixelFormat_ARGB128, 9, 7));
    }
    EXPECT_EQ(stage.host.takeMessages(), std::vector<std::string>{});
}

TEST(OpenFxPlaces, NoOutputIsAFailureThatIsTold) {
    Stage stage;
    TestPicture source = drawn({}, 9, 7);
    stage.instance->clip("Source").picture = &source;
    EXPECT_EQ(stage.host.render(*stage.instance, {.window = {0, 0, 9, 7}}), kFailed);
    const std::vector<std::string> messages = stage.host.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0], "OfxMessageError: the host gives no image of the clip Output");
    EXPECT_EQ(stage.host.lastingMessages(), 1);
    TestPicture output({}, 9, 7);
    EXPECT_EQ(stage.render(&source, output), kOk);
    EXPECT_EQ(stage.host.lastingMessages(), 0) << "cleared by the next frame that succeeds";
}

TEST(OpenFxPlaces, APictureLargerThanAFrameIsRefused) {
    Stage stage;
    TestPicture source({}, 32768, 1);
    TestPicture output({}, 8, 8);
    EXPECT_EQ(stage.render(&source, output), kFailed);
    EXPECT_TRUE(output.isUntouched());
    EXPECT_EQ(stage.host.takeMessages().size(), 1U);
}

} // namespace
} // namespace kovalune::test
