// The beginning of a frame: what it refuses, what it leaves alone and how it comes to its scale.
#include "host/ColorConversion.h"
#include "tests/pipeline/FrameScene.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class FrameOpening : public testing::TestWithParam<FrameDriver> {
protected:
    static host::judge::JudgeOptions recording() {
        host::judge::JudgeOptions options = strictOptions();
        options.recordCalls = true;
        return options;
    }

    /// Renders and expects this code with the output untouched and no call to the host.
    void expectUntouched(FrameScene& scene, PF_Err code) {
        const PlainPicture before = read(scene.output);
        scene.host.clearCalls();
        EXPECT_EQ(GetParam().render(scene.settings), code);
        EXPECT_EQ(difference(before, scene.output), "");
        EXPECT_TRUE(scene.host.callNames().empty());
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, FrameOpening, testing::ValuesIn(kFrameDrivers), frameName);

TEST_P(FrameOpening, RefusesWorldsOfDifferentSize) {
    Random random(121);
    for (const auto& [dx, dy] : {std::pair<int32_t, int32_t>{1, 0}, {0, 1}, {-1, 0}, {0, -1}}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        const TestWorld other(scene.host, GetParam().format, 8 + dx, 8 + dy);
        PF_EffectWorld world = other.world();
        scene.settings.inputWorld = &world;
        expectUntouched(scene, PF_Err_BAD_CALLBACK_PARAM);
    }
}

TEST_P(FrameOpening, RefusesWorldsAbove32767) {
    Random random(122);
    for (const bool wide : {true, false}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        PF_EffectWorld in = scene.input.world();
        PF_EffectWorld out = scene.output.world();
        for (PF_EffectWorld* world : {&in, &out}) {
            (wide ? world->width : world->height) = 32768;
        }
        scene.settings.inputWorld = &in;
        scene.settings.outputWorld = &out;
        expectUntouched(scene, PF_Err_BAD_CALLBACK_PARAM);
    }
}

TEST_P(FrameOpening, OfNoWidthOrHeightSucceedsWithoutDoingAnything) {
    Random random(123);
    for (const FrameRect& rect : {rectAt(2, 2, 0, 4), rectAt(2, 2, 4, 0), rectAt(0, 0, 0, 0)}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        scene.settings.extentRect = rect;
        expectUntouched(scene, PF_Err_NONE);
    }
}

TEST_P(FrameOpening, RefusesARectangleOutsideTheWorlds) {
    Random random(124);
    for (const FrameRect& rect :
         {rectAt(-1, 0, 4, 4), rectAt(0, -1, 4, 4), rectAt(5, 0, 4, 4), rectAt(0, 5, 4, 4),
          rectAt(6, 2, -4, 3), rectAt(2, 6, 3, -4), rectAt(0, 0, -1, -1)}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        scene.settings.extentRect = rect;
        expectUntouched(scene, PF_Err_BAD_CALLBACK_PARAM);
    }
}

TEST_P(FrameOpening, WithNoEnabledStageCopiesOrClearsAndMakesNothing) {
    Random random(125);
    for (const int32_t view : {kViewNormal, kViewExtract, kViewBase, kViewProcess1, kViewProcess4}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        scene.settings.stages[0].enableProcess = 0;
        scene.settings.view = view;
        scene.host.clearCalls();
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        const PlainPicture clear(GetParam().format, 8, 8);
        EXPECT_EQ(difference(view == kViewNormal ? read(scene.input) : clear, scene.output), "")
            << "view " << view;
        EXPECT_EQ(scene.host.countCalls("PF_NewWorld"), 0);
        EXPECT_EQ(scene.host.countCalls("host_new_handle"), 0);
        EXPECT_EQ(scene.host.countCalls(view == kViewNormal ? "copy_hq" : "fill"), 1);
    }
}

