// What a frame tells the tool that asked: counts that plain renders of the same settings give too, at no other
// pixel and no other host call.

#include "effect/Kovalune.h"
#include "tests/pipeline/ProcessScene.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/support/Effort.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace kovalune::test {
namespace {

class FrameReports : public testing::TestWithParam<FrameDriver> {};

INSTANTIATE_TEST_SUITE_P(Formats, FrameReports, testing::ValuesIn(kFrameDrivers), frameName);

struct Rendered {
    PlainPicture output;
    std::vector<std::string> calls;
    FrameReport report;
};

/// The scene as it stands, with a report or without one.
Rendered render(const FrameDriver& driver, ProcessScene& scene, bool reported = true) {
    FrameReport report;
    std::optional<FrameReportScope> scope;
    if (reported) {
        scope.emplace(report);
    }
    scene.host.clearCalls();
    EXPECT_EQ(driver.render(scene.settings), PF_Err_NONE);
    return {read(scene.output), scene.host.callNames(), report};
}

int64_t pixelsThatDiffer(const PlainPicture& a, const PlainPicture& b) {
    int64_t count = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        const PlainPixel& p = a.pixels[i];
        const PlainPixel& q = b.pixels[i];
        count += p.red != q.red || p.green != q.green || p.blue != q.blue ? 1 : 0;
    }
    return count;
}

/// The pixels that match a colour of the list and none before it.
std::array<int64_t, kStageColors> plainSelected(ProcessScene& scene, int32_t number) {
    std::array<int64_t, kStageColors> selected = {};
    std::vector<PlainMatch> list;
    int64_t before = 0;
    for (std::size_t entry = 0; entry < (number == 0 ? kStageColors : 1); ++entry) {
        const ColorEntry& color = scene.settings.stages[number].colors[entry];
        if (number == 0 && color.enable == 0) {
            continue;
        }
        list.push_back({color.color, color.range / 100.0});
        const Mask mask =
            plainExtract(read(scene.input), scene.settings.extentRect, list, scene.host.options().iterations)
                .mask;
        const int64_t matched = std::count(mask.elements.begin(), mask.elements.end(), 1);
        selected[entry] = matched - before;
        before = matched;
    }
    return selected;
}

host::judge::JudgeOptions someOptions(Random& random) {
    host::judge::JudgeOptions options =
        shuffledOptions(random.between(1, 8), random.between(1, 3), random.next());
    options.recordCalls = true;
    return options;
}

TEST_P(FrameReports, ChangeNeitherPixelsNorCalls) {
    Random random(241);
    for (int round = 0; round < cases(80) && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ProcessScene scene(GetParam(), someOptions(random), random.between(1, 24), random.between(1, 24),
                           random);
        scene.randomise(random);
        if (scene.settings.view >= kViewProcess1) {
            scene.settings.stages[scene.settings.view - kViewBase].enableProcess = 1;
        }
        const Rendered plain = render(GetParam(), scene, false);
        const Rendered reported = render(GetParam(), scene);
        EXPECT_EQ(difference(plain.output, reported.output), "");
        EXPECT_EQ(plain.calls, reported.calls);
        EXPECT_EQ(plain.report.pixels, 0);
        EXPECT_EQ(reported.report.pixels, int64_t{scene.input.width()} * scene.input.height());
    }
}

TEST_P(FrameReports, CountWhatEachColourSelectsAndEachStageChanges) {
    Random random(242);
    std::array<int, kStageCount> changes = {};
    for (int round = 0; round < 80 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ProcessScene scene(GetParam(), someOptions(random), random.between(1, 24), random.between(1, 24),
                           random);
        scene.randomise(random);
        scene.settings.view = kViewNormal;
        const FrameReport report = render(GetParam(), scene).report;
        const RenderSettings all = scene.settings;
        for (StageSettings& stage : scene.settings.stages) {
            stage.enableProcess = 0;
        }
        PlainPicture before = read(scene.input);
        for (int32_t number = 0; number < 5; ++number) {
            const StageReport& stage = report.stages[static_cast<std::size_t>(number)];
            scene.settings.stages[number].enableProcess = all.stages[number].enableProcess;
            EXPECT_EQ(stage.ran, all.stages[number].enableProcess != 0) << number;
            if (!stage.ran) {
                EXPECT_EQ(stage.allSelected() + stage.changed + stage.edge + stage.cut, 0) << number;
                continue;
            }
            const PlainPicture behind = render(GetParam(), scene, false).output;
            EXPECT_EQ(stage.selected, plainSelected(scene, number)) << number;
            EXPECT_EQ(stage.changed, pixelsThatDiffer(before, behind)) << number;
            changes[static_cast<std::size_t>(number)] += stage.changed > 0 ? 1 : 0;
            before = behind;
        }
    }
    for (const int changed : changes) {
        EXPECT_GT(changed, 15);
    }
}

