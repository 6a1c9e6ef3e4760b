// Single rules of the Process stages, by the values that reach their passes and by the layers that come out.
#include "effect/blur/BoundaryBlur.h"
#include "effect/blur/ColorExtension.h"
#include "tests/pipeline/IterateWatch.h"
#include "tests/pipeline/ProcessScene.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class ProcessStage : public testing::TestWithParam<FrameDriver> {
protected:
    static bool isFloat() { return GetParam().format == PF_PixelFormat_ARGB128; }

    static PlainPicture rendered(ProcessScene& scene, int32_t view) {
        scene.settings.view = view;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        return read(scene.output);
    }

    struct Blurred {
        double reach = 0.0;       ///< of the extension
        int32_t kernelLength = 0; ///< of the first blur pass
        double gainAmount = 0.0;
        int passes = 0;
    };

    /// What reaches the passes of the only stage.
    static Blurred blurOf(ProcessScene& scene) {
        Blurred blurred;
        IterateWatch watch(scene.host);
        watch.onPass = [&](PF_IterateGenericFunc pass, void* record) {
            if (pass == spreadH16 || pass == spreadH32) {
                blurred.reach = static_cast<ExtendRecord*>(record)->reach;
            } else if (pass == boundaryRunH16 || pass == boundaryRunH32 || pass == boundaryWindowH16 ||
                       pass == boundaryWindowH32) {
                const int32_t length = static_cast<BoundaryPassRecord*>(record)->kernel.length;
                blurred.kernelLength = blurred.kernelLength == 0 ? length : blurred.kernelLength;
            } else if (pass == alphaGain16 || pass == alphaGain32) {
                blurred.gainAmount = static_cast<AlphaGainRecord*>(record)->amount;
            }
        };
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        blurred.passes = watch.count();
        return blurred;
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, ProcessStage, testing::ValuesIn(kFrameDrivers), frameName);

constexpr PF_RationalScale kFull = {1, 1};
constexpr PF_RationalScale kHalf = {1, 2};
constexpr PF_RationalScale kQuarter = {1, 4};

TEST_P(ProcessStage, ReachesByTheSmallerDownsampleFactor) {
    struct Case {
        PF_RationalScale x;
        PF_RationalScale y;
        double boundaryBlur;
        int32_t repeat;
        double reach;
    };
    constexpr Case cases[] = {
        {kFull, kFull, 10.0, 1, 11.0},     {kFull, kFull, 10.0, 10, 11.0},
        {kFull, kFull, 60.0, 10, 61.0},    {kFull, kFull, 0.0, 10, 1.0},
        {kFull, kFull, 10.49, 1, 11.0},    {kFull, kFull, 10.5, 1, 12.0},
        {kHalf, kHalf, 10.0, 5, 6.0},      {kHalf, kHalf, 10.0, 10, 5.0},
        {kHalf, kFull, 10.0, 10, 5.0},     {kFull, kHalf, 10.0, 10, 5.0},
        {kQuarter, kHalf, 10.0, 5, 4.0},   {kQuarter, kQuarter, 10.0, 10, 3.0},
        {kQuarter, kFull, 10.0, 10, 3.0},  {kHalf, kQuarter, 10.0, 9, 4.0},
        {kHalf, kHalf, 60.0, 10, 27.0}, // 31 less 35 * 10 / 80, cut
        {kHalf, kHalf, 60.0, 1, 31.0},     {kQuarter, kHalf, 60.0, 8, 14.0},
        {{2, 3}, kFull, 60.0, 10, 36.0}, // 41 less 45 * 10 / 80, cut
        {kHalf, kHalf, 0.0, 10, 1.0},      {{2, 1}, {2, 1}, 10.0, 10, 21.0},
        {{2, 1}, kQuarter, 10.0, 10, 3.0},
    };
    Random random(231);
    for (const Case& c : cases) {
        ProcessScene scene(GetParam(), 24, 19, random);
        scene.enable(1, 1, c.boundaryBlur, c.repeat);
        scene.downsample(c.x, c.y);
        const Blurred blurred = blurOf(scene);
        SCOPED_TRACE(std::to_string(c.boundaryBlur) + " of repeat " + std::to_string(c.repeat) + " at " +
                     std::to_string(c.x.num) + "/" + std::to_string(c.x.den) + ", " +
                     std::to_string(c.y.num) + "/" + std::to_string(c.y.den));
        EXPECT_EQ(blurred.reach, c.reach);
        const double amount = c.reach / 2.0;
        EXPECT_EQ(blurred.gainAmount, amount >= 2.0 ? amount : 0.0);
        EXPECT_EQ(blurred.kernelLength, amount >= 2.0 ? static_cast<int32_t>(c.reach + 1.0) / 2 : 0);
    }
}

