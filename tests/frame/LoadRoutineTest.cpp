// What stays of the effect when the system lets go of its library. Every test here needs a process of its own.

#include "effect/frame/life/LoadRoutine.h"

#include "effect/frame/life/EffectInstance.h"
#include "effect/params/FxOptionDlg/DialogBase.h"
#include "effect/params/ParamRegistry.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

/// One command, so that there is something to free.
void setUpTheEffect() {
    StubHost host;
    EXPECT_EQ(EntryPointFunc(PF_Cmd_GLOBAL_SETUP, &host.in, &host.out, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(paramRegistry().byIndex().size(), 58U);
    EXPECT_TRUE(effectInstance().hasPendingErrors());
}

TEST(LoadRoutine, FreesParametersAndPendingErrorsWhenTheProcessDetaches) {
    setUpTheEffect();
    EXPECT_TRUE(loadRoutine(LoadReason::kProcessDetach));
    EXPECT_TRUE(paramRegistry().byIndex().empty());
    EXPECT_EQ(paramRegistry().findById(1), nullptr);
    EXPECT_FALSE(effectInstance().hasPendingErrors());
}

TEST(LoadRoutine, FreesTheMapOfDialogsWhenTheProcessDetaches) {
    int place = 0;
    FxOptionDlg::DialogBase dialog(nullptr, nullptr, 1);
    FxOptionDlg::dialogProcedure(&place, 272, 0, reinterpret_cast<intptr_t>(&dialog));
    EXPECT_TRUE(loadRoutine(LoadReason::kThreadDetach));
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 1);
    EXPECT_TRUE(loadRoutine(LoadReason::kProcessDetach));
    EXPECT_EQ(FxOptionDlg::dialogMapSize(), 0);
}

TEST(LoadRoutine, LeavesEverythingForTheOtherReasons) {
    setUpTheEffect();
    for (const uint32_t reason : {1U, 2U, 3U}) {
        EXPECT_TRUE(loadRoutine(static_cast<LoadReason>(reason))) << reason;
    }
    for (const uint32_t reason : {4U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(loadRoutine(static_cast<LoadReason>(reason))) << reason;
    }
    EXPECT_EQ(paramRegistry().byIndex().size(), 58U);
    EXPECT_TRUE(effectInstance().hasPendingErrors());
}

TEST(LoadRoutine, DetachesALibraryThatWasNeverUsed) {
    EXPECT_TRUE(loadRoutine(LoadReason::kProcessAttach));
    EXPECT_TRUE(loadRoutine(LoadReason::kProcessDetach));
    EXPECT_TRUE(loadRoutine(LoadReason::kProcessDetach));
}

} // namespace
} // namespace kovalune::test
