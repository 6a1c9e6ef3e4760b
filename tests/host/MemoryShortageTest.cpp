#include "tests/host/ScriptedEffect.h"
#include "tests/support/AllocationControl.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace kovalune::test {
using namespace host;
namespace {

judge::JudgeOptions unlogged() {
    judge::JudgeOptions options = Stage::audited();
    options.recordCalls = false; // the log itself needs memory
    return options;
}

TEST(MemoryShortage, AcquireSuiteReportsIt) {
    Stage stage(unlogged());
    PF_Err acquired = 0;
    const void* suite = nullptr;
    const CommandResult result = stage.during([&](Call& c) {
        const NoMemory shortage;
        // Longer than a text that needs no memory of its own.
        acquired = c.in.pica_basicP->AcquireSuite(kPFWorldTransformSuite, 1, &suite);
        return PF_Err_NONE;
    });
    EXPECT_FALSE(result.threw);
    EXPECT_EQ(acquired, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(suite, nullptr);
    EXPECT_EQ(stage.host.audit().liveSuites, 0);
}

TEST(MemoryShortage, ReleaseSuiteReportsItAndKeepsTheSuite) {
    Stage stage(unlogged());
    PF_Err released = 0;
    const CommandResult result = stage.during([&](Call& c) {
        c.need<PFWorldTransformSuite1>(kPFWorldTransformSuite, 1);
        const NoMemory shortage;
        released = c.in.pica_basicP->ReleaseSuite(kPFWorldTransformSuite, 1);
        return PF_Err_NONE;
    });
    EXPECT_FALSE(result.threw);
    EXPECT_EQ(released, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(stage.host.audit().liveSuites, 1);
}

TEST(MemoryShortage, AThrowingPassStillGivesItsCode) {
    judge::JudgeOptions options = unlogged();
    options.threaded = false;
    Stage stage(options);
    const PF_IterateGenericFunc throwing = [](void*, A_long, A_long, A_long) -> PF_Err {
        refuseMemory(true); // so that the misuse cannot be booked
        throw 5;
    };
    const CommandResult result = stage.during([&](Call& c) {
        const PF_Err code = c.utils().iterate_generic(1, nullptr, throwing);
        refuseMemory(false);
        return code;
    });
    EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
}

// On a helper's thread nobody could catch what the books throw: the program would end.
TEST(MemoryShortage, AThrowingPassOnAHelpersThreadEndsNothing) {
    judge::JudgeOptions options = unlogged();
    options.threads = 2;
    options.iterations = 2;
    Stage stage(options);
    struct Meeting {
        std::thread::id caller = std::this_thread::get_id();
        std::atomic<int> inside{0};
    } meeting;
    const PF_IterateGenericFunc pass = [](void* refcon, A_long, A_long, A_long) -> PF_Err {
        Meeting& both = *static_cast<Meeting*>(refcon);
        ++both.inside;
        while (both.inside < 2) {
            std::this_thread::yield();
        }
        if (std::this_thread::get_id() == both.caller) {
            return PF_Err_NONE;
        }
        refuseMemory(true); // of the helper, which ends with its host
        throw 5;
    };
    const CommandResult result =
        stage.during([&](Call& c) { return c.utils().iterate_generic(-1, &meeting, pass); });
    EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST(MemoryShortage, PreRenderDataCanBeDroppedWithoutMemoryForTheBooks) {
    Stage stage(unlogged());
    static int number;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        c.preRender().output->pre_render_data = &number; // no handle: a misuse to book
        refuseMemory(true);
        return 700;
    };
    Session& session = stage.session();
    const Image input = patterned(PF_PixelFormat_ARGB32, 2, 2);
    Image output(PF_PixelFormat_ARGB32, 2, 2);
    PF_Err code = 0;
    try {
        code = session.render(input, output).code;
        refuseMemory(false);
    } catch (...) {
        refuseMemory(false);
        throw;
    }
    EXPECT_EQ(code, 700);
    EXPECT_TRUE(stage.host.audit().misuse.empty());
}

TEST(MemoryShortage, UnshuffledPassesNeedNoOrder) {
    judge::JudgeOptions options = unlogged();
    options.threaded = false;
    Stage stage(options);
    const PF_IterateGenericFunc pass = [](void*, A_long, A_long, A_long) -> PF_Err { return PF_Err_NONE; };
    const auto largestFor = [&] {
        std::size_t largest = 0;
        stage.during([&](Call& c) {
            const LargestRequest watch;
            c.utils().iterate_generic(100000, nullptr, pass);
            largest = watch.bytes();
            return PF_Err_NONE;
        });
        return largest;
    };
    EXPECT_LT(largestFor(), 4096U);
    stage.host.options().shuffleIterations = true;
    EXPECT_GE(largestFor(), 100000 * sizeof(A_long));
}

} // namespace
} // namespace kovalune::test
