// Every call to the host that a command makes is made to fail, one at a time: the code comes back, unless the
// failure is one that the effect ignores by design; nothing is left behind but what it leaves by design; no
// byte outside a picture is touched; and the next frame on the same effect is right.

#include "tests/faults/FaultExpectation.h"
#include "tests/faults/FaultScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using host::CommandResult;
using host::EffectModule;
using host::Image;
using host::RenderFlow;
using host::RenderResult;
using host::Session;
using host::judge::AuditReport;
using host::judge::CallRecord;
using host::judge::FaultPlan;
using host::judge::JudgedHost;

class FaultSweep : public testing::TestWithParam<FaultScene> {
protected:
    FaultSweep() : module_(testedEffect()), input_(scenePicture(GetParam().format)) {}

    RenderResult render(Session& session, Image& output) {
        return session.render(input_, output, requestOf(GetParam()));
    }

    FaultExpectation expectation() {
        JudgedHost host(strictOptions());
        Session session(host, module_);
        applyScene(session, GetParam());
        host.clearCalls();
        const RenderResult result = render(session, goodOutput_);
        EXPECT_TRUE(result.ok()) << result.code;
        FaultExpectation expected(GetParam(), host.calls());
        EXPECT_EQ(host.callsCounted(), static_cast<int>(expected.calls().size()));
        return expected;
    }

    /// Of things that are checked out by one call and in by another: how many are still out. A check-in that failed
    /// leaves what it was for to the host's own account.
    static std::ptrdiff_t stillOut(const JudgedHost& host, const std::string& out, const std::string& in,
                                   const std::string& failedCall) {
        const std::vector<CallRecord> log = host.calls();
        const auto calls = [&log](const std::string& name) {
            return std::count_if(log.begin(), log.end(),
                                 [&](const CallRecord& record) { return record.call == name; });
        };
        const std::ptrdiff_t succeeded = calls(out) - (failedCall == out ? 1 : 0);
        return std::max<std::ptrdiff_t>(succeeded - calls(in), 0);
    }

    /// The pre-render never gives its parameters back, a give-back that fails stops there, and after an error the layer
    /// stays checked out; what is still held must be exactly that.
    void expectBalanced(const JudgedHost& host, bool blockLeft, const std::string& failedCall) {
        AuditReport report = host.audit();
        EXPECT_EQ(report.paramCheckouts, stillOut(host, "checkout_param", "checkin_param", failedCall));
        EXPECT_EQ(report.layerCheckouts,
                  stillOut(host, "checkout_layer_pixels", "checkin_layer_pixels", failedCall));
        EXPECT_EQ(report.liveHandles, blockLeft ? 1 : 0);
        EXPECT_EQ(report.liveLocks, blockLeft ? 1 : 0);
        report.paramCheckouts = 0;
        report.layerCheckouts = 0;
        report.liveHandles = 0;
        report.liveLocks = 0;
        EXPECT_TRUE(report.clean()) << report.text();
    }

    void expectNextFrameIsRight(Session& session) {
        Image output;
        const RenderResult result = render(session, output);
        EXPECT_TRUE(result.ok()) << result.code;
        EXPECT_TRUE(output == goodOutput_);
    }

    EffectModule module_;
    Image input_;
    Image goodOutput_;
};

TEST_P(FaultSweep, EveryFailingCallIsReportedAndLeavesNothing) {
    const FaultExpectation expected = expectation();
    ASSERT_GT(expected.calls().size(), 100U);
    for (std::size_t at = 0; at < expected.calls().size(); ++at) {
        const CallRecord& failed = expected.calls()[at];
        SCOPED_TRACE("call " + std::to_string(at + 1) + ": " + failed.call + " " + failed.arguments);
        JudgedHost host(strictOptions());
        Session session(host, module_);
        applyScene(session, GetParam());
        host.resetAudit();
        host.clearCalls();
        host.armFaults({.failCall = static_cast<int>(at) + 1, .failCode = kFault});
        Image output;
        const RenderResult result = render(session, output);
        ASSERT_EQ(host.failedCallName(), failed.call);
        EXPECT_FALSE(result.threw);
        EXPECT_EQ(result.code, expected.codeOf(at));
        expectBalanced(host, expected.leavesBlock(at), failed.call);
        expectNextFrameIsRight(session);
    }
}

TEST_P(FaultSweep, AnIterationThatFailsWhenItIsDoneIsReportedToo) {
    const FaultExpectation expected = expectation();
    for (std::size_t at = 0; at < expected.calls().size(); ++at) {
        if (expected.calls()[at].call != "iterate_generic") {
            continue;
        }
        SCOPED_TRACE("call " + std::to_string(at + 1));
        JudgedHost host(strictOptions());
        Session session(host, module_);
        applyScene(session, GetParam());
        host.resetAudit();
        host.clearCalls();
        host.armFaults({.failCall = static_cast<int>(at) + 1, .failCode = kFault, .failIterateAfter = true});
        Image output;
        const RenderResult result = render(session, output);
        EXPECT_EQ(result.code, expected.codeOf(at));
        expectBalanced(host, false, "iterate_generic");
        expectNextFrameIsRight(session);
    }
}

