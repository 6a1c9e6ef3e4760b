#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <atomic>

namespace kovalune::test {
using namespace host;
namespace {

judge::FaultPlan failing(int call, PF_Err code = PF_Err_INVALID_INDEX) {
    judge::FaultPlan plan;
    plan.failCall = call;
    plan.failCode = code;
    return plan;
}

/// Makes the only fallible call of the handler fail, and expects its name.
CommandResult withFault(Stage& stage, const char* name, const Handler& handler) {
    stage.session();
    stage.host.armFaults(failing(1));
    CommandResult result = stage.during(handler);
    EXPECT_EQ(stage.host.failedCallName(), name);
    return result;
}

TEST(Fault, TheNthCallOfTheNextOperationFailsOnce) {
    Stage stage;
    stage.session();
    const Handler three = [](Call& c) -> PF_Err {
        PF_Err sum = 0;
        for (A_long i = 0; i < 3; ++i) {
            sum = sum * 1000 + c.in.inter.progress(c.ref(), i, 3);
        }
        return sum;
    };
    stage.host.armFaults(failing(2, 77));
    const CommandResult struck = stage.during(three);
    EXPECT_EQ(struck.code, 77000);
    EXPECT_EQ(stage.host.callsCounted(), 3);
    EXPECT_EQ(stage.host.failedCallName(), "progress");
    const CommandResult after = stage.during(three);
    EXPECT_EQ(after.code, 0);
    EXPECT_EQ(stage.host.failedCallName(), "");
    EXPECT_EQ(stage.host.callsCounted(), 3);
}

TEST(Fault, APlanIsSpentWithItsOperationWhetherItStruckOrNot) {
    Stage stage;
    stage.session();
    stage.host.armFaults(failing(100));
    stage.during([](Call&) -> PF_Err { return PF_Err_NONE; });
    const CommandResult result = stage.during([](Call& c) -> PF_Err {
        for (A_long i = 0; i < 150; ++i) {
            if (const PF_Err err = c.in.inter.progress(c.ref(), i, 150)) {
                return err;
            }
        }
        return PF_Err_NONE;
    });
    EXPECT_EQ(result.code, PF_Err_NONE);
}

TEST(Fault, TheDefaultCodeIsInvalidIndex) {
    Stage stage;
    const CommandResult result =
        withFault(stage, "progress", [](Call& c) -> PF_Err { return c.in.inter.progress(c.ref(), 1, 2); });
    EXPECT_EQ(result.code, PF_Err_INVALID_INDEX);
}

TEST(Fault, FailingMemoryFunctionsGiveNothing) {
    Stage stage;
    withFault(stage, "host_new_handle", [](Call& c) -> PF_Err {
        EXPECT_EQ(c.utils().host_new_handle(8), nullptr);
        return PF_Err_NONE;
    });
    PF_Handle handle = nullptr;
    stage.during([&](Call& c) -> PF_Err {
        handle = c.utils().host_new_handle(8);
        return PF_Err_NONE;
    });
    withFault(stage, "host_lock_handle", [&](Call& c) -> PF_Err {
        EXPECT_EQ(c.utils().host_lock_handle(handle), nullptr);
        return PF_Err_NONE;
    });
    withFault(stage, "host_resize_handle", [&](Call& c) -> PF_Err {
        EXPECT_EQ(c.utils().host_resize_handle(16, &handle), PF_Err_INVALID_INDEX);
        EXPECT_EQ(c.utils().host_get_handle_size(handle), 8U);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().liveLocks, 0);
    stage.during([&](Call& c) -> PF_Err {
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Fault, AFailingAcquireLeavesThePointer) {
    Stage stage;
    withFault(stage, "AcquireSuite", [](Call& c) -> PF_Err {
        int mark = 0;
        const void* suite = &mark;
        EXPECT_EQ(c.in.pica_basicP->AcquireSuite(kPFHandleSuite, 1, &suite), PF_Err_INVALID_INDEX);
        EXPECT_EQ(suite, &mark);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().liveSuites, 0);
}

TEST(Fault, AFailingNewWorldLeavesTheStruct) {
    Stage stage;
    withFault(stage, "new_world", [](Call& c) -> PF_Err {
        PF_EffectWorld world{};
        EXPECT_EQ(c.utils().new_world(c.ref(), 1, 1, 0, &world), PF_Err_INVALID_INDEX);
        EXPECT_EQ(world.data, nullptr);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().liveWorlds, 0);
}

TEST(Fault, AWorldThatTheHostRefusedToTakeBackIsNoLeak) {
    Stage stage;
    stage.session();
    stage.host.armFaults(failing(2));
    PF_EffectWorld world{};
    const CommandResult result = stage.during([&](Call& c) -> PF_Err {
        c.utils().new_world(c.ref(), 1, 1, 0, &world);
        return c.utils().dispose_world(c.ref(), &world);
    });
    EXPECT_EQ(result.code, PF_Err_INVALID_INDEX);
    EXPECT_NE(world.data, nullptr);
    EXPECT_EQ(stage.host.audit().liveWorlds, 0);
    EXPECT_EQ(stage.host.audit().leftByFault, 1);
    EXPECT_TRUE(stage.host.audit().clean());
    // A second try succeeds.
    stage.during([&](Call& c) -> PF_Err { return c.utils().dispose_world(c.ref(), &world); });
    EXPECT_EQ(stage.host.audit().leftByFault, 0);
}

TEST(Fault, FailingCopyAndFillWriteNothing) {
    Stage stage;
    PF_EffectWorld a{};
    PF_EffectWorld b{};
    stage.during([&](Call& c) -> PF_Err {
        c.utils().new_world(c.ref(), 1, 1, PF_NewWorldFlag_CLEAR_PIXELS, &a);
        worldRow(a, 0)[0] = std::byte{1};
        return c.utils().new_world(c.ref(), 1, 1, PF_NewWorldFlag_CLEAR_PIXELS, &b);
    });
    withFault(stage, "copy",
              [&](Call& c) -> PF_Err { return c.utils().copy(c.ref(), &a, &b, nullptr, nullptr); });
    EXPECT_EQ(worldRow(b, 0)[0], std::byte{0});
    withFault(stage, "fill",
              [&](Call& c) -> PF_Err { return c.utils().fill(c.ref(), nullptr, nullptr, &a); });
    EXPECT_EQ(worldRow(a, 0)[0], std::byte{1});
    stage.during([&](Call& c) -> PF_Err {
        c.utils().dispose_world(c.ref(), &a);
        return c.utils().dispose_world(c.ref(), &b);
    });
}

PF_Err countPass(void* refcon, A_long, A_long, A_long) {
    ++*static_cast<std::atomic<int>*>(refcon);
    return PF_Err_NONE;
}

TEST(Fault, AFailingIterateRunsNothingOrAllOfIt) {
    Stage stage;
    std::atomic<int> passes{0};
    const Handler iterate = [&](Call& c) -> PF_Err {
        return c.utils().iterate_generic(5, &passes, countPass);
    };
    EXPECT_EQ(withFault(stage, "iterate_generic", iterate).code, PF_Err_INVALID_INDEX);
    EXPECT_EQ(passes, 0);
    judge::FaultPlan plan = failing(1, 44);
    plan.failIterateAfter = true;
    stage.host.armFaults(plan);
    EXPECT_EQ(stage.during(iterate).code, 44);
    EXPECT_EQ(passes, 5);
}

TEST(Fault, AFailingCheckoutChecksNothingOutAndItsCheckinIsExcused) {
    Stage stage;
    withFault(stage, "checkout_param", [](Call& c) -> PF_Err {
        PF_ParamDef def{};
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 1, 0, 1, 24, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(c.in.inter.checkin_param(c.ref(), &def), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().strayCheckins, 1);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Fault, AFailingCheckinIsTheHostsDebt) {
    Stage stage;
    stage.session();
    stage.host.armFaults(failing(2));
    stage.during([](Call& c) -> PF_Err {
        PF_ParamDef def{};
        c.in.inter.checkout_param(c.ref(), 1, 0, 1, 24, &def);
        return c.in.inter.checkin_param(c.ref(), &def);
    });
    EXPECT_EQ(stage.host.audit().paramCheckouts, 0);
    EXPECT_EQ(stage.host.audit().leftByFault, 1);
}

TEST(Fault, SetUpCommandsAreOneOperation) {
    Stage stage;
    stage.host.armFaults(failing(3));
    EXPECT_EQ(stage.session().setupResult().command, PF_Cmd_PARAMS_SETUP);
    EXPECT_EQ(stage.session().setupResult().code, PF_Err_INVALID_INDEX);
    EXPECT_EQ(stage.host.failedCallName(), "add_param");
    EXPECT_EQ(stage.session().params().size(), 3U);
}

// The loop that tests of a whole effect go by: every call of a render fails once, in turn.
TEST(Fault, EveryCallOfARenderFailsInTurn) {
    Stage stage;
    stage.session();
    std::vector<std::string> failed;
    for (int call = 1;; ++call) {
        stage.host.resetAudit();
        stage.host.armFaults(failing(call));
        Image output;
        const RenderResult result = stage.session().render(patterned(PF_PixelFormat_ARGB32, 3, 3), output);
        const std::string name = stage.host.failedCallName();
        if (name.empty()) {
            EXPECT_TRUE(result.ok());
            EXPECT_EQ(stage.host.callsCounted(), call - 1);
            break;
        }
        failed.push_back(name);
        EXPECT_FALSE(result.ok());
        const judge::AuditReport report = stage.host.audit();
        EXPECT_EQ(report.liveHandles + report.liveLocks + report.liveWorlds, 0) << name;
        EXPECT_TRUE(report.misuse.empty()) << report.text();
        // The effect of this test does not check a layer in after an error.
        const bool layerOut = name == "checkout_output" || name == "copy";
        EXPECT_EQ(report.layerCheckouts, layerOut ? 1 : 0) << name;
        EXPECT_EQ(report.leftByFault, name == "checkin_layer_pixels" ? 1 : 0);
    }
    const std::vector<std::string> expected{"host_new_handle", "checkout_layer", "checkout_layer_pixels",
                                            "checkout_output", "copy",           "checkin_layer_pixels"};
    EXPECT_EQ(failed, expected);
}

TEST(Cancel, TheNthProgressCallAndAllLaterOnesCancel) {
    Stage stage;
    stage.session();
    judge::FaultPlan plan;
    plan.cancelAtProgress = 2;
    stage.host.armFaults(plan);
    const CommandResult result = stage.during([](Call& c) -> PF_Err {
        EXPECT_EQ(c.in.inter.progress(c.ref(), 1, 3), PF_Err_NONE);
        EXPECT_EQ(c.in.inter.progress(c.ref(), 2, 3), PF_Interrupt_CANCEL);
        return c.in.inter.progress(c.ref(), 3, 3);
    });
    EXPECT_EQ(result.code, PF_Interrupt_CANCEL);
    EXPECT_EQ(stage.host.failedCallName(), "");
}

} // namespace
} // namespace kovalune::test
