// What the opening of a frame makes of its settings.

#include "effect/pipeline/FrameStage.h"
#include "effect/share/Integers.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace kovalune::test {
namespace {

constexpr double kFull = 1.0;
constexpr double kHalf = 0.5;

TEST(FrameOpening, MakesFractionsOfPercentages) {
    RenderSettings settings;
    settings.stages[0].colors[0] = {1, {0, 1, 2, 3}, 50.0};
    settings.stages[0].colors[3] = {0, {0, 4, 5, 6}, 100.0};
    settings.stages[4].colors[0].range = 1.0;
    const FrameOpening opening(settings, kFull);
    EXPECT_TRUE(opening.stages[0].colors[0].isEnabled);
    EXPECT_EQ(opening.stages[0].colors[0].color.blue, 3);
    EXPECT_EQ(opening.stages[0].colors[0].rangeFraction, 0.5);
    EXPECT_FALSE(opening.stages[0].colors[3].isEnabled);
    EXPECT_EQ(opening.stages[0].colors[3].rangeFraction, 1.0);
    EXPECT_EQ(opening.stages[4].colors[0].rangeFraction, 0.01);
    EXPECT_EQ(settings.stages[0].colors[0].range, 50.0) << "the record stays as the controls show it";
}

TEST(FrameOpening, MakesWholePixelsOfTheBaseAmountAndOneOfNothing) {
    RenderSettings settings;
    for (const auto& [amount, pixels] : {std::pair(0.0, 1.0), {0.4, 1.0}, {0.5, 2.0}, {10.0, 11.0}}) {
        settings.stages[0].blurAmount = amount;
        EXPECT_EQ(FrameOpening(settings, kFull).stages[0].halfLengthPixels, pixels) << amount;
    }
    EXPECT_EQ(FrameOpening(settings, kHalf).stages[0].halfLengthPixels, 6.0);
    settings.stages[0].boundaryBlur = 70.0;
    EXPECT_EQ(FrameOpening(settings, kFull).stages[0].reachPixels, 0.0) << "Base extends no colour";
}

TEST(FrameOpening, BlursAProcessStageByHalfOfItsReach) {
    RenderSettings settings;
    settings.stages[2].boundaryBlur = 10.0;
    settings.stages[2].repeat = 5;
    settings.stages[2].boundaryBias = 30.0;
    settings.stages[2].blurAmount = 70.0;
    const FrameStage stage = FrameOpening(settings, kFull).stages[2];
    EXPECT_EQ(stage.reachPixels, 11.0);
    EXPECT_EQ(stage.halfLengthPixels, 5.5);
    EXPECT_EQ(stage.repeat, 5);
    EXPECT_EQ(stage.biasPercent, 30.0);
}

TEST(FrameOpening, ShortensTheReachOfManyRepeatsAtReducedResolutionAlone) {
    RenderSettings settings;
    StageSettings& stage = settings.stages[1];
    stage.boundaryBlur = 100.0;
    stage.repeat = 10;
    EXPECT_EQ(FrameOpening(settings, kFull).stages[1].reachPixels, 101.0);
    EXPECT_EQ(FrameOpening(settings, 2.0).stages[1].reachPixels, 201.0);
    // 51 pixels, less the whole ones of (51 + 4) * 10 / 80.
    EXPECT_EQ(FrameOpening(settings, kHalf).stages[1].reachPixels, 45.0);
    EXPECT_EQ(FrameOpening(settings, kHalf).stages[1].halfLengthPixels, 22.5);
}

TEST(FrameOpening, CountsTheStepsOfEnabledStagesAndMayWrap) {
    RenderSettings settings;
    settings.stages[0].repeat = 5;
    settings.stages[1].repeat = 100;
    EXPECT_EQ(FrameOpening(settings, kFull).stepTotal, 16);
    settings.stages[1].enableProcess = 1;
    EXPECT_EQ(FrameOpening(settings, kFull).stepTotal, 16 + 301);
    constexpr int32_t highest = std::numeric_limits<int32_t>::max();
    settings.stages[1].repeat = highest;
    EXPECT_EQ(FrameOpening(settings, kFull).stepTotal, wrappingAdd(16, highest - 1));
    settings.stages[0].enableProcess = 0;
    settings.stages[1].enableProcess = 0;
    EXPECT_EQ(FrameOpening(settings, kFull).stepTotal, 0);
}

TEST(FrameOpening, TakesEveryByteButZeroForASwitchThatIsOn) {
    RenderSettings settings;
    StageSettings& stage = settings.stages[3];
    for (const uint8_t byte : {uint8_t{0}, uint8_t{1}, uint8_t{2}, uint8_t{255}}) {
        stage.enableProcess = stage.keepDivision = stage.keepProcess = stage.colors[2].enable = byte;
        const FrameStage opened = FrameOpening(settings, kFull).stages[3];
        EXPECT_EQ(opened.isEnabled, byte != 0);
        EXPECT_EQ(opened.keepDivision, byte != 0);
        EXPECT_EQ(opened.keepProcess, byte != 0);
        EXPECT_EQ(opened.colors[2].isEnabled, byte != 0);
    }
}

} // namespace
} // namespace kovalune::test
