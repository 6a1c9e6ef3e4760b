// What the views of a frame with Process stages have to do with each other and with the input.
#include "tests/pipeline/ProcessScene.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/reference/PlainFinishing.h"
#include "tests/reference/PlainFrame.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

class ProcessView : public testing::TestWithParam<FrameDriver> {
protected:
    static PlainPicture rendered(ProcessScene& scene, int32_t view) {
        scene.settings.view = view;
        const StrictHost::Turn turn(scene.host);
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        return read(scene.output);
    }

    static bool widens() { return GetParam().format == PF_PixelFormat_ARGB32; }
};

INSTANTIATE_TEST_SUITE_P(Formats, ProcessView, testing::ValuesIn(kFrameDrivers), frameName);

/// Frames that show their layers as they are, not narrowed.
class DeepProcessView : public ProcessView {};

INSTANTIATE_TEST_SUITE_P(Formats, DeepProcessView, testing::Values(kFrameDrivers[1], kFrameDrivers[2]),
                         frameName);

/// Pixels that a stage's colour selects.
Mask regionOf(const ProcessScene& scene, const PlainPicture& input, int32_t stage) {
    const ColorEntry& entry = scene.settings.stages[stage].colors[0];
    return plainExtract(input, scene.settings.extentRect, {{entry.color, entry.range / 100.0}}, 1).mask;
}

TEST_P(ProcessView, OfNormalKeepsTheInputsAlpha) {
    Random random(221);
    for (int round = 0; round < 40; ++round) {
        ProcessScene scene(GetParam(), random.between(1, 40), random.between(1, 40), random);
        scene.randomise(random);
        // Without any repeat, which no control can give, Base takes smoothed pixels over as they are.
        scene.settings.stages[0].repeat = std::max(scene.settings.stages[0].repeat, 1);
        const PlainPicture output = rendered(scene, kViewNormal);
        const PlainPicture input = read(scene.input);
        for (std::size_t i = 0; i < input.pixels.size(); ++i) {
            ASSERT_EQ(input.pixels[i].alpha, output.pixels[i].alpha) << "round " << round;
        }
    }
}

TEST_P(ProcessView, WithoutAnyMatchIsTheInputItselfOrNothing) {
    Random random(222);
    for (int round = 0; round < 12; ++round) {
        ProcessScene scene(GetParam(), random.between(1, 40), random.between(1, 40), random);
        scene.randomise(random);
        // Greys, some of them beyond the scale, and no colour that is near one.
        PlainPicture input =
            randomPicture(GetParam().format, scene.input.width(), scene.input.height(), random, Range::kWild);
        for (PlainPixel& pixel : input.pixels) {
            pixel.green = pixel.red;
            pixel.blue = pixel.red;
        }
        write(input, scene.input);
        for (StageSettings& stage : scene.settings.stages) {
            for (ColorEntry& entry : stage.colors) {
                entry.color = {0, 255, 0, 0};
                entry.range = 5.0;
            }
        }
        ASSERT_EQ(regionOf(scene, input, 1), Mask(input.width, input.height, 0));
        EXPECT_EQ(difference(input, rendered(scene, kViewNormal)), "");
        PlainPicture transparent = input;
        for (PlainPixel& pixel : transparent.pixels) {
            pixel.alpha = 0.0;
        }
        EXPECT_EQ(difference(transparent, rendered(scene, kViewExtract)), "");
        scene.settings.stages[4].enableProcess = 1;
        EXPECT_EQ(difference(PlainPicture(GetParam().format, input.width, input.height),
                             rendered(scene, kViewProcess4)),
                  "");
    }
}

TEST_P(ProcessView, OfExtractIsNormalCutToTheRegions) {
    Random random(224);
    for (int round = 0; round < 25; ++round) {
        ProcessScene scene(GetParam(), random.between(8, 40), random.between(8, 40), random);
        scene.randomise(random);
        const PlainPicture input = read(scene.input);
        PlainPicture expected = rendered(scene, kViewNormal);
        Mask all = plainRegion(PlainFrame{scene.settings}, input);
        for (int32_t stage = 1; stage <= 4; ++stage) {
            const Mask region = regionOf(scene, input, stage);
            for (std::size_t i = 0; i < all.elements.size(); ++i) {
                if (scene.settings.stages[stage].enableProcess != 0 && region.elements[i] != 0) {
                    all.elements[i] = 1;
                }
            }
        }
        plainClearAlphaOutside(scene.settings.extentRect, all, expected);
        ASSERT_EQ(difference(expected, rendered(scene, kViewExtract)), "") << "round " << round;
    }
}