TEST_P(ProcessStage, SmoothsAReachAboveOneAndUpToThirty) {
    Random random(232);
    for (const auto& [boundaryBlur, smooths] :
         {std::pair{0.0, false}, {0.49, false}, {0.5, true}, {29.0, true}, {29.49, true}, {29.5, false}}) {
        ProcessScene scene(GetParam(), 24, 19, random);
        scene.settings.stages[0].blurAmount = 0.0;
        scene.enable(1, 1, boundaryBlur);
        scene.host.clearCalls();
        static_cast<void>(rendered(scene, kViewNormal));
        EXPECT_EQ(scene.host.countCalls("copy"), smooths ? 1 : 0) << boundaryBlur;
        EXPECT_EQ(scene.host.countCalls("copy_hq"), smooths ? 3 : 2) << boundaryBlur;
    }
}

TEST_P(ProcessStage, ShortenedToNoReachIsNoLongerSmoothed) {
    Random random(233);
    ProcessScene scene(GetParam(), 24, 19, random);
    scene.settings.stages[0].blurAmount = 0.0;
    scene.enable(1, 1, 2.0, 10); // a reach of 2 at one half, less 6 * 10 / 80
    scene.downsample(kHalf, kHalf);
    scene.host.clearCalls();
    static_cast<void>(rendered(scene, kViewNormal));
    EXPECT_EQ(scene.host.countCalls("copy"), 1);
    scene.downsample(kQuarter, kQuarter);
    scene.settings.stages[1].repeat = 14; // a reach of 2, less 6 * 14 / 80
    scene.host.clearCalls();
    static_cast<void>(rendered(scene, kViewNormal));
    EXPECT_EQ(scene.host.countCalls("copy"), 0);
}

/// Four columns, one for each stage, that lie side by side. Base lists them all, so that every layer reaches out.
struct ChainScene : ProcessScene {
    ChainScene(const FrameDriver& driver, Random& random) : ProcessScene(driver, 32, 12, random) {
        palette = {{{0, 255, 255, 255},
                    {0, 200, 30, 30},
                    {0, 30, 200, 30},
                    {0, 30, 30, 200},
                    {0, 200, 200, 20},
                    {0, 0, 0, 0}}};
        PlainPicture picture(driver.format, 32, 12);
        for (int32_t y = 0; y < 12; ++y) {
            for (int32_t x = 0; x < 32; ++x) {
                picture.at(x, y) = opaque(driver.format, palette[static_cast<std::size_t>(x / 8 + 1)]);
            }
        }
        write(picture, input);
        for (int32_t stage = 1; stage <= 4; ++stage) {
            enable(stage, static_cast<std::size_t>(stage), 20.0);
            list(stage - 1, palette[static_cast<std::size_t>(stage)], 1.0);
        }
    }

    static bool isOwn(int32_t stage, std::size_t pixel) {
        return static_cast<int32_t>(pixel) % 32 / 8 == stage - 1;
    }
};

