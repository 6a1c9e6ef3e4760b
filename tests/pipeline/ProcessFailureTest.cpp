// Frames with Process stages whose calls of the host fail, each one in turn: which code comes back, what still runs and
// what stands in the output.
#include "tests/pipeline/ConversionWatch.h"
#include "tests/pipeline/IterateWatch.h"
#include "tests/pipeline/ProcessScene.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <tuple>

namespace kovalune::test {
namespace {

constexpr PF_Err kCode = IterateWatch::kCode;
constexpr int32_t kWidth = 17;
constexpr int32_t kHeight = 13;
constexpr uint8_t kListed = 9; ///< alpha of listed colours, which no pixel's conversion has

/// All kinds of stages: one that smooths, one that keeps and smooths, one that only copies, one that keeps and blurs
/// without smoothing.
struct BusyScene : ProcessScene {
    BusyScene(const FrameDriver& driver, int32_t view, Random& random)
        : ProcessScene(driver, kWidth, kHeight, random) {
        for (PF_Pixel& colour : palette) {
            colour.alpha = kListed;
        }
        settings.view = view;
        settings.stages[0].blurAmount = 8.0;
        settings.stages[0].repeat = 2;
        settings.stages[0].keepProcess = 1;
        list(0, palette[0], 1.0);
        list(1, palette[1], 1.0);
        enable(1, 1, 6.0, 2).keepProcess = 1;
        enable(2, 2, 9.0).keepProcess = 1;
        enable(3, 3, 0.0).keepDivision = 1;
        enable(4, 4, 40.0, 3).keepProcess = 1;
    }
};

using Case = std::tuple<FrameDriver, int32_t>;

class ProcessFailure : public testing::TestWithParam<Case> {
protected:
    static const FrameDriver& driver() { return std::get<0>(GetParam()); }
    static int32_t view() { return std::get<1>(GetParam()); }
    static bool widens() { return driver().format == PF_PixelFormat_ARGB32; }

    /// The scene once more, and nothing armed.
    static std::unique_ptr<BusyScene> scene(int32_t disabled) {
        Random random(211);
        auto made = std::make_unique<BusyScene>(driver(), view(), random);
        if (disabled != 0) {
            made->settings.stages[disabled].enableProcess = 0;
        }
        return made;
    }

    static void expectAsPlain(BusyScene& scene, const PlainFault& fault, const IterateWatch& passes) {
        const PlainRendered expected = scene.plain(fault);
        scene.host.clearCalls();
        EXPECT_EQ(driver().render(scene.settings), expected.err);
        EXPECT_EQ(passes.count(), expected.passes);
        EXPECT_EQ(scene.host.countCalls("copy_hq"), expected.copies);
        EXPECT_EQ(scene.host.countCalls("fill"), expected.clears);
        EXPECT_EQ(scene.host.countCalls("progress"), static_cast<int>(expected.percents.size()));
        EXPECT_EQ(difference(expected.output, scene.output), "");
    }

    /// Makes the n-th call of a name fail, as the host counts them in a frame without fault.
    static void arm(BusyScene& scene, const char* name, int n) {
        const auto whole = ProcessFailure::scene(0);
        for (int stage = 1; stage <= 4; ++stage) {
            whole->settings.stages[stage].enableProcess = scene.settings.stages[stage].enableProcess;
        }
        whole->host.clearCalls();
        EXPECT_EQ(driver().render(whole->settings), PF_Err_NONE);
        const std::vector<int> numbers = whole->host.faultNumbersOf(name);
        ASSERT_LE(n, static_cast<int>(numbers.size()));
        host::judge::FaultPlan plan;
        plan.failCall = numbers[static_cast<std::size_t>(n - 1)];
        plan.failCode = kCode;
        scene.host.arm(plan);
    }

    /// Also with each of the stages switched off.
    template <class Sweep>
    static void inEveryFrame(const Sweep& sweep) {
        for (const int32_t disabled : {0, 1, 3}) {
            SCOPED_TRACE("without stage " + std::to_string(disabled));
            sweep(disabled, scene(disabled)->plain());
        }
    }

