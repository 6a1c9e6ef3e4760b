// What stands in the output of a whole frame.
#include "tests/pipeline/FrameScene.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class FrameView : public testing::TestWithParam<FrameDriver> {};

INSTANTIATE_TEST_SUITE_P(Formats, FrameView, testing::ValuesIn(kFrameDrivers), frameName);

void randomiseBase(FrameScene& scene, Random& random) {
    StageSettings& base = scene.settings.stages[0];
    base.blurAmount = random.chance(15) ? 0.0 : 15.0 + random.unit() * 40.0;
    base.repeat = random.between(0, 4);
    base.keepDivision = random.chance(50) ? 1 : 0;
    scene.listAColourOfTheInput();
    base.colors[0].range = random.unit() * 20.0;
    for (int entry = 1; entry < 4; ++entry) {
        const auto channel = [&random] { return static_cast<uint8_t>(random.below(256)); };
        base.colors[entry] = {static_cast<uint8_t>(random.chance(50) ? 1 : 0),
                              {0, channel(), channel(), channel()},
                              random.unit() * 25.0};
    }
}

TEST_P(FrameView, OfNormalExtractAndBaseIsLikeThePlainOne) {
    Random random(131);
    for (int round = 0; round < 60; ++round) {
        host::judge::JudgeOptions options = shuffledOptions(random.between(1, 9), 3, random.next());
        options.rowPadding = 4 * random.below(6);
        const int32_t width = random.between(1, 40);
        const int32_t height = random.between(1, 40);
        FrameScene scene(GetParam(), options, width, height, random);
        if (random.chance(40)) {
            const int32_t left = random.below(width);
            const int32_t top = random.below(height);
            scene.settings.extentRect =
                rectAt(left, top, random.between(1, width - left), random.between(1, height - top));
        }
        randomiseBase(scene, random);
        constexpr std::array views = {kViewNormal, kViewExtract, kViewBase};
        scene.settings.view = views[static_cast<std::size_t>(round % 3)];
        const PlainPicture input = read(scene.input);
        PlainFrame plain{scene.settings};
        plain.iterations = options.iterations;
        const PlainPicture expected = plainOutput(plain, input);
        ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        ASSERT_EQ(difference(expected, scene.output), "") << "round " << round;
        ASSERT_EQ(difference(input, scene.input), "") << "the input is only read";
    }
}

TEST_P(FrameView, OfNormalKeepsTheInputsAlpha) {
    Random random(132);
    FrameScene scene(GetParam(), random);
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    const PlainPicture input = read(scene.input);
    const PlainPicture output = read(scene.output);
    for (std::size_t i = 0; i < input.pixels.size(); ++i) {
        ASSERT_EQ(input.pixels[i].alpha, output.pixels[i].alpha);
    }
    EXPECT_NE(difference(input, output), "") << "the colours did change";
}

TEST_P(FrameView, WithoutAMatchIsTheInputItself) {
    Random random(133);
    for (const double amount : {0.0, 8.0, kUnsmoothedAmount}) {
        FrameScene scene(GetParam(), random);
        write(randomPicture(GetParam().format, 14, 11, random, Range::kWild), scene.input);
        scene.listNothing();
        scene.settings.stages[0].blurAmount = amount;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(difference(read(scene.input), scene.output), "");
    }
}

TEST_P(FrameView, OfExtractAndBaseWithoutAMatchIsTransparent) {
    Random random(134);
    for (const int32_t view : {kViewExtract, kViewBase}) {
        FrameScene scene(GetParam(), random);
        scene.listNothing();
        scene.settings.view = view;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        PlainPicture expected = read(scene.input);
        for (PlainPixel& pixel : expected.pixels) {
            pixel.alpha = 0.0;
        }
        EXPECT_EQ(difference(expected, scene.output), "");
    }
}

TEST(FrameDepths, DisabledProcessStageShowsNothingInAnEightBitFrame) {
    Random random(135);
    for (const int32_t view : {kViewProcess1, kViewProcess4}) {
        FrameScene scene(kFrameDrivers[0], random);
        scene.settings.view = view;
        EXPECT_EQ(renderFrame8(scene.settings), PF_Err_NONE);
        EXPECT_EQ(difference(PlainPicture(PF_PixelFormat_ARGB32, 14, 11), scene.output), "");
    }
}

TEST(FrameDepths, DisabledProcessStageIsAWorldCopyInTheDeeperFrames) {
    Random random(136);
    host::judge::JudgeOptions options = strictOptions();
    options.recordCalls = true;
    for (const FrameDriver& driver : {kFrameDrivers[1], kFrameDrivers[2]}) {
        FrameScene scene(driver, options, 14, 11, random);
        scene.settings.view = kViewProcess1;
        scene.host.clearCalls();
        EXPECT_EQ(driver.render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(scene.host.countCalls("copy_hq"), 2) << "the opening's and the layer's";
    }
}

TEST(FrameDepths, EightBitFrameIsTheNarrowedSixteenBitFrame) {
    Random random(137);
    for (int round = 0; round < 20; ++round) {
        const int32_t width = random.between(1, 40);
        const int32_t height = random.between(1, 40);
        const host::judge::JudgeOptions options = shuffledOptions(random.between(1, 5), 2, random.next());
        FrameScene narrow(kFrameDrivers[0], options, width, height, random);
        randomiseBase(narrow, random);
        FrameScene wide(kFrameDrivers[1], options, width, height, random);
        write(plainWiden(read(narrow.input)), wide.input);
        for (int stage = 0; stage < 5; ++stage) {
            wide.settings.stages[stage] = narrow.settings.stages[stage];
        }
        constexpr std::array views = {kViewNormal, kViewExtract, kViewBase};
        narrow.settings.view = views[static_cast<std::size_t>(round % 3)];
        wide.settings.view = narrow.settings.view;
        ASSERT_EQ(renderFrame16(wide.settings), PF_Err_NONE);
        const StrictHost::Turn turn(narrow.host);
        ASSERT_EQ(renderFrame8(narrow.settings), PF_Err_NONE);
        ASSERT_EQ(difference(plainNarrow(read(wide.output)), narrow.output), "") << "round " << round;
    }
}

} // namespace
} // namespace kovalune::test
