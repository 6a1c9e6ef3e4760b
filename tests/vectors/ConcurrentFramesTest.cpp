// Frames of one effect rendered at once from several threads, the host's iterations on threads too: every
// picture is the one that it is alone, and so is every report.

#include "effect/Kovalune.h"
#include "tests/vectors/VectorFile.h"

#include "host/EffectModule.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <mutex>
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
    host::judge::JudgeOptions options;
    options.audit = true;
    options.threads = 3;
    host::judge::JudgedHost host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
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
    std::vector<std::thread> threads;
    for (const char* const name : GetParam().vectors) {
        threads.emplace_back(renderRepeatedly, name);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    host::judge::AuditReport report = host.audit();
    report.paramCheckouts = 0;
    EXPECT_TRUE(report.clean()) << report.text();
}

/// Each has a bar of its own: one is cancelled by it, the other goes on to its last pixel.
TEST_P(ConcurrentFrames, AreCancelledEachByItself) {
    host::judge::JudgeOptions options;
    options.audit = true;
    options.threads = 2;
    host::judge::JudgedHost host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    const FrameVector vector =
        readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / GetParam().vectors.front());
    const auto render = [&](int cancelAt) {
        int calls = 0;
        int last = 0;
        for (int repeat = 0; repeat < 5; ++repeat) {
            calls = 0;
            last = 0;
            host::RenderRequest request = vector.request();
            std::mutex mutex; // the effect reports from one thread; the host promises nothing
            request.onProgress = [&](int current, int total) {
                const std::lock_guard lock(mutex);
                EXPECT_GE(current, last);
                EXPECT_LE(current, total);
                last = current;
                return ++calls < cancelAt;
            };
            host::Image output;
            host::Session session(host, module);
            vector.applyTo(session);
            const host::RenderResult result = session.render(vector.input, output, request);
            if (cancelAt <= calls) {
                EXPECT_EQ(result.code, PF_Interrupt_CANCEL);
                EXPECT_EQ(calls, cancelAt);
            } else {
                EXPECT_TRUE(result.ok()) << result.code;
                EXPECT_EQ(firstDifference(output, vector.expected), "");
            }
        }
        return calls;
    };
    const int callsOfAWholeFrame = render(INT_MAX);
    ASSERT_GT(callsOfAWholeFrame, 0);
    const int middle = (callsOfAWholeFrame + 1) / 2;
    std::thread cancelled([&] { EXPECT_EQ(render(middle), middle); });
    EXPECT_EQ(render(INT_MAX), callsOfAWholeFrame);
    cancelled.join();
    host::judge::AuditReport report = host.audit();
    EXPECT_EQ(report.layerCheckouts, 5); // the effect leaves the layer of a frame that ends early to the host
    report.layerCheckouts = 0;
    report.paramCheckouts = 0;
    EXPECT_TRUE(report.clean()) << report.text();
}

/// Of one frame, alone or beside others.
FrameReport reportOf(host::judge::JudgedHost& host, host::EffectModule& module, const FrameVector& vector,
                     bool asked) {
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
    host::judge::JudgeOptions options;
    options.threads = 3;
    host::judge::JudgedHost host(options);
    host::EffectModule module = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
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
    host::judge::JudgedHost host;
    host::EffectModule module = host::EffectModule::load(KOVALUNE_PLUGIN);
    const FrameVector vector =
        readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / "process-many-argb-0");
    EXPECT_EQ(countsOf(reportOf(host, module, vector, true)), countsOf(FrameReport()));
}

} // namespace
} // namespace kovalune::test
