// What leaves the entry point: codes, messages, and never an exception but one.

#include "hostapi/EntryPoint.h"

#include "effect/params/ParamRegistry.h"
#include "effect/share/AEUtil/AEException.h"
#include "tests/frame/StubHost.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace kovalune::test {
namespace {

constexpr char kUnknownError[] = "不明なエラー";

/// Any type that nobody catches by name.
struct Odd {};

/// Sends the parameter set-up, in which the host's third add_param throws.
PF_Err runThrowing(StubHost& host, const std::function<void()>& thrower) {
    host.fault = [thrower](const std::string& call, int nth) -> PF_Err {
        if (call == "add_param" && nth == 3) {
            thrower();
        }
        return 0;
    };
    return EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr);
}

TEST(EntryPoint, ReturnsCodeAndTextOfAnEffectException) {
    StubHost host;
    EXPECT_EQ(runThrowing(host, [] { throw AEUtil::AEException(517, 45, "File", "text %d", 3); }), 517);
    EXPECT_STREQ(host.out.return_msg, "File(45): text 3");
}

TEST(EntryPoint, ReturnsTheTextOfAStandardException) {
    StubHost host;
    EXPECT_EQ(runThrowing(host, [] { throw std::runtime_error("too %s bad"); }), 512);
    EXPECT_STREQ(host.out.return_msg, "too %s bad");
}

TEST(EntryPoint, TakesASystemExceptionForAnyStandardOne) {
    StubHost host;
    EXPECT_EQ(runThrowing(host, [] { throw AEUtil::Win32Exception(9, "File", "text"); }), 512);
    EXPECT_STREQ(host.out.return_msg, "File(9): text");
}

TEST(EntryPoint, ReturnsACodeThrownAsALongWithItsName) {
    StubHost host;
    EXPECT_EQ(runThrowing(host, [] { throw 516L; }), 516);
    EXPECT_STREQ(host.out.return_msg, "error code = 516\nPF_Err_BAD_CALLBACK_PARAM");
}

TEST(EntryPoint, NamesOddLongsToo) {
    {
        StubHost host;
        EXPECT_EQ(runThrowing(host, [] { throw 999L; }), 999);
        EXPECT_STREQ(host.out.return_msg, "error code = 999\nunknown");
    }
    {
        StubHost host;
        EXPECT_EQ(runThrowing(host, [] { throw -1L; }), -1);
        EXPECT_STREQ(host.out.return_msg, "error code = -1\nunknown");
    }
    {
        StubHost host;
        EXPECT_EQ(runThrowing(host, [] { throw 2L; }), 2);
        EXPECT_STREQ(host.out.return_msg, "error code = 2\n");
    }
}

TEST(EntryPoint, CallsEverythingElseAnUnknownError) {
    enum { unnamed };
    const std::function<void()> throwers[] = {[] { throw 516; }, [] { throw "text"; }, [] { throw unnamed; },
                                              [] { throw Odd(); }, [] { throw 516U; }};
    for (const auto& thrower : throwers) {
        StubHost host;
        EXPECT_EQ(runThrowing(host, thrower), 512);
        EXPECT_STREQ(host.out.return_msg, kUnknownError);
    }
}

TEST(EntryPoint, CutsTheTextToTheMessageField) {
    const std::string text(1000, 'x');
    const std::function<void()> throwers[] = {
        [&text] { throw std::runtime_error(text); },
        [&text] { throw AEUtil::AEException(4, 1, text.c_str(), "%s", text.c_str()); }};
    for (const auto& thrower : throwers) {
        StubHost host;
        std::memset(host.out.return_msg, 0x7f, sizeof host.out.return_msg);
        host.out.start_sampL = 0x7f7f7f7f;
        runThrowing(host, thrower);
        EXPECT_EQ(std::string(host.out.return_msg), std::string(255, 'x'));
        EXPECT_EQ(host.out.start_sampL, 0x7f7f7f7f);
    }
}

TEST(EntryPoint, SetsNoFlagWithAMessage) {
    StubHost host;
    host.out.out_flags = 0x1000;
    host.out.out_flags2 = 0x2000;
    runThrowing(host, [] { throw 516L; });
    EXPECT_EQ(host.out.out_flags, 0x1000);
    EXPECT_EQ(host.out.out_flags2, 0x2000);
}

TEST(EntryPoint, WritesNoMessageWithoutAnException) {
    StubHost host;
    host.failAll("add_param", 513);
    std::strcpy(host.out.return_msg, "as it was");
    EXPECT_EQ(EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 513);
    EXPECT_STREQ(host.out.return_msg, "as it was");
}

TEST(EntryPoint, GoesOnBehindAnException) {
    StubHost host;
    EXPECT_EQ(runThrowing(host, [] { throw Odd(); }), 512);
    host.fault = nullptr;
    host.params.resize(1);
    EXPECT_EQ(EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(host.params.size(), 58U);
}

TEST(EntryPoint, LetsOutWhatAMissingBasicSuiteThrows) {
    StubHost host;
    host.in.pica_basicP = nullptr;
    std::strcpy(host.out.return_msg, "as it was");
    long code = 0;
    try {
        EntryPointFunc(PF_Cmd_GLOBAL_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr);
    } catch (long thrown) {
        code = thrown;
    }
    EXPECT_EQ(code, 516);
    EXPECT_STREQ(host.out.return_msg, "as it was");
    EXPECT_EQ(host.out.my_version, 0U);
    EXPECT_TRUE(paramRegistry().byIndex().empty()); // not even the first call's set-up ran
}

TEST(EntryPoint, ReportsAMissingParameterSuiteAsUnknown) {
    StubHost host;
    host.missingSuites = {kParamUtilsSuiteText};
    PF_ParamDef** const params = host.paramArray();
    EXPECT_EQ(EntryPointFunc(PF_Cmd_UPDATE_PARAMS_UI, &host.in, &host.out, params, nullptr, nullptr), 512);
    EXPECT_STREQ(host.out.return_msg, kUnknownError);
}

TEST(EntryPoint, ReportsAMissingSuiteOfARenderByItsCode) {
    StubHost host;
    ASSERT_EQ(EntryPointFunc(PF_Cmd_PARAMS_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 0);
    host.missingSuites = {"PF World Transform Suite 1"};
    PF_Pixel pixels[16] = {};
    PF_EffectWorld& input = host.params[0].u.ld;
    input.data = pixels;
    input.rowbytes = 16;
    input.width = 4;
    input.height = 4;
    PF_EffectWorld output = input;
    host.in.extent_hint.bottom = 4;
    host.in.extent_hint.right = 4;
    EXPECT_EQ(EntryPointFunc(PF_Cmd_RENDER, &host.in, &host.out, host.paramArray(), &output, nullptr), 516);
    EXPECT_STREQ(host.out.return_msg, "error code = 516\nPF_Err_BAD_CALLBACK_PARAM");
    EXPECT_EQ(host.count("checkout_param"), 47);
    EXPECT_EQ(host.count("checkin_param"), 47);
    EXPECT_EQ(host.suiteBalance(), 0);
}

} // namespace
} // namespace kovalune::test
