// Loads and unloads, and actions in any order that hosts may send them in.

#include "render/selfcheck/Random.h"
#include "tests/adapters/openfx/Stage.h"

#include <clocale>

namespace kovalune::test {

using namespace openfx;

namespace {

using Texts = std::vector<std::string>;

TEST(OpenFxHabits, DescribedOnlyToBeCachedLeavesNothing) {
    for (int cycle = 0; cycle < 20; ++cycle) {
        TestHost host;
        for (int round = 0; round < 5; ++round) {
            host.plugin().setHost(host.record());
            ASSERT_TRUE(host.start());
            ASSERT_EQ(host.unload(), kOk);
        }
        EXPECT_EQ(host.faults(), Texts{});
    }
}

#ifndef _WIN32
TEST(OpenFxThreads, AreNoneBeforeTheFirstFrameAndNoneAfterTheLastInstance) {
    const int before = threadsOfProcess();
    TestPicture source = drawn({}, 200, 100);
    for (int cycle = 0; cycle < 100; ++cycle) {
        TestHost host({.withheld = {"OfxMultiThreadSuite1"}});
        ASSERT_TRUE(host.start());
        const auto first = host.makeInstance();
        const auto second = host.makeInstance();
        ASSERT_EQ(host.create(*first), kOk);
        ASSERT_EQ(host.create(*second), kOk);
        ASSERT_EQ(threadsOfProcess(), before);
        if (cycle % 10 == 0) {
            chooseColours(*first);
            TestPicture output({}, 200, 100);
            first->clip("Source").picture = &source;
            first->clip("Output").picture = &output;
            ASSERT_EQ(host.render(*first, {.window = output.bounds()}), kOk);
        }
        ASSERT_EQ(host.destroy(*first), kOk);
        ASSERT_EQ(host.destroy(*second), kOk);
        ASSERT_EQ(threadsOfProcess(), before);
        ASSERT_EQ(host.unload(), kOk);
    }
}

/// How many threads there are more after a frame, while its instance is there.
int threadsAfterAFrame(const TestHostOptions& options) {
    const int before = threadsOfProcess();
    Stage stage(options);
    chooseColours(*stage.instance);
    TestPicture source = drawn({}, 300, 200);
    TestPicture output({}, 300, 200);
    EXPECT_EQ(stage.render(&source, output), kOk);
    return threadsOfProcess() - before;
}

TEST(OpenFxThreads, AreTheHostsWhereItLendsSome) {
    EXPECT_EQ(threadsAfterAFrame({}), 0);
    EXPECT_EQ(threadsAfterAFrame({.callsOnSpawnedThread = true}), 0) << "a spawned thread works alone";
    if (std::thread::hardware_concurrency() > 1) {
        EXPECT_GT(threadsAfterAFrame({.withheld = {"OfxMultiThreadSuite1"}}), 0);
    }
}
#endif

TEST(OpenFxProcess, KeepsItsLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    TestHost host;
    ASSERT_TRUE(host.start());
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
    EXPECT_EQ(host.unload(), kOk);
}

/// A host that does what the interface lets it, in any order.
class AnyOrder {
public:
    explicit AnyOrder(uint64_t seed) : random_(seed), host_({.cpus = 2}) { EXPECT_TRUE(host_.start()); }
    ~AnyOrder() {
        while (!instances_.empty()) {
            destroyOne();
        }
        EXPECT_EQ(host_.unload(), kOk);
        EXPECT_EQ(host_.faults(), Texts{});
        EXPECT_EQ(host_.imagesOut(), 0);
    }
    AnyOrder(const AnyOrder&) = delete;
    AnyOrder& operator=(const AnyOrder&) = delete;

    void step() {
        const int what = random_.below(10);
        if (instances_.empty() || (what == 0 && instances_.size() < 4)) {
            instances_.push_back(host_.makeInstance());
            ASSERT_EQ(host_.create(*instances_.back()), kOk);
        } else if (what == 1) {
            destroyOne();
        } else if (what == 2) {
            EXPECT_EQ(host_.action(name::kPurgeCaches, &any()), kOk);
        } else if (what == 3) {
            EXPECT_EQ(host_.load(), kOk);
            EXPECT_EQ(host_.describe(), kOk);
        } else if (what == 4) {
            TestEffect& instance = any();
            instance.set("baseEnable2", {static_cast<double>(random_.below(2))});
            EXPECT_EQ(host_.changed(instance, "baseEnable2"), kOk);
        } else if (what < 8) {
            ask();
        } else {
            render();
        }
    }

private:
    TestEffect& any() {
        return *instances_[static_cast<std::size_t>(random_.below(static_cast<int>(instances_.size())))];
    }

    void destroyOne() {
        EXPECT_EQ(host_.destroy(*instances_.back()), kOk);
        instances_.pop_back();
    }

    void ask() {
        const char* const actions[] = {name::kGetClipPreferences, name::kGetRegionsOfInterest,
                                       name::kGetRegionOfDefinition, name::kIsIdentity,
                                       name::kBeginSequenceRender};
        PropertyBag in = host_.renderArguments({});
        PropertyBag out = host_.arguments();
        const Status status = host_.action(actions[random_.below(5)], &any(), &in, &out);
        EXPECT_TRUE(status == kOk || status == kReplyDefault) << status;
    }

    void render() {
        TestEffect& instance = any();
        TestPicture source =
            drawn({.depth = kDepths[random_.below(3)]}, random_.between(1, 40), random_.between(1, 30));
        TestPicture output({}, 30, 30);
        instance.clip("Source").picture = &source;
        instance.clip("Output").picture = &output;
        EXPECT_EQ(host_.render(instance, {.window = output.bounds()}), kOk);
        instance.clip("Source").picture = instance.clip("Output").picture = nullptr;
        EXPECT_TRUE(output.isGuardIntact());
    }

    selfcheck::Random random_;
    TestHost host_;
    std::vector<std::unique_ptr<TestEffect>> instances_;
};

TEST(OpenFxActions, ComeInAnyOrder) {
    for (uint64_t seed = 1; seed <= 20; ++seed) {
        AnyOrder host(seed);
        for (int step = 0; step < 60; ++step) {
            host.step();
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

} // namespace
} // namespace kovalune::test