TEST_P(ProcessView, RunsNoStageBehindTheChosenOne) {
    Random random(225);
    for (int32_t chosen = 1; chosen <= 3; ++chosen) {
        ProcessScene scene(GetParam(), 24, 19, random);
        scene.randomise(random);
        for (int32_t stage = 1; stage <= 4; ++stage) {
            scene.settings.stages[stage].enableProcess = 1;
        }
        scene.host.clearCalls();
        const PlainPicture whole = rendered(scene, chosen + 4);
        EXPECT_EQ(scene.host.countCalls("fill"), 5 * chosen);
        for (int32_t stage = chosen + 1; stage <= 4; ++stage) {
            scene.settings.stages[stage].enableProcess = 0;
        }
        EXPECT_EQ(difference(whole, rendered(scene, chosen + 4)), "");
    }
}

// The two differ on purpose: the widened frame shows the layer's world, which is cleared for every stage, the others
// the last layer that was made.
TEST_P(ProcessView, OfADisabledStageShowsNothingOrTheLayerBefore) {
    Random random(226);
    for (const int32_t disabled : {2, 3, 4}) {
        ProcessScene scene(GetParam(), 24, 19, random);
        scene.enable(1, 1, 5.0);
        scene.settings.stages[1].colors[0].range = 100.0;
        const PlainPicture before = rendered(scene, kViewProcess1);
        const PlainPicture shown = rendered(scene, disabled + 4);
        const PlainPicture nothing(GetParam().format, 24, 19);
        ASSERT_NE(difference(nothing, before), "");
        EXPECT_EQ(difference(widens() ? nothing : before, shown), "");
    }
}

TEST_P(ProcessView, OfADisabledStageLeavesTheOthersAsTheyWere) {
    Random random(227);
    ProcessScene scene(GetParam(), 24, 19, random);
    scene.randomise(random);
    scene.settings.stages[2].enableProcess = 0;
    const PlainPicture before = rendered(scene, kViewNormal);
    scene.settings.stages[2].boundaryBlur += 10.0;
    scene.settings.stages[2].colors[0].range = 100.0;
    scene.settings.stages[2].boundaryBias = 50.0;
    EXPECT_EQ(difference(before, rendered(scene, kViewNormal)), "");
}

// The picture is the Base image with the layers that the "Process" views show laid over it, one after the other.
TEST_P(DeepProcessView, OfNormalIsTheLayersLaidOverTheBaseImage) {
    Random random(223);
    for (int round = 0; round < 25; ++round) {
        ProcessScene scene(GetParam(), random.between(8, 40), random.between(8, 40), random);
        scene.randomise(random);
        std::vector<PlainPicture> layers;
        for (int32_t stage = 1; stage <= 4; ++stage) {
            if (scene.settings.stages[stage].enableProcess != 0) {
                layers.push_back(rendered(scene, stage + 4));
            }
        }
        const PlainPicture normal = rendered(scene, kViewNormal);
        for (int32_t stage = 1; stage <= 4; ++stage) {
            scene.settings.stages[stage].enableProcess = 0;
        }
        PlainPicture built = rendered(scene, kViewNormal);
        for (const PlainPicture& layer : layers) {
            plainComposeOver(scene.settings.extentRect, layer, built);
        }
        ASSERT_EQ(difference(built, normal), "") << "round " << round;
    }
}

TEST(ProcessDepths, EightBitFrameIsTheNarrowedSixteenBitFrame) {
    Random random(228);
    int compared = 0;
    for (int round = 0; round < 80; ++round) {
        const int32_t width = random.between(1, 40);
        const int32_t height = random.between(1, 40);
        ProcessScene wide(kFrameDrivers[1], width, height, random);
        ProcessScene narrow(kFrameDrivers[0], width, height, random);
        narrow.randomise(random);
        const PF_InData& in = *narrow.host.in();
        wide.downsample(in.downsample_x, in.downsample_y);
        wide.settings.view = narrow.settings.view;
        std::copy_n(narrow.settings.stages, 5, wide.settings.stages);
        write(plainWiden(read(narrow.input)), wide.input);
        ASSERT_EQ(renderFrame8(narrow.settings), PF_Err_NONE);
        {
            const StrictHost::Turn turn(wide.host);
            ASSERT_EQ(renderFrame16(wide.settings), PF_Err_NONE);
        }
        const int32_t view = narrow.settings.view;
        if (view >= kViewProcess1 && narrow.settings.stages[view - 4].enableProcess == 0) {
            ASSERT_EQ(difference(PlainPicture(PF_PixelFormat_ARGB32, width, height), narrow.output), "");
            continue;
        }
        ++compared;
        ASSERT_EQ(difference(plainNarrow(read(wide.output)), narrow.output), "") << "round " << round;
    }
    EXPECT_GT(compared, 50);
}

/// No menu gives such a number, but a project's file may.
TEST_P(ProcessView, OfANumberThatNoMenuHasRunsAllStages) {
    for (const int32_t view : {std::numeric_limits<int32_t>::min(), -5, 0, 2}) {
        Random random(226);
        ProcessScene scene(GetParam(), 20, 14, random);
        scene.enable(4, 1, 40.0);
        const PlainPicture normal = rendered(scene, kViewNormal);
        EXPECT_EQ(difference(normal, rendered(scene, view)), "") << view;
    }
}

} // namespace
} // namespace kovalune::test