/// What a stage's own view shows beyond the pixels that it selected.
int64_t pixelsOfEdge(const FrameDriver& driver, ProcessScene& scene, int32_t number) {
    scene.settings.view = kViewBase + number;
    const PlainPicture layer = render(driver, scene, false).output;
    const ColorEntry& color = scene.settings.stages[number].colors[0];
    const Mask own = plainExtract(read(scene.input), scene.settings.extentRect,
                                  {{color.color, color.range / 100.0}}, scene.host.options().iterations)
                         .mask;
    int64_t count = 0;
    for (std::size_t i = 0; i < layer.pixels.size(); ++i) {
        count += own.elements[i] == 0 && layer.pixels[i].alpha != 0.0 ? 1 : 0;
    }
    return count;
}

TEST_P(FrameReports, CountTheSoftEdgeAndWhatKeepProcessTakesOfIt) {
    if (GetParam().format == PF_PixelFormat_ARGB32) {
        GTEST_SKIP() << "narrowed, the faintest alpha of a layer does not show in its view";
    }
    Random random(243);
    int cuts = 0;
    for (int round = 0; round < 100 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ProcessScene scene(GetParam(), someOptions(random), random.between(4, 24), random.between(4, 24),
                           random);
        scene.randomise(random);
        scene.settings.view = kViewNormal;
        const FrameReport report = render(GetParam(), scene).report;
        int32_t last = 0;
        for (int32_t number = 1; number < 5; ++number) {
            StageSettings& settings = scene.settings.stages[number];
            const StageReport& stage = report.stages[static_cast<std::size_t>(number)];
            if (!stage.ran) {
                continue;
            }
            EXPECT_EQ(stage.edge, pixelsOfEdge(GetParam(), scene, number)) << number;
            const uint8_t keepProcess = std::exchange(settings.keepProcess, uint8_t{0});
            EXPECT_EQ(stage.keptInside, keepProcess != 0 ? last : 0) << number;
            EXPECT_EQ(stage.cut, pixelsOfEdge(GetParam(), scene, number) - stage.edge) << number;
            settings.keepProcess = keepProcess;
            cuts += stage.cut > 0 ? 1 : 0;
            last = number;
        }
    }
    EXPECT_GT(cuts, 20);
}

TEST_P(FrameReports, EndWithTheStageThatTheViewShows) {
    Random random(244);
    ProcessScene scene(GetParam(), 14, 11, random);
    scene.enable(1, 0, 8.0);
    scene.enable(2, 1, 8.0);
    for (const auto& [view, last] : {std::pair(kViewBase, 0), {kViewProcess1, 1}, {kViewExtract, 2}}) {
        scene.settings.view = view;
        const FrameReport report = render(GetParam(), scene).report;
        for (int number = 0; number < 5; ++number) {
            EXPECT_EQ(report.stages[static_cast<std::size_t>(number)].ran, number <= last)
                << "view " << view << ", stage " << number;
        }
    }
}