TEST_P(ProcessStage, ThatIsTheFirstToRunNeverKeeps) {
    Random random(234);
    for (int32_t first = 1; first <= 4; ++first) {
        ChainScene scene(GetParam(), random);
        for (int32_t stage = 1; stage < first; ++stage) {
            scene.settings.stages[stage].enableProcess = 0;
        }
        const PlainPicture without = rendered(scene, first + 4);
        scene.settings.stages[first].keepProcess = 1;
        EXPECT_EQ(difference(without, rendered(scene, first + 4)), "") << "stage " << first;
    }
}

TEST_P(ProcessStage, ThatKeepsIsOutsideItsRegionNoMoreOpaqueThanTheLayerBefore) {
    Random random(235);
    for (int32_t chain = 2; chain <= 4; ++chain) {
        ChainScene scene(GetParam(), random);
        for (int32_t stage = 2; stage < chain; ++stage) {
            scene.settings.stages[stage].keepProcess = 1;
        }
        const PlainPicture before = rendered(scene, chain + 3);
        const PlainPicture free = rendered(scene, chain + 4);
        scene.settings.stages[chain].keepProcess = 1;
        const PlainPicture kept = rendered(scene, chain + 4);
        int limited = 0;
        for (std::size_t i = 0; i < kept.pixels.size(); ++i) {
            if (ChainScene::isOwn(chain, i)) {
                ASSERT_EQ(kept.pixels[i].alpha, free.pixels[i].alpha);
            } else {
                ASSERT_LE(kept.pixels[i].alpha, before.pixels[i].alpha);
                ASSERT_LE(kept.pixels[i].alpha, free.pixels[i].alpha);
                limited += kept.pixels[i].alpha < free.pixels[i].alpha ? 1 : 0;
            }
            ASSERT_EQ(kept.pixels[i].red, free.pixels[i].red) << "the colour is not kept back";
        }
        EXPECT_GT(limited, 0) << "a chain of " << chain;
    }
}

TEST_P(ProcessStage, ThatKeepsBehindADisabledOneKeepsTheLayerBeforeThat) {
    Random random(236);
    ChainScene scene(GetParam(), random);
    scene.settings.stages[3].keepProcess = 1;
    scene.settings.stages[2].enableProcess = 0;
    const PlainPicture behindOne = rendered(scene, 7);
    const PlainPicture plain = scene.plain().output;
    EXPECT_EQ(difference(plain, behindOne), "");
    scene.settings.stages[1].enableProcess = 0;
    const PlainPicture alone = rendered(scene, 7);
    EXPECT_NE(difference(behindOne, alone), "") << "it had nothing to keep to";
    scene.settings.stages[3].keepProcess = 0;
    EXPECT_EQ(difference(alone, rendered(scene, 7)), "");
}

TEST_P(ProcessStage, ThatKeepsMakesTwoPassesMore) {
    Random random(237);
    ChainScene scene(GetParam(), random);
    const int passes = blurOf(scene).passes;
    for (int32_t stage = 1; stage <= 4; ++stage) {
        scene.settings.stages[stage].keepProcess = 1;
        EXPECT_EQ(blurOf(scene).passes, passes + 2 * (stage - 1));
    }
}

TEST_P(ProcessStage, IsGatedByItsSwitchAndNotByItsColours) {
    Random random(238);
    ChainScene scene(GetParam(), random);
    const PlainPicture shown = rendered(scene, kViewNormal);
    for (int32_t stage = 1; stage <= 4; ++stage) {
        for (ColorEntry& entry : scene.settings.stages[stage].colors) {
            entry.enable = entry.enable == 0 ? 1 : 0;
        }
        for (int entry = 1; entry < 4; ++entry) {
            scene.settings.stages[stage].colors[entry].color = scene.palette[0];
            scene.settings.stages[stage].colors[entry].range = 100.0;
        }
    }
    EXPECT_EQ(difference(shown, rendered(scene, kViewNormal)), "");
    EXPECT_NE(difference(read(scene.input), shown), "");
}

} // namespace
} // namespace kovalune::test
