// The process's first call. Every test here needs a process of its own.

#include "hostapi/EntryPoint.h"

#include "effect/frame/life/EffectInstance.h"
#include "effect/params/ParamRegistry.h"
#include "tests/frame/StubHost.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

PF_Err send(StubHost& host, PF_Cmd cmd) {
    return EntryPointFunc(cmd, &host.in, &host.out, nullptr, nullptr, nullptr);
}

class FirstCall : public testing::TestWithParam<PF_Cmd> {};

TEST_P(FirstCall, SetsUpWhateverItsCommand) {
    StubHost host;
    EXPECT_TRUE(paramRegistry().byIndex().empty());
    EXPECT_EQ(send(host, GetParam()), 0);
    EXPECT_EQ(paramRegistry().byIndex().size(), 58U);
    EXPECT_EQ(paramRegistry().indexCounter(), 58);
}

INSTANTIATE_TEST_SUITE_P(Commands, FirstCall,
                         testing::Values(-1, 0, 1, 2, 3, 4, 5, 8, 9, 10, 13, 15, 18, 22, 25, 99),
                         [](const auto& each) {
                             return each.param < 0 ? std::string("Negative") : std::to_string(each.param);
                         });

TEST(PendingErrors, AreEmptiedAtTheStartOfEveryCommand) {
    StubHost host;
    EXPECT_EQ(send(host, 2), 0);
    effectInstance().pendingErrors().add(517);
    EXPECT_EQ(send(host, 2), 0);
    EXPECT_FALSE(effectInstance().pendingErrors().first().has_value());
}

/// Leaves two errors behind while the parameters are registered.
void leaveErrors(StubHost& host, PF_Err failure) {
    host.fault = [failure](const std::string& call, int nth) -> PF_Err {
        if (call == "add_param" && nth == 4) {
            effectInstance().pendingErrors().add(513);
            effectInstance().pendingErrors().add(514);
            return failure;
        }
        return 0;
    };
}

TEST(PendingErrors, GiveTheirFirstAsTheResult) {
    StubHost host;
    leaveErrors(host, 0);
    EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 513);
    EXPECT_EQ(host.count("add_param"), 57);
    EXPECT_EQ(send(host, 2), 0);
}

TEST(PendingErrors, StandBackBehindTheCommandsOwn) {
    StubHost host;
    leaveErrors(host, 517);
    EXPECT_EQ(send(host, PF_Cmd_PARAMS_SETUP), 517);
}

} // namespace
} // namespace kovalune::test
