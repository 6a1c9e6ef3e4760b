// Frames of one effect rendered at once from several threads, the host's iterations on threads too: every
// picture is the one that it is alone, and so is every report.

#include "effect/Kovalune.h"
#include "tests/frames/VectorFile.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <thread>
#include <vector>

namespace kovalune::test {
namespace {

struct Frames {
    const char* name;
    std::vector<const char*> vectors; ///< one for each thread
};

class ConcurrentFrames : public testing::TestWithParam<Frames> {};

INSTANTIATE_TEST_SUITE_P(
    Sets, ConcurrentFrames,
    testing::Values(
        Frames{"Base", {"base-plain-argb-0", "base-plain-ae16-1", "base-plain-ae32-2", "base-plain-argb-3"}},
        Frames{"Processes",
               {"process-many-argb-0", "process-many-ae16-1", "process-many-ae32-2", "process-one-argb-3"}},
        Frames{"TwoOfOneDrawing", {"process-many-argb-2", "process-many-argb-2"}},
        Frames{"Smoothed",
               {"base-smooth-ae16-0", "process-one-ae16-4", "process-one-ae32-5", "base-smooth-argb-1"}}),
    [](const testing::TestParamInfo<Frames>& frames) { return frames.param.name; });

TEST_P(ConcurrentFrames, AreWhatTheyAreAlone) {
    host::HostOptions options;
    options.audit = true;
    options.threads = 3;
    host::Host host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc);
    const std::filesystem::path folder = KOVALUNE_VECTORS;

    const auto renderRepeatedly = [&](const std::string& name) {
        const FrameVector vector = readFrameVector(folder / name);
        for (int repeat = 0; repeat < 5; ++repeat) {
            host::Image output;
            // Sessions share the effect's parameter objects, so each has its values read under the host's own
            // lock.
            host::Session session(host, module);
            vector.applyTo(session);
            const host::RenderResult result = session.render(vector.input, output, vector.request());
            EXPECT_TRUE(result.ok()) << name << ": " << result.code;
            EXPECT_EQ(firstDifference(output, vector.expected), "") << name;
        }
    };
    host.options().globalSetdownAtEnd = false;
    std::vector<std::thread> threads;
    for (const char* const name : GetParam().vectors) {
        threads.emplace_back(renderRepeatedly, name);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    host::AuditReport report = host.audit();
    report.paramCheckouts = 0;
    EXPECT_TRUE(report.clean()) << report.text();
}

/// Of one frame, alone or beside others.
FrameReport reportOf(host::Host& host, host::EffectModule& module, const FrameVector& vector, bool asked) {
    FrameReport report;
    std::optional<FrameReportScope> scope;
    if (asked) {
        scope.emplace(report);
    }
    host::Image output;
    host::Session session(host, module);
    vector.applyTo(session);
    EXPECT_TRUE(session.render(vector.input, output, vector.request()).ok());
    return report;
}

std::vector<int64_t> countsOf(const FrameReport& report) {
    std::vector<int64_t> counts = {report.pixels};
    for (const StageReport& stage : report.stages) {
        counts.insert(counts.end(), stage.selected.begin(), stage.selected.end());
        counts.insert(counts.end(),
                      {stage.ran ? 1 : 0, stage.changed, stage.edge, stage.cut, stage.keptInside});
    }
    return counts;
}

TEST_P(ConcurrentFrames, ReportEachToItsOwnThread) {
    host::HostOptions options;
    options.threads = 3;
    options.globalSetdownAtEnd = false;
    host::Host host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc);
    std::vector<FrameVector> vectors;
    std::vector<std::vector<int64_t>> alone;
    for (const char* const name : GetParam().vectors) {
        vectors.push_back(readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / name));
        alone.push_back(countsOf(reportOf(host, module, vectors.back(), true)));
        EXPECT_GT(alone.back().front(), 0);
    }
    std::vector<std::thread> threads;
    for (std::size_t frame = 0; frame < vectors.size(); ++frame) {
        for (const bool asked : {true, false}) {
            threads.emplace_back([&, frame, asked] {
                const auto expected = asked ? alone[frame] : countsOf(FrameReport());
                for (int repeat = 0; repeat < 3; ++repeat) {
                    EXPECT_EQ(countsOf(reportOf(host, module, vectors[frame], asked)), expected);
                }
            });
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(LoadedPlugIn, FillsNoReport) {
    host::Host host;
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    const FrameVector vector =
        readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / "process-many-argb-0");
    EXPECT_EQ(countsOf(reportOf(host, module, vector, true)), countsOf(FrameReport()));
}

} // namespace
} // namespace kovalune::test
