// PF_Cmd_GLOBAL_SETDOWN, which the effect's object survives as a plain filter.

#include "effect/frame/CustomFilter.h"
#include "effect/frame/life/EffectInstance.h"
#include "effect/params/ParamRegistry.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

PF_Err send(StubHost& host, PF_Cmd cmd) {
    return EntryPointFunc(cmd, &host.in, &host.out, nullptr, nullptr, nullptr);
}

bool isEffect() {
    return dynamic_cast<CustomFilter*>(&effectInstance().filter()) != nullptr;
}

TEST(GlobalSetdown, TurnsTheObjectIntoAPlainFilterInPlace) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_TRUE(isEffect());
    const void* const place = &effectInstance().filter();
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_FALSE(isEffect());
    EXPECT_EQ(static_cast<const void*>(&effectInstance().filter()), place);
    RenderSettings settings;
    settings.pixelFormat = PF_PixelFormat_ARGB32;
    EXPECT_EQ(effectInstance().filter().renderFrame(settings), 512);
}

TEST(GlobalSetdown, MayComeTwice) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_FALSE(isEffect());
}

TEST(GlobalSetdown, MayComeFirst) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_FALSE(isEffect());
    EXPECT_EQ(paramRegistry().byIndex().size(), 58U);
}

TEST(GlobalSetdown, IsFollowedByNoSecondSetUp) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_FALSE(isEffect());
    EXPECT_EQ(paramRegistry().indexCounter(), 58);
}

TEST(GlobalSetdown, LeavesTheOtherCommandsWorking) {
    StubHost host;
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_EQ(send(host, PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(host.out.my_version, 0x00080E08U);
    EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 0);
    EXPECT_EQ(host.params.size(), 58U);
    EXPECT_EQ(host.out.num_params, 58);
    EXPECT_EQ(
        EntryPointFunc(PF_Cmd_UPDATE_PARAMS_UI, &host.in, &host.out, host.paramArray(), nullptr, nullptr), 0);
    EXPECT_EQ(host.count("PF_UpdateParamUI"), 143);
}

} // namespace
} // namespace kovalune::test
