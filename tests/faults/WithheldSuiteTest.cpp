// A host that lacks a suite altogether: each gives the code that its absence has, and never a crash.

#include "tests/faults/FaultScene.h"

#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using host::EffectModule;
using host::Image;
using host::RenderResult;
using host::Session;
using host::judge::JudgedHost;
using host::judge::JudgeOptions;
using host::judge::SuiteName;

struct Withheld {
    std::vector<SuiteName> suites;
    PF_PixelFormat format;
    PF_Err code;
    FaultScene scene = {"", PF_PixelFormat_INVALID, host::RenderFlow::kSmart, 10, 1}; ///< of `format`
};

class WithheldSuites : public testing::TestWithParam<Withheld> {};

TEST_P(WithheldSuites, GiveTheirCode) {
    const Withheld& withheld = GetParam();
    EffectModule module = testedEffect();
    JudgeOptions options = strictOptions();
    options.withheldSuites = withheld.suites;
    JudgedHost host(options);
    Session session(host, module);
    ASSERT_TRUE(session.setupResult().ok());
    applyScene(session, withheld.scene);
    Image output;
    const RenderResult result =
        session.render(scenePicture(withheld.format), output, requestOf(withheld.scene));
    EXPECT_EQ(result.code, withheld.code) << result.returnMsg;
    EXPECT_FALSE(result.threw);
    host::judge::AuditReport report = host.audit();
    report.paramCheckouts = 0;
    report.layerCheckouts = 0;
    EXPECT_TRUE(report.clean()) << report.text();
}

const SuiteName kFillMatte = {kPFFillMatteSuite, kPFFillMatteSuiteVersions[0]};
const SuiteName kHandle = {kPFHandleSuite, kPFHandleSuiteVersions[0]};
const SuiteName kParamUtils = {kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]};
const SuiteName kWorld1 = {kPFWorldSuite, 1};
const SuiteName kWorld2 = {kPFWorldSuite, 2};

/// Base smooths nothing in these; the first Process stage smooths, the second does not.
FaultScene unsmoothed(A_long view, const std::vector<int>& processes = {}) {
    return {"", PF_PixelFormat_INVALID, host::RenderFlow::kSmart, 20, view, 1, processes, 0};
}

INSTANTIATE_TEST_SUITE_P(
    Processes, WithheldSuites,
    testing::Values(
        // Every Process stage begins by clearing worlds, one that is off too; the Base view has none.
        Withheld{{kFillMatte}, PF_PixelFormat_ARGB64, PF_Err_BAD_CALLBACK_PARAM, unsmoothed(1)},
        Withheld{{kFillMatte}, PF_PixelFormat_ARGB64, PF_Err_NONE, unsmoothed(4)},
        Withheld{{kFillMatte}, PF_PixelFormat_ARGB128, PF_Err_BAD_CALLBACK_PARAM, unsmoothed(8, {4})},
        Withheld{{kWorld1}, PF_PixelFormat_ARGB64, PF_Err_BAD_CALLBACK_PARAM, unsmoothed(1, {1, 2})},
        Withheld{{kWorld1}, PF_PixelFormat_ARGB64, PF_Err_NONE, unsmoothed(1, {2, 4})},
        Withheld{{kWorld1}, PF_PixelFormat_ARGB64, PF_Err_NONE, unsmoothed(4, {1})},
        Withheld{{kWorld2}, PF_PixelFormat_ARGB32, PF_Err_NONE, unsmoothed(1, {1, 2})},
        Withheld{{kWorld2}, PF_PixelFormat_ARGB64, PF_Err_NONE, unsmoothed(6, {1, 2})}));

INSTANTIATE_TEST_SUITE_P(
    All, WithheldSuites,
    testing::Values(Withheld{{{kPFWorldTransformSuite, 1}}, PF_PixelFormat_ARGB32, PF_Err_BAD_CALLBACK_PARAM},
                    Withheld{{kHandle}, PF_PixelFormat_ARGB64, PF_Err_BAD_CALLBACK_PARAM},
                    Withheld{{kFillMatte}, PF_PixelFormat_ARGB32, PF_Err_BAD_CALLBACK_PARAM}, // no clearing
                    Withheld{{kParamUtils}, PF_PixelFormat_ARGB128, PF_Err_NONE},
                    Withheld{
                        {kWorld1}, PF_PixelFormat_ARGB128, PF_Err_BAD_CALLBACK_PARAM}, // the smoothing's map
                    Withheld{{kWorld2}, PF_PixelFormat_ARGB32, PF_Err_NONE},
                    Withheld{{kWorld2}, PF_PixelFormat_ARGB64, PF_Err_NONE},
                    Withheld{{kWorld1, kWorld2}, PF_PixelFormat_ARGB32, PF_Err_BAD_CALLBACK_PARAM}));

