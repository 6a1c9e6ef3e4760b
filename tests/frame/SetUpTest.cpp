// Flags and the registration of the parameters, through the entry point.

#include "effect/params/ParamRegistry.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"
#include "tests/platform/ScopedUser.h"
#include "tests/platform/TemporaryFolder.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

PF_Err send(StubHost& host, PF_Cmd cmd) {
    return EntryPointFunc(cmd, &host.in, &host.out, nullptr, nullptr, nullptr);
}

TEST(GlobalSetup, SaysWhatTheEffectIs) {
    StubHost host;
    host.out.out_flags = 0x100;
    host.out.out_flags2 = 0x100;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(host.out.my_version, 0x00080E08U);
    EXPECT_EQ(host.out.out_flags, 0x06000070);
    EXPECT_EQ(host.out.out_flags2, 0x00001419);
    EXPECT_TRUE(host.calls.empty());
}

TEST(GlobalSetup, WritesThreeFieldsAlone) {
    StubHost host;
    std::memset(static_cast<void*>(&host.out), 0x3c, sizeof host.out);
    PF_OutData expected = host.out;
    expected.my_version = 0x00080E08;
    expected.out_flags = 0x06000070;
    expected.out_flags2 = 0x00001419;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(std::memcmp(&host.out, &expected, sizeof expected), 0);
}

/// A user whose defaults file turns the view to "Base".
class ParamsSetup : public testing::Test {
protected:
    ParamsSetup() {
        std::filesystem::create_directories(folder_.file("ORVEL/Tavik"));
        folder_.write("ORVEL/Tavik/Kovalune.ini", "[Version=1.0]\r\nView=4\r\n[]\r\nView=6\r\n");
    }

    const TemporaryFolder folder_;
    const ScopedSettings settings_{folder_.path()};
};

struct HostCase {
    A_long application;
    PF_SpecVersion version;
    A_long view;
    const char* section;
};

TEST_F(ParamsSetup, ReadsTheFileUnlessTheHostIsOld) {
    const HostCase cases[] = {
        {PF_AppID_FXTC, {12, 14}, 4, "Version=1.0"},
        {PF_AppID_FXTC, {12, 12}, 4, "Version=1.0"},
        {PF_AppID_FXTC, {13, 0}, 4, "Version=1.0"},
        {PF_AppID_FXTC, {12, 11}, 1, ""},
        {PF_AppID_FXTC, {11, 9}, 1, ""},
        {PF_AppID_FXTC, {11, 99}, 1, ""},
        {PF_AppID_FXTC, {-5, 20}, 1, ""},
        {PF_AppID_PrMr, {1, 0}, 4, "Version=1.0"},
        {PF_AppID_PrMr, {12, 11}, 4, "Version=1.0"},
        {PF_AppID_PrMr, {13, 0}, 4, "Version=1.0"},
        {0, {11, 9}, 4, "Version=1.0"},
    };
    for (const HostCase& each : cases) {
        SCOPED_TRACE(std::to_string(each.application) + ' ' + std::to_string(each.version.major) + '.' +
                     std::to_string(each.version.minor));
        StubHost host;
        host.in.appl_id = each.application;
        host.in.version = each.version;
        EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 0);
        EXPECT_EQ(host.params.at(1).u.pd.value, each.view);
        EXPECT_STREQ(paramRegistry().sectionName(), each.section);
        EXPECT_EQ(host.out.num_params, 58);
        EXPECT_EQ(host.params.size(), 58U);
    }
}

TEST_F(ParamsSetup, TakesTheTablesDefaultsWithoutASettingsFolder) {
    // Too long for the file's path after it; the longest that Windows knows.
    const std::string longest = folder_.fileOfLength(259);
    std::filesystem::create_directories(longest);
    const ScopedSettings nowhere(longest);
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 0);
    EXPECT_EQ(host.params.at(1).u.pd.value, 1);
    EXPECT_EQ(host.out.num_params, 58);
}

TEST_F(ParamsSetup, MakesNoFile) {
    const TemporaryFolder empty;
    const ScopedSettings settings(empty.path());
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 0);
    EXPECT_EQ(empty.entries(), 0);
}

TEST_F(ParamsSetup, StopsAtTheFirstRefusalAndStillTellsTheCount) {
    for (int failing = 1; failing <= 57; ++failing) {
        StubHost host;
        host.fault = [failing](const std::string& call, int nth) {
            return call == "add_param" && nth == failing ? PF_Err{513} : PF_Err{0};
        };
        EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 513) << failing;
        EXPECT_EQ(host.count("add_param"), failing);
        EXPECT_EQ(host.out.num_params, 58) << failing;
    }
}

TEST_F(ParamsSetup, RegistersTheSameForEveryInstance) {
    StubHost* first = new StubHost();
    EXPECT_EQ(send(*first, PF_Cmd_PARAMS_SETUP), 0);
    const std::vector<std::string> texts = first->callTexts;
    delete first;
    StubHost second;
    EXPECT_EQ(send(second, PF_Cmd_PARAMS_SETUP), 0);
    EXPECT_EQ(second.callTexts, texts);
    EXPECT_EQ(second.out.num_params, 58);
}

} // namespace
} // namespace kovalune::test