TEST_P(FaultSweep, EveryCancelledProgressCallEndsTheFrame) {
    const FaultExpectation expected = expectation();
    const auto progressCalls =
        std::count_if(expected.calls().begin(), expected.calls().end(),
                      [](const CallRecord& record) { return record.call == "progress"; });
    // Of each stage one tick, and one report after each pass of its blur, which are one more than its repeats.
    const FaultScene& scene = GetParam();
    EXPECT_EQ(progressCalls, (scene.blurAmount == 0 ? 1 : scene.repeat + 2) +
                                 3 * static_cast<std::ptrdiff_t>(scene.processes.size()));
    for (int n = 1; n <= progressCalls; ++n) {
        SCOPED_TRACE("progress call " + std::to_string(n));
        JudgedHost host(strictOptions());
        Session session(host, module_);
        applyScene(session, GetParam());
        host.resetAudit();
        host.clearCalls();
        host.armFaults({.cancelAtProgress = n});
        Image output;
        const RenderResult result = render(session, output);
        EXPECT_EQ(result.code, PF_Interrupt_CANCEL);
        expectBalanced(host, false, "progress");
        expectNextFrameIsRight(session);
    }
}

std::string sceneName(const testing::TestParamInfo<FaultScene>& scene) {
    return scene.param.name;
}

INSTANTIATE_TEST_SUITE_P(Scenes, FaultSweep, testing::ValuesIn(faultScenes()), sceneName);

TEST(FaultSweepOfSetUp, EveryFailingCallIsReported) {
    EffectModule module = testedEffect();
    int n = 1;
    for (;; ++n) {
        JudgedHost host(strictOptions());
        host.armFaults({.failCall = n, .failCode = kFault});
        const Session session(host, module);
        const CommandResult& result = session.setupResult();
        if (host.failedCallName().empty()) {
            EXPECT_TRUE(result.ok());
            break;
        }
        EXPECT_EQ(host.failedCallName(), "add_param");
        EXPECT_EQ(result.command, PF_Cmd_PARAMS_SETUP);
        EXPECT_EQ(result.code, kFault);
        EXPECT_EQ(result.out.num_params, 58);
        EXPECT_TRUE(host.audit().clean()) << host.audit().text();
    }
    EXPECT_EQ(n - 1, 57);
}

TEST(FaultSweepOfCommands, OnlyAMissingSuiteStopsTheGreyingOfControls) {
    EffectModule module = testedEffect();
    JudgedHost host(strictOptions());
    Session session(host, module);
    int n = 1;
    for (;; ++n) {
        host.resetAudit();
        host.armFaults({.failCall = n, .failCode = kFault});
        const CommandResult result = session.updateParamsUI();
        if (host.failedCallName().empty()) {
            EXPECT_TRUE(result.ok());
            break;
        }
        const bool suite = host.failedCallName() == "AcquireSuite";
        EXPECT_EQ(result.code, suite ? PF_Err_INTERNAL_STRUCT_DAMAGED : PF_Err_NONE);
        EXPECT_TRUE(host.audit().clean()) << host.audit().text();
    }
    // The suite, 20 controls in each of five groups, three to keep, and two in each of four rules a group.
    EXPECT_EQ(n - 1, 1 + 5 * 20 + 3 + 5 * 4 * 2);
}

// Under Windows this opens a window; the tests that need a display have it there.
#ifndef _WIN32
TEST(FaultSweepOfCommands, TheDialogOpensWithoutItsWindowAndItsModule) {
    EffectModule module = testedEffect();
    JudgedHost host(strictOptions());
    Session session(host, module);
    for (int n = 0; n <= 2; ++n) {
        host.armFaults({.failCall = n, .failCode = kFault});
        const CommandResult result = session.run(PF_Cmd_DO_DIALOG);
        EXPECT_TRUE(result.ok());
        EXPECT_EQ(host.callsCounted(), 2);
        EXPECT_TRUE(host.audit().clean()) << host.audit().text();
    }
}
#endif

TEST(FaultSweepOfCommands, TheOthersNeedNothingThatCanFail) {
    EffectModule module = testedEffect();
    JudgedHost host(strictOptions());
    Session session(host, module);
    for (const PF_Cmd command :
         {PF_Cmd_ABOUT, PF_Cmd_GLOBAL_SETUP, PF_Cmd_SEQUENCE_SETDOWN, PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_EVENT,
          PF_Cmd_QUERY_DYNAMIC_FLAGS, PF_Cmd_ARBITRARY_CALLBACK}) {
        const CommandResult result = session.run(command);
        EXPECT_TRUE(result.ok()) << command;
        EXPECT_EQ(host.callsCounted(), 0) << command;
    }
    EXPECT_TRUE(host.audit().clean()) << host.audit().text();
}

} // namespace
} // namespace kovalune::test