struct Versions {
    const char* suite;
    std::vector<int32_t> newestFirst;
};

class SuiteVersions : public testing::TestWithParam<Versions> {
protected:
    /// A frame that needs every suite, and the greying of its controls, in a host without some of the versions.
    host::CommandResult run(const std::vector<SuiteName>& withheld, Image& output) {
        EffectModule module = testedEffect();
        JudgeOptions options = strictOptions();
        options.everySuiteVersion = true;
        options.withheldSuites = withheld;
        JudgedHost host(options);
        Session session(host, module);
        const FaultScene scene = {"", PF_PixelFormat_ARGB64, host::RenderFlow::kSmart, 10, 1, 1, {1}};
        applyScene(session, scene);
        host::CommandResult result =
            session.render(scenePicture(PF_PixelFormat_ARGB64), output, requestOf(scene));
        return result.ok() ? session.updateParamsUI() : result;
    }
};

TEST_P(SuiteVersions, StandInForNewerOnesUntilNoneIsLeft) {
    Image expected;
    ASSERT_TRUE(run({}, expected).ok());
    std::vector<SuiteName> withheld;
    for (const int32_t version : GetParam().newestFirst) {
        SCOPED_TRACE("from version " + std::to_string(version));
        Image output;
        EXPECT_TRUE(run(withheld, output).ok());
        EXPECT_TRUE(output == expected);
        withheld.push_back({GetParam().suite, version});
    }
    Image output;
    EXPECT_FALSE(run(withheld, output).ok());
}

template <class List>
Versions versionsOf(const char* suite, const List& newestFirst) {
    return {suite, {newestFirst.begin(), newestFirst.end()}};
}

INSTANTIATE_TEST_SUITE_P(All, SuiteVersions,
                         testing::Values(versionsOf(kPFFillMatteSuite, kPFFillMatteSuiteVersions),
                                         versionsOf(kPFHandleSuite, kPFHandleSuiteVersions),
                                         versionsOf(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions)),
                         [](const auto& each) {
                             std::string name = each.param.suite;
                             std::erase(name, ' ');
                             return name;
                         });

// With the effect linked in: from a file whose runtime is its own, a 32-bit Windows program cannot catch what is thrown.
TEST(MissingBasicSuite, LeavesTheEntryPointAsAnException) {
    EffectModule module = EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    JudgeOptions options = strictOptions();
    options.nullBasicSuite = true;
    JudgedHost host(options);
    const Session session(host, module);
    EXPECT_TRUE(session.setupResult().threw);
}

TEST(ScratchWorlds, ThatTheOldSuiteCannotMakeEndAFloatFrameAsOutOfMemory) {
    // The query still finds version 2 here: the host is told the format, and loses the suite only for the
    // worlds.
    EffectModule module = testedEffect();
    const FaultScene scene = {"", PF_PixelFormat_ARGB128, host::RenderFlow::kSmart, 20, 1};
    JudgedHost host(strictOptions());
    Session session(host, module);
    applyScene(session, scene);
    host.clearCalls();
    Image output;
    ASSERT_TRUE(session.render(scenePicture(scene.format), output, requestOf(scene)).ok());
    int n = 0;
    int worldSuites = 0;
    for (const host::judge::CallRecord& record : host.calls()) {
        if (record.call == "ReleaseSuite" || record.call == "host_unlock_handle" ||
            record.call == "host_dispose_handle") {
            continue;
        }
        ++n;
        // The second request for the suite is for the first world, which holds the blur's intermediate state.
        if (record.call == "AcquireSuite" && record.arguments.starts_with(kPFWorldSuite) &&
            ++worldSuites == 2) {
            break;
        }
    }
    host.armFaults({.failCall = n});
    const RenderResult result = session.render(scenePicture(scene.format), output, requestOf(scene));
    EXPECT_EQ(host.failedCallName(), "AcquireSuite");
    EXPECT_EQ(result.code, PF_Err_OUT_OF_MEMORY);
}

} // namespace
} // namespace kovalune::test
