#include "effect/pipeline/Stages.h"

#include "effect/blur/RegionBlur.h"
#include "tests/pipeline/ConversionWatch.h"
#include "tests/pipeline/FrameScene.h"
#include "tests/pipeline/IterateWatch.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>
#include <optional>

namespace kovalune::test {
namespace {

/// A frame that has come to its Base stage.
struct StageScene : FrameScene {
    std::optional<Frame> frame;

    StageScene(const FrameDriver& driver, Random& random)
        : FrameScene(driver, recording(), 14, 11, random), driver_(driver) {
        list(0, {0, 128, 0, 0}, 100.0);
    }

    /// With what the settings hold by now.
    Frame& begin() {
        constexpr double fullResolution = 1.0;
        frame.emplace(passes(), settings, FrameOpening(settings, fullResolution), PF_Err_NONE);
        frame->open();
        if (driver_.format == PF_PixelFormat_ARGB32) {
            frame->source = frame->worlds.wideSource.get();
            frame->target = frame->worlds.wideTarget.get();
        }
        host.clearCalls();
        return *frame;
    }

private:
    static host::judge::JudgeOptions recording() {
        host::judge::JudgeOptions options = strictOptions();
        options.recordCalls = true;
        return options;
    }

    const FramePasses& passes() const {
        if (driver_.format == PF_PixelFormat_ARGB32) {
            return kFramePasses8;
        }
        return driver_.format == PF_PixelFormat_ARGB64 ? kFramePasses16 : kFramePasses32;
    }

