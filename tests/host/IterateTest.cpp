#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

/// What the passes of one call saw.
struct Passes {
    std::mutex mutex;
    std::vector<A_long> order;
    std::set<std::thread::id> threads;
    A_long total = 0;
    A_long highestThread = 0;
    A_long failFrom = 1 << 30; ///< passes from here on fail with 1000 + their number

    static PF_Err pass(void* refcon, A_long thread, A_long i, A_long iterations) {
        Passes& self = *static_cast<Passes*>(refcon);
        const std::lock_guard lock(self.mutex);
        self.order.push_back(i);
        self.threads.insert(std::this_thread::get_id());
        self.total = iterations;
        self.highestThread = std::max(self.highestThread, thread);
        return i >= self.failFrom ? 1000 + i : PF_Err_NONE;
    }

    std::set<A_long> numbers() const { return {order.begin(), order.end()}; }
};

/// Each pass waits for a second one to be inside with it, so the call ends only if two threads take part.
struct Pairs {
    Passes passes;
    std::atomic<int> arrived{0};

    static PF_Err pass(void* refcon, A_long thread, A_long i, A_long iterations) {
        Pairs& self = *static_cast<Pairs*>(refcon);
        const int pairEnd = (self.arrived.fetch_add(1) / 2 + 1) * 2;
        while (self.arrived < pairEnd) {
            std::this_thread::yield();
        }
        return Passes::pass(&self.passes, thread, i, iterations);
    }
};

PF_Err iterate(Stage& stage, A_long iterations, Passes& passes) {
    return stage.during([&](Call& c) { return c.utils().iterate_generic(iterations, &passes, Passes::pass); })
        .code;
}

judge::JudgeOptions threaded(int threads, int iterations) {
    judge::JudgeOptions options = Stage::audited();
    options.threads = threads;
    options.iterations = iterations;
    return options;
}

TEST(Iterate, OncePerProcessorMeansTheThreadsByDefault) {
    Stage stage(threaded(3, 0));
    Passes passes;
    EXPECT_EQ(iterate(stage, PF_Iterations_ONCE_PER_PROCESSOR, passes), PF_Err_NONE);
    EXPECT_EQ(passes.total, 3);
    EXPECT_EQ(passes.order.size(), 3U);
    EXPECT_EQ(passes.numbers(), (std::set<A_long>{0, 1, 2}));
}

TEST(Iterate, EightIterationsRunOnTwoThreads) {
    Stage stage(threaded(2, 8));
    Pairs pairs;
    const CommandResult result = stage.during([&](Call& c) {
        return c.utils().iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, &pairs, Pairs::pass);
    });
    EXPECT_EQ(result.code, PF_Err_NONE);
    EXPECT_EQ(pairs.passes.total, 8);
    EXPECT_EQ(pairs.passes.order.size(), 8U);
    EXPECT_EQ(pairs.passes.numbers().size(), 8U);
    EXPECT_EQ(pairs.passes.threads.size(), 2U);
    EXPECT_EQ(pairs.passes.highestThread, 1);
}

TEST(Iterate, APositiveCountIsTaken) {
    Stage stage;
    Passes passes;
    EXPECT_EQ(iterate(stage, 5, passes), PF_Err_NONE);
    EXPECT_EQ(passes.total, 5);
    EXPECT_EQ(passes.order.size(), 5U);
}

TEST(Iterate, NoIterationsAreNoError) {
    Stage stage;
    Passes passes;
    EXPECT_EQ(iterate(stage, 0, passes), PF_Err_NONE);
    EXPECT_TRUE(passes.order.empty());
    EXPECT_EQ(iterate(stage, -2, passes), PF_Err_BAD_CALLBACK_PARAM);
}

TEST(Iterate, TwoThreadsAreInsideAtOnce) {
    Stage stage(threaded(2, 2));
    std::atomic<int> inside{0};
    const PF_IterateGenericFunc meet = [](void* refcon, A_long, A_long, A_long) -> PF_Err {
        auto& count = *static_cast<std::atomic<int>*>(refcon);
        ++count;
        while (count < 2) {
            std::this_thread::yield();
        }
        return PF_Err_NONE;
    };
    const CommandResult result =
        stage.during([&](Call& c) { return c.utils().iterate_generic(-1, &inside, meet); });
    EXPECT_EQ(result.code, PF_Err_NONE);
}

TEST(Iterate, UnthreadedRunsInOrderOnTheCallingThread) {
    judge::JudgeOptions options = threaded(4, 16);
    options.threaded = false;
    Stage stage(options);
    Passes passes;
    iterate(stage, -1, passes);
    EXPECT_TRUE(std::is_sorted(passes.order.begin(), passes.order.end()));
    EXPECT_EQ(passes.threads, (std::set<std::thread::id>{std::this_thread::get_id()}));
}

TEST(Iterate, ShuffledOrderDependsOnTheSeedOnly) {
    const auto orderFor = [](uint64_t seed) {
        judge::JudgeOptions options = threaded(4, 16);
        options.threaded = false;
        options.shuffleIterations = true;
        options.shuffleSeed = seed;
        Stage stage(options);
        Passes passes;
        iterate(stage, -1, passes);
        EXPECT_EQ(passes.numbers().size(), 16U);
        return passes.order;
    };
    EXPECT_EQ(orderFor(5), orderFor(5));
    EXPECT_NE(orderFor(5), orderFor(6));
    const std::vector<A_long> order = orderFor(5);
    EXPECT_FALSE(std::is_sorted(order.begin(), order.end()));
}

TEST(Iterate, ShuffledOntoThreadsRunsAllOnce) {
    judge::JudgeOptions options = threaded(4, 32);
    options.shuffleIterations = true;
    Stage stage(options);
    Passes passes;
    iterate(stage, -1, passes);
    EXPECT_EQ(passes.order.size(), 32U);
    EXPECT_EQ(passes.numbers().size(), 32U);
}

TEST(Iterate, AFailingPassGivesItsCodeAndStopsTheRest) {
    judge::JudgeOptions options = threaded(4, 16);
    options.threaded = false;
    Stage stage(options);
    Passes passes;
    passes.failFrom = 3;
    EXPECT_EQ(iterate(stage, -1, passes), 1003);
    EXPECT_EQ(passes.order.size(), 4U);
}

TEST(Iterate, AnExceptionInAPassIsMisuseAndAnError) {
    Stage stage;
    const PF_IterateGenericFunc throwing = [](void*, A_long, A_long, A_long) -> PF_Err { throw 5; };
    const CommandResult result =
        stage.during([&](Call& c) { return c.utils().iterate_generic(-1, nullptr, throwing); });
    EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_FALSE(result.threw);
    EXPECT_FALSE(stage.host.audit().misuse.empty());
}

TEST(Iterate, HostFunctionsWorkInsideAPass) {
    Stage stage(threaded(3, 12));
    static std::atomic<int> made;
    made = 0;
    static PF_UtilCallbacks* utils;
    const PF_IterateGenericFunc pass = [](void*, A_long, A_long, A_long) -> PF_Err {
        PF_Handle handle = utils->host_new_handle(8);
        if (handle == nullptr) {
            return PF_Err_OUT_OF_MEMORY;
        }
        ++made;
        utils->host_dispose_handle(handle);
        return PF_Err_NONE;
    };
    const CommandResult result = stage.during([&](Call& c) {
        utils = c.in.utils;
        return c.utils().iterate_generic(-1, nullptr, pass);
    });
    EXPECT_EQ(result.code, PF_Err_NONE);
    EXPECT_EQ(made, 12);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

} // namespace
} // namespace kovalune::test