    static void sweepHostCall(const char* name, PlainCall call, int32_t first,
                              int32_t PlainRendered::*count) {
        inEveryFrame([&](int32_t disabled, const PlainRendered& whole) {
            ASSERT_GT(whole.*count, first);
            for (int32_t n = first; n <= whole.*count && !HasFailure(); ++n) {
                SCOPED_TRACE(std::string(name) + " " + std::to_string(n));
                const auto broken = scene(disabled);
                arm(*broken, name, n);
                const StrictHost::Turn turn(broken->host);
                const IterateWatch passes(broken->host);
                expectAsPlain(*broken, {call, n, kCode}, passes);
                EXPECT_EQ(broken->host.struckCall(), name);
            }
        });
    }
};

std::string caseName(const testing::TestParamInfo<Case>& test) {
    return formatName(std::get<0>(test.param).format) + "View" + std::to_string(std::get<1>(test.param));
}

INSTANTIATE_TEST_SUITE_P(Frames, ProcessFailure,
                         testing::Combine(testing::ValuesIn(kFrameDrivers), testing::Values(1, 3, 7)),
                         caseName);

TEST_P(ProcessFailure, OfAnyPassLeavesWhatWasLaidOverSoFar) {
    inEveryFrame([](int32_t disabled, const PlainRendered& whole) {
        for (int32_t n = 1; n <= whole.passes && !HasFailure(); ++n) {
            SCOPED_TRACE("pass " + std::to_string(n));
            const auto broken = scene(disabled);
            const IterateWatch passes(broken->host, n);
            expectAsPlain(*broken, {PlainCall::kPass, n, kCode}, passes);
        }
    });
}

TEST_P(ProcessFailure, OfAnyCopyLeavesWhatWasLaidOverSoFar) {
    sweepHostCall("copy_hq", PlainCall::kCopy, 2, &PlainRendered::copies);
}

TEST_P(ProcessFailure, OfAnyClearingEndsTheStages) {
    sweepHostCall("fill", PlainCall::kClear, 1, &PlainRendered::clears);
}

TEST_P(ProcessFailure, OfAColoursConversionEndsTheStages) {
    inEveryFrame([](int32_t disabled, const PlainRendered& whole) {
        for (int32_t n = 1; n <= whole.conversions && !HasFailure(); ++n) {
            SCOPED_TRACE("colour " + std::to_string(n));
            const auto broken = scene(disabled);
            int32_t listed = 0;
            const ConversionWatch conversions(broken->host, [&](const PF_Pixel& colour, PF_Fixed* hls) {
                PF_Pixel own = colour;
                return colour.alpha == kListed && ++listed == n
                           ? kCode
                           : host::utilCallbacks()->colorCB.RGBtoHLS(broken->host.in()->effect_ref, &own,
                                                                     hls);
            });
            const IterateWatch passes(broken->host);
            expectAsPlain(*broken, {PlainCall::kConversion, n, kCode}, passes);
            EXPECT_EQ(listed, n) << "no further colour is converted";
        }
    });
}

TEST_P(ProcessFailure, CancelAtAnyReportEndsTheFrame) {
    inEveryFrame([](int32_t disabled, const PlainRendered& whole) {
        const auto reports = static_cast<int32_t>(whole.percents.size());
        for (int32_t n = 1; n <= reports && !HasFailure(); ++n) {
            SCOPED_TRACE("report " + std::to_string(n));
            const auto broken = scene(disabled);
            host::judge::FaultPlan plan;
            plan.cancelAtProgress = n;
            broken->host.arm(plan);
            const IterateWatch passes(broken->host);
            expectAsPlain(*broken, {PlainCall::kProgress, n, PF_Interrupt_CANCEL}, passes);
        }
    });
}

/// Where a frame was cancelled: in the Base stage's reports, or in those of a Process stage.
int32_t stageOfReport(const RenderSettings& settings, int32_t report) {
    int32_t before = 1 + settings.stages[0].repeat + 1;
    for (int32_t stage = 1; stage <= 4; ++stage) {
        if (report <= before) {
            return stage - 1;
        }
        before += 1 + (settings.stages[stage].boundaryBlur < 3.0 ? 0 : settings.stages[stage].repeat + 1);
    }
    return 4;
}

// The same without the twin: a deep frame that was cancelled in a stage is the frame of the stages before it.
TEST(ProcessCancel, LeavesTheFrameOfTheStagesBefore) {
    for (const FrameDriver& driver : kFrameDrivers) {
        for (int32_t report = 5; report <= 14; ++report) {
            SCOPED_TRACE(formatName(driver.format) + ", report " + std::to_string(report));
            Random random(212);
            BusyScene scene(driver, kViewNormal, random);
            const int32_t cancelled = stageOfReport(scene.settings, report);
            ASSERT_GT(cancelled, 0);
            host::judge::FaultPlan plan;
            plan.cancelAtProgress = report;
            scene.host.arm(plan);
            EXPECT_EQ(driver.render(scene.settings), PF_Interrupt_CANCEL);
            const PlainPicture left = read(scene.output);
            if (driver.format == PF_PixelFormat_ARGB32) {
                EXPECT_EQ(difference(read(scene.input), left), "") << "not narrowed";
                continue;
            }
            for (int32_t stage = cancelled; stage <= 4; ++stage) {
                scene.settings.stages[stage].enableProcess = 0;
            }
            scene.host.arm({});
            EXPECT_EQ(driver.render(scene.settings), PF_Err_NONE);
            EXPECT_EQ(difference(left, scene.output), "");
        }
    }
}

TEST(ProcessCancel, StillCutsAnExtractViewToTheRegionsSoFar) {
    for (const FrameDriver& driver : kFrameDrivers) {
        Random random(213);
        BusyScene scene(driver, kViewExtract, random);
        host::judge::FaultPlan plan;
        plan.cancelAtProgress = 5; // the tick of the first Process stage
        scene.host.arm(plan);
        EXPECT_EQ(driver.render(scene.settings), PF_Interrupt_CANCEL);
        const PlainPicture cut = read(scene.output);
        const PlainPicture input = read(scene.input);
        int removed = 0;
        int kept = 0;
        for (std::size_t i = 0; i < cut.pixels.size(); ++i) {
            const PlainPixel bare = {1.0, input.pixels[i].red, input.pixels[i].green, input.pixels[i].blue};
            const auto isOf = [&](std::size_t colour) {
                const PlainPixel listed = opaque(driver.format, scene.palette[colour]);
                return bare.red == listed.red && bare.green == listed.green && bare.blue == listed.blue;
            };
            const bool in = input.pixels[i].alpha != 0.0 && (isOf(0) || isOf(1));
            EXPECT_EQ(cut.pixels[i].alpha, in ? input.pixels[i].alpha : 0.0);
            kept += in ? 1 : 0;
            removed += !in && input.pixels[i].alpha != 0.0 ? 1 : 0;
        }
        EXPECT_GT(removed, 10);
        EXPECT_GT(kept, 10);
    }
}

} // namespace
} // namespace kovalune::test