TEST_P(FrameReports, CountChangesOnlyWhereTheyAreAskedTo) {
    Random random(249);
    for (int round = 0; round < 20; ++round) {
        ProcessScene scene(GetParam(), random.between(1, 30), random.between(1, 30), random);
        scene.randomise(random);
        FrameReport all;
        FrameReport some{.countsChanges = false};
        {
            const FrameReportScope scope(all);
            ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        }
        const PlainPicture output = read(scene.output);
        {
            const FrameReportScope scope(some);
            ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        }
        EXPECT_EQ(difference(output, scene.output), "");
        EXPECT_TRUE(all.countsChanges);
        EXPECT_FALSE(some.countsChanges);
        EXPECT_EQ(all.pixels, some.pixels);
        for (std::size_t number = 0; number < kStageCount; ++number) {
            const StageReport& with = all.stages[number];
            const StageReport& without = some.stages[number];
            EXPECT_EQ(without.changed, 0);
            EXPECT_EQ(without.ran, with.ran);
            EXPECT_EQ(without.selected, with.selected);
            EXPECT_EQ(without.keptInside, with.keptInside);
            EXPECT_EQ(without.cut, with.cut);
            EXPECT_EQ(without.edge, with.keptInside != 0 ? with.edge : 0);
        }
    }
}

TEST_P(FrameReports, AreFilledAnewByEachFrameOfTheirScopeAlone) {
    Random random(245);
    ProcessScene scene(GetParam(), 14, 11, random);
    scene.enable(1, 0, 8.0);
    FrameReport outer;
    FrameReport inner;
    const FrameReportScope outerScope(outer);
    {
        const FrameReportScope innerScope(inner);
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    }
    EXPECT_TRUE(inner.stages[1].ran);
    EXPECT_EQ(outer.pixels, 0);
    scene.settings.stages[1].enableProcess = 0;
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    EXPECT_TRUE(inner.stages[1].ran) << "its scope has ended";
    EXPECT_TRUE(outer.stages[0].ran);
    EXPECT_FALSE(outer.stages[1].ran);
    scene.settings.view = kViewBase;
    scene.settings.stages[1].enableProcess = 1;
    outer.stages[4].edge = 7;
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    EXPECT_EQ(outer.stages[4].edge, 0) << "emptied by the next frame";
}

TEST_P(FrameReports, HoldNothingOfAnEarlierFrameWhereOneEndsAtOnce) {
    Random random(250);
    ProcessScene scene(GetParam(), 14, 11, random);
    FrameReport report;
    const FrameReportScope scope(report);
    for (const FrameRect& rect : {rectAt(2, 2, 0, 4), rectAt(-1, 0, 4, 4)}) {
        scene.settings.extentRect = wholeRect(14, 11);
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(report.pixels, 14 * 11);
        scene.settings.extentRect = rect;
        static_cast<void>(GetParam().render(scene.settings));
        EXPECT_EQ(report.pixels, 0);
        EXPECT_FALSE(report.stages[0].ran);
    }
}

TEST_P(FrameReports, LeaveAFailingFrameAsItIs) {
    Random random(246);
    ProcessScene scene(GetParam(), 14, 11, random);
    scene.enable(1, 0, 8.0);
    scene.enable(2, 1, 8.0).keepProcess = 1;
    const PlainPicture untouched = read(scene.output);
    const auto failing = [&](int call, FrameReport* report) {
        write(untouched, scene.output);
        std::optional<FrameReportScope> scope;
        if (report != nullptr) {
            scope.emplace(*report);
        }
        host::judge::FaultPlan plan;
        plan.failCall = call;
        scene.host.arm(plan);
        const PF_Err err = GetParam().render(scene.settings);
        const bool struck = !scene.host.struckCall().empty();
        scene.host.arm({});
        return std::tuple(err, read(scene.output), struck);
    };
    scene.host.clearCalls();
    ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    std::vector<int> numbers;
    for (const char* const name : {"iterate_generic", "copy_hq", "fill"}) {
        const std::vector<int> named = scene.host.faultNumbersOf(name);
        EXPECT_FALSE(named.empty()) << name;
        numbers.insert(numbers.end(), named.begin(), named.end());
    }
    for (const int number : numbers) {
        SCOPED_TRACE("call " + std::to_string(number));
        FrameReport report;
        const auto [err, output, struck] = failing(number, nullptr);
        const auto [sameErr, sameOutput, struckToo] = failing(number, &report);
        EXPECT_TRUE(struck && struckToo);
        EXPECT_EQ(err, sameErr);
        EXPECT_EQ(difference(output, sameOutput), "");
    }
}

} // namespace
} // namespace kovalune::test
