#include "effect/params/ParamGetter.h"
#include "tests/frame/StubHost.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using test::StubHost;

bool sameBytes(const PF_ParamDef& a, const PF_ParamDef& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A stub with one check box at index 1.
struct StubWithBox : StubHost {
    StubWithBox() {
        PF_ParamDef def = {};
        std::memset(&def, 0x11, sizeof def);
        def.ui_flags = 0;
        params.push_back(def);
    }
};

TEST(GetParamFromArray, CopiesTheWholeDefinition) {
    StubWithBox host;
    GetParamFromArray getter(host.paramArray());
    RoomyParamDef got;
    EXPECT_EQ(getter.getParam(1, &got), 0);
    EXPECT_TRUE(sameBytes(got, host.params[1]));
    EXPECT_EQ(getter.releaseParam(&got), 0);
    EXPECT_TRUE(host.calls.empty());
    EXPECT_FALSE(getter.isPreRender());
}

TEST(GetParamFromArray, TellsWhetherAControlIsGreyedOut) {
    StubWithBox host;
    const GetParamFromArray getter(host.paramArray());
    EXPECT_TRUE(getter.isEnabled(1));
    host.params[1].ui_flags = PF_PUI_TOPIC | PF_PUI_INVISIBLE;
    EXPECT_TRUE(getter.isEnabled(1));
    host.params[1].ui_flags = PF_PUI_TOPIC | PF_PUI_DISABLED;
    EXPECT_FALSE(getter.isEnabled(1));
}

TEST(GetParamByCheckout, ReadsAtTheTimesOfTheCommand) {
    StubWithBox host;
    host.in.current_time = -3;
    host.in.time_step = 11;
    host.in.time_scale = 4000000000U;
    GetParamByCheckout getter(&host.in, nullptr, false);
    RoomyParamDef got;
    EXPECT_EQ(getter.getParam(1, &got), 0);
    EXPECT_TRUE(sameBytes(got, host.params[1]));
    EXPECT_EQ(host.callTexts, std::vector<std::string>{"checkout_param 1 -3 11 4000000000"});
}

TEST(GetParamByCheckout, ZeroesTheDefinitionOnFailure) {
    StubWithBox host;
    host.failAll("checkout_param", 517);
    GetParamByCheckout getter(&host.in, nullptr, false);
    RoomyParamDef got;
    std::memset(static_cast<PF_ParamDef*>(&got), 0x55, sizeof(PF_ParamDef));
    EXPECT_EQ(getter.getParam(1, &got), 517);
    PF_ParamDef zero;
    std::memset(&zero, 0, sizeof zero);
    EXPECT_EQ(std::memcmp(&got.u.fs_d, &zero.u.fs_d, sizeof zero.u.fs_d), 0);
    EXPECT_EQ(got.param_type, 0);
    EXPECT_EQ(got.flags, 0);
    EXPECT_STREQ(got.name, "");
}

TEST(GetParamByCheckout, GivesBackThroughTheHost) {
    StubWithBox host;
    GetParamByCheckout getter(&host.in, nullptr, false);
    RoomyParamDef got;
    EXPECT_EQ(getter.releaseParam(&got), 0);
    EXPECT_EQ(host.checkedIn, std::vector<PF_ParamDef*>{&got});
    host.failAll("checkin_param", 516);
    EXPECT_EQ(getter.releaseParam(&got), 516);
}

TEST(GetParamByCheckout, KnowsItsFlag) {
    StubHost host;
    EXPECT_TRUE(GetParamByCheckout(&host.in, nullptr, true).isPreRender());
    EXPECT_FALSE(GetParamByCheckout(&host.in, nullptr, false).isPreRender());
}

TEST(GetParamByCheckout, CountsEverythingAsEnabledWithoutAnArray) {
    StubWithBox host;
    host.params[1].ui_flags = PF_PUI_DISABLED;
    EXPECT_TRUE(GetParamByCheckout(&host.in, nullptr, false).isEnabled(1));
    EXPECT_FALSE(GetParamByCheckout(&host.in, host.paramArray(), false).isEnabled(1));
    host.params[1].ui_flags = 0;
    EXPECT_TRUE(GetParamByCheckout(&host.in, host.paramArray(), false).isEnabled(1));
}

} // namespace
} // namespace kovalune::test