TEST_P(FrameOpening, WithNoEnabledStageReturnsTheHostsCode) {
    Random random(126);
    for (const int32_t view : {kViewNormal, kViewBase}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        scene.settings.stages[0].enableProcess = 0;
        scene.settings.view = view;
        host::judge::FaultPlan plan;
        plan.failCall = 2;
        plan.failCode = 99;
        scene.host.arm(plan);
        EXPECT_EQ(GetParam().render(scene.settings), 99);
        EXPECT_EQ(scene.host.struckCall(), view == kViewNormal ? "copy_hq" : "fill");
    }
}

TEST_P(FrameOpening, CopiesInHighQualityWhereTheFrameIsOfIt) {
    Random random(127);
    for (const PF_Quality quality : {PF_Quality_LO, PF_Quality_HI}) {
        FrameScene scene(GetParam(), recording(), 8, 8, random);
        scene.host.in()->quality = quality;
        scene.host.clearCalls();
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(scene.host.countCalls("copy_hq"), quality == PF_Quality_HI ? 1 : 0);
        EXPECT_EQ(scene.host.countCalls("copy"), quality == PF_Quality_HI ? 0 : 1);
    }
}

TEST_P(FrameOpening, LeavesTheCallersSettingsAsTheyWere) {
    Random random(128);
    FrameScene scene(GetParam(), random);
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    EXPECT_EQ(scene.settings.stages[0].colors[0].range, 100.0);
    EXPECT_EQ(scene.settings.stages[0].blurAmount, kUnsmoothedAmount);
    EXPECT_EQ(scene.settings.stages[0].boundaryBlur, 0.0);
}

TEST_P(FrameOpening, TakesRangesForPercentOfTheLargestDistance) {
    // Black and a cyan that is almost white are almost as far apart as colours can be.
    const PF_Pixel far = {255, 254, 255, 255};
    PF_Fixed farHls[3];
    PF_Fixed blackHls[3];
    host::rgbToHls(far, farHls);
    host::rgbToHls({}, blackHls);
    const auto distance = static_cast<double>(plainDistance(farHls, blackHls));
    ASSERT_GT(distance, 27800.0);
    Random random(130);
    for (const double beyond : {-0.5, 0.5}) {
        FrameScene scene(GetParam(), random);
        const double full = fullScale(GetParam().format);
        PlainPicture picture(GetParam().format, 14, 11);
        for (PlainPixel& pixel : picture.pixels) {
            const double red = GetParam().format == PF_PixelFormat_ARGB64 ? 32640.0 : 254.0 / 255.0 * full;
            pixel = {full, static_cast<double>(static_cast<float>(red)), full, full};
        }
        write(picture, scene.input);
        scene.list(0, {}, (distance + beyond) / 27904.0 * 100.0);
        scene.settings.view = kViewBase;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(read(scene.output).at(3, 3).alpha, beyond > 0.0 ? full : 0.0);
    }
}

TEST_P(FrameOpening, TakesTheSmallerDownsampleFactorForEverything) {
    Random random(129);
    struct Case {
        PF_RationalScale x;
        PF_RationalScale y;
        double scale;
    };
    for (const Case& c :
         {Case{{1, 2}, {1, 4}, 0.25}, Case{{1, 4}, {1, 2}, 0.25}, Case{{1, 3}, {1, 3}, 1.0 / 3.0},
          Case{{1, 1}, {1, 1}, 1.0}, Case{{2, 3}, {1, 1}, 2.0 / 3.0}}) {
        for (const double amount : {61.0, 62.0, 74.5, 100.0}) {
            FrameScene scene(GetParam(), random);
            scene.settings.stages[0].blurAmount = amount;
            scene.host.in()->downsample_x = c.x;
            scene.host.in()->downsample_y = c.y;
            PlainFrame plain{scene.settings};
            plain.scale = c.scale;
            const PlainPicture expected = plainOutput(plain, read(scene.input));
            EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
            EXPECT_EQ(difference(expected, scene.output), "") << amount << " at " << c.scale;
        }
    }
}

} // namespace
} // namespace kovalune::test