    FrameDriver driver_;
};

class BaseStage : public testing::TestWithParam<FrameDriver> {
protected:
    bool isFloat() const { return GetParam().format == PF_PixelFormat_ARGB128; }
};

INSTANTIATE_TEST_SUITE_P(Formats, BaseStage, testing::ValuesIn(kFrameDrivers), frameName);

// The amount of the stage is the slider's, scaled and rounded, plus 1; from 2 to 15 it smooths first.
TEST_P(BaseStage, SmoothsByTheScaledAndRoundedAmount) {
    Random random(171);
    struct Case {
        double amount;
        bool smooths;
    };
    for (const Case& c :
         {Case{0.0, false}, Case{0.49, false}, Case{0.5, true}, Case{1.0, true}, Case{14.0, true},
          Case{14.49, true}, Case{14.5, false}, Case{15.0, false}, Case{100.0, false}}) {
        StageScene scene(GetParam(), random);
        scene.settings.stages[0].blurAmount = c.amount;
        Frame& frame = scene.begin();
        PF_EffectWorld* blurSource = nullptr;
        IterateWatch watch(scene.host);
        watch.onPass = [&](PF_IterateGenericFunc pass, void* record) {
            if (blurSource == nullptr && (pass == passRunH16 || pass == passRunH32)) {
                blurSource = static_cast<BlurPassRecord*>(record)->src;
            }
        };
        EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
        if (c.amount >= 0.5) {
            EXPECT_EQ(blurSource, c.smooths ? frame.worlds.baseSmoothWorld.get() : frame.source) << c.amount;
        } else {
            EXPECT_EQ(blurSource, nullptr) << "an amount of 1 only copies";
        }
        EXPECT_EQ(watch.count(), (c.smooths ? 2 : 1) + (c.amount >= 0.5 ? 2 : 1)) << c.amount;
    }
}

TEST_P(BaseStage, GivesTheSmoothingTheSelectedPixelsAlone) {
    Random random(172);
    StageScene scene(GetParam(), random);
    scene.settings.stages[0].blurAmount = 5.0;
    scene.settings.stages[0].repeat = 0; // so that the blur leaves its scratch world alone
    scene.listAColourOfTheInput();
    Frame& frame = scene.begin();
    EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
    const auto& masked = *frame.worlds.maskedWorld.get();
    const auto& source = *frame.source;
    const std::ptrdiff_t pixelBytes = isFloat() ? 16 : 8;
    const auto pixel = [pixelBytes](const PF_EffectWorld& world, std::ptrdiff_t x, std::ptrdiff_t y) {
        const auto* const bytes = static_cast<const uint8_t*>(static_cast<const void*>(world.data));
        const uint8_t* const first = bytes + y * world.rowbytes + x * pixelBytes;
        return std::vector<uint8_t>(first, first + pixelBytes);
    };
    const std::vector<uint8_t> clear(static_cast<std::size_t>(pixelBytes), 0);
    bool anyOut = false;
    for (int32_t y = 0; y < 11; ++y) {
        for (int32_t x = 0; x < 14; ++x) {
            const bool in = frame.planes.stageMask.row(y)[x] != 0;
            anyOut = anyOut || !in;
            ASSERT_EQ(pixel(masked, x, y), in ? pixel(source, x, y) : clear);
        }
    }
    EXPECT_TRUE(anyOut);
}

TEST_P(BaseStage, ConvertsTheEnabledColoursInOrder) {
    Random random(173);
    StageScene scene(GetParam(), random);
    scene.list(0, {0, 1, 2, 3}, 0.0);
    scene.list(1, {0, 4, 5, 6}, 0.0);
    scene.settings.stages[0].colors[1].enable = 0;
    scene.list(2, {0, 7, 8, 9}, 0.0);
    scene.list(3, {0, 10, 11, 12}, 0.0);
    write(PlainPicture(GetParam().format, 14, 11), scene.input); // transparent: no conversions of its own
    Frame& frame = scene.begin();
    const ConversionWatch watch(scene.host);
    EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
    ASSERT_EQ(watch.count(), 3);
    EXPECT_EQ(watch.colors()[0].red, 1);
    EXPECT_EQ(watch.colors()[1].red, 7);
    EXPECT_EQ(watch.colors()[2].red, 10);
}

TEST_P(BaseStage, ExtractsFromTheInputAndMergesIntoFourMasks) {
    Random random(174);
    StageScene scene(GetParam(), random);
    scene.listAColourOfTheInput();
    const PlainFrame plain{scene.settings};
    const Mask region = plainRegion(plain, read(scene.input));
    Frame& frame = scene.begin();
    frame.planes.regionMask.row(10)[13] = 77;
    frame.planes.regionMask.refreshActivity();
    EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
    EXPECT_EQ(elementsOf(frame.planes.extractMask), region);
    EXPECT_EQ(elementsOf(frame.planes.stageMask), region);
    EXPECT_EQ(elementsOf(frame.planes.allColorsMask), region);
    EXPECT_EQ(elementsOf(frame.planes.layerLimitMask), region);
    Mask withMore = region;
    if (withMore.at(13, 10) == 0) {
        withMore.at(13, 10) = 77;
    }
    EXPECT_EQ(elementsOf(frame.planes.regionMask), withMore) << "a merge only adds";
}

TEST_P(BaseStage, FailingConversionIsTheFramesFailureButTheMasksAreMerged) {
    Random random(175);
    StageScene scene(GetParam(), random);
    scene.list(1, {0, 4, 5, 6}, 0.0);
    scene.settings.stages[0].blurAmount = 5.0;
    Frame& frame = scene.begin();
    frame.planes.extractMask.clearTo(1);
    const ConversionWatch conversions(scene.host, [](const PF_Pixel&, PF_Fixed*) { return PF_Err{77}; });
    const IterateWatch passes(scene.host);
    EXPECT_EQ(runBaseStage(frame), StageEnd::kAbandon);
    EXPECT_EQ(frame.err, 77);
    EXPECT_EQ(conversions.count(), 1) << "the next colour is not converted any more";
    EXPECT_EQ(passes.count(), 0) << "neither extraction nor masked copy nor blur";
    EXPECT_EQ(scene.host.countCalls("progress"), 0);
    for (const MaskPlane* mask : {&frame.planes.stageMask, &frame.planes.allColorsMask,
                                  &frame.planes.regionMask, &frame.planes.layerLimitMask}) {
        EXPECT_EQ(elementsOf(*mask), Mask(14, 11, 1));
    }
}

TEST_P(BaseStage, FailingExtractionStillHandsItsPlaneToTheMasks) {
    Random random(176);
    StageScene scene(GetParam(), random);
    Frame& frame = scene.begin();
    frame.planes.extractMask.clearTo(1);
    const IterateWatch passes(scene.host, 1);
    EXPECT_EQ(runBaseStage(frame), StageEnd::kAbandon);
    EXPECT_EQ(frame.err, IterateWatch::kCode);
    EXPECT_EQ(elementsOf(frame.planes.extractMask), Mask(14, 11, 0));
    EXPECT_EQ(elementsOf(frame.planes.stageMask), Mask(14, 11, 0));
}

TEST_P(BaseStage, SmoothsWhateverHasFailedAndIgnoresTheSmoothingsFailure) {
    Random random(177);
    StageScene scene(GetParam(), random);
    scene.settings.stages[0].blurAmount = 5.0;
    // The masked copy fails; the smoothing's copy between worlds is made all the same.
    {
        Frame& frame = scene.begin();
        const IterateWatch passes(scene.host, 2);
        EXPECT_EQ(runBaseStage(frame), StageEnd::kAbandon);
        EXPECT_EQ(frame.err, IterateWatch::kCode);
        EXPECT_EQ(scene.host.countCalls("copy"), 1);
    }
    Frame& frame = scene.begin();
    EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
    const std::vector<int> numbers = scene.host.faultNumbersOf("copy");
    ASSERT_EQ(numbers.size(), 1U);
    Frame& again = scene.begin();
    host::judge::FaultPlan plan;
    plan.failCall = numbers[0];
    scene.host.arm(plan);
    EXPECT_EQ(runBaseStage(again), StageEnd::kNextStage);
    EXPECT_EQ(scene.host.struckCall(), "copy");
    EXPECT_EQ(again.err, PF_Err_NONE);
}

TEST_P(BaseStage, CancelAtItsTickAbandonsTheFrame) {
    Random random(178);
    StageScene scene(GetParam(), random);
    Frame& frame = scene.begin();
    host::judge::FaultPlan plan;
    plan.cancelAtProgress = 1;
    scene.host.arm(plan);
    const IterateWatch passes(scene.host);
    EXPECT_EQ(runBaseStage(frame), StageEnd::kAbandon);
    EXPECT_EQ(frame.err, PF_Interrupt_CANCEL);
    EXPECT_EQ(frame.progress.current, 1);
    EXPECT_EQ(passes.count(), 1) << "the extraction, but no blur";
}

TEST_P(BaseStage, EndsTheFrameForTheBaseViewAlsoWhenItsBlurFails) {
    Random random(179);
    for (const int32_t view : {kViewNormal, kViewExtract, kViewBase, kViewProcess1}) {
        for (const int failing : {0, 2}) {
            StageScene scene(GetParam(), random);
            scene.settings.view = view;
            Frame& frame = scene.begin();
            const IterateWatch passes(scene.host, failing);
            EXPECT_EQ(runBaseStage(frame), view == kViewBase ? StageEnd::kFinish : StageEnd::kNextStage);
            EXPECT_EQ(frame.err, failing == 0 ? PF_Err{PF_Err_NONE} : IterateWatch::kCode);
        }
    }
}

TEST_P(BaseStage, BlursFromSourceToTargetByItsDivision) {
    Random random(180);
    for (const uint8_t keepDivision : {uint8_t{1}, uint8_t{0}}) {
        StageScene scene(GetParam(), random);
        scene.settings.stages[0].keepDivision = keepDivision;
        Frame& frame = scene.begin();
        IterateWatch watch(scene.host);
        std::vector<BlurPassRecord> records;
        watch.onPass = [&](PF_IterateGenericFunc, void* record) {
            if (watch.count() > 1) {
                records.push_back(*static_cast<BlurPassRecord*>(record));
            }
        };
        EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
        ASSERT_EQ(watch.count(), 3);
        ASSERT_EQ(records.size(), 2U);
        if (isFloat()) {
            EXPECT_EQ(watch.passes()[1], keepDivision != 0 ? passRunH32 : passWindowH32);
            EXPECT_EQ(watch.passes()[2], keepDivision != 0 ? passRunV32 : passWindowV32);
        } else {
            EXPECT_EQ(watch.passes()[1], keepDivision != 0 ? passRunH16 : passWindowH16);
            EXPECT_EQ(watch.passes()[2], keepDivision != 0 ? passRunV16 : passWindowV16);
        }
        EXPECT_EQ(records[0].src, frame.source);
        EXPECT_EQ(records[0].dst, frame.worlds.maskedWorld.get());
        EXPECT_EQ(records[1].dst, frame.target);
        EXPECT_EQ(records[0].mask.row(0), frame.planes.stageMask.row(0));
        EXPECT_EQ(records[0].kernel.length, 21);
    }
}

TEST_P(BaseStage, IsNotGatedByItsOwnSwitch) {
    Random random(181);
    StageScene scene(GetParam(), random);
    scene.settings.stages[0].enableProcess = 0;
    Frame& frame = scene.begin();
    const IterateWatch watch(scene.host);
    EXPECT_EQ(runBaseStage(frame), StageEnd::kNextStage);
    EXPECT_EQ(watch.count(), 3);
}

} // namespace
} // namespace kovalune::test
