// The three steps of many frames: each once and in order, no more at once than is allowed, and nothing lost at any end.

#include "render/shots/SequenceRun.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kovalune::test {

using namespace shots;

namespace {

/// What all tasks of a run do, and how many do it at once.
struct Watch {
    std::atomic<int> alive{0};
    std::atomic<int> mostAlive{0};
    std::atomic<int> making{0};
    std::atomic<int> mostMaking{0};
    std::atomic<bool> wrongOrder{false};
    std::atomic<bool> sameJob{false};
    std::vector<std::atomic<int>> jobs = std::vector<std::atomic<int>>(64);
    std::size_t failsAt = SIZE_MAX;
    int failingStep = 0;
};

void raise(std::atomic<int>& most, int now) {
    for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
    }
}

class WatchedTask : public FrameTask {
public:
    WatchedTask(Watch& watch, std::size_t frame) : watch_(watch), frame_(frame) {
        raise(watch_.mostAlive, ++watch_.alive);
    }
    ~WatchedTask() override { --watch_.alive; }

    void read() override { step(1); }
    void make(std::size_t job) override {
        raise(watch_.mostMaking, ++watch_.making);
        watch_.sameJob = watch_.sameJob || watch_.jobs[job]++ != 0;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        --watch_.jobs[job];
        --watch_.making;
        step(2);
    }
    void write() override { step(3); }

private:
    void step(int number) {
        watch_.wrongOrder = watch_.wrongOrder || ++steps_ != number;
        if (frame_ == watch_.failsAt && number == watch_.failingStep) {
            throw text::Failure(text::FailureKind::kEffect, "it fails");
        }
    }

    Watch& watch_;
    const std::size_t frame_;
    int steps_ = 0;
};

struct Ends {
    std::vector<FrameEnd> of = {};
    std::vector<std::size_t> frames = {};

    std::ptrdiff_t count(FrameEnd end) const { return std::count(of.begin(), of.end(), end); }
};

Ends run(std::size_t count, RunOptions options, Watch& watch) {
    Ends ends;
    runSequence(
        count, options, [&](std::size_t frame) { return std::make_unique<WatchedTask>(watch, frame); },
        [&](std::size_t frame, FrameTask&, const FrameOutcome& outcome) {
            ends.frames.push_back(frame);
            ends.of.push_back(outcome.end);
        });
    EXPECT_FALSE(watch.wrongOrder);
    EXPECT_FALSE(watch.sameJob);
    EXPECT_EQ(watch.alive, 0);
    return ends;
}

TEST(SequenceRun, TakesEachFrameThroughItsSteps) {
    for (const std::size_t jobs : {1U, 2U, 5U}) {
        Watch watch;
        Ends ends = run(100, {.jobs = jobs, .keepGoing = false, .isToStop = {}}, watch);
        std::sort(ends.frames.begin(), ends.frames.end());
        ASSERT_EQ(ends.frames.size(), 100U);
        EXPECT_EQ(ends.frames.back(), 99U);
        EXPECT_EQ(ends.count(FrameEnd::kDone), 100);
        EXPECT_LE(watch.mostMaking, static_cast<int>(jobs));
        EXPECT_LE(watch.mostAlive, static_cast<int>(2 * jobs + 1));
    }
}

TEST(SequenceRun, OfNoFramesEnds) {
    Watch watch;
    EXPECT_TRUE(run(0, {}, watch).frames.empty());
}

TEST(SequenceRun, StopsAtTheFirstFailureOrGoesOn) {
    for (int step = 1; step <= 3; ++step) {
        Watch watch;
        watch.failsAt = 10;
        watch.failingStep = step;
        Ends ends = run(60, {.jobs = 2, .keepGoing = false, .isToStop = {}}, watch);
        EXPECT_EQ(ends.count(FrameEnd::kFailed), 1);
        EXPECT_LT(ends.frames.size(), 60U);
        Watch again;
        again.failsAt = 10;
        again.failingStep = step;
        ends = run(60, {.jobs = 2, .keepGoing = true, .isToStop = {}}, again);
        EXPECT_EQ(ends.count(FrameEnd::kFailed), 1);
        EXPECT_EQ(ends.count(FrameEnd::kDone), 59);
    }
}

TEST(SequenceRun, GivesUpWhatIsNotMadeWhenItIsToStop) {
    Watch watch;
    std::atomic<int> asked{0};
    const Ends ends =
        run(100, {.jobs = 2, .keepGoing = true, .isToStop = [&] { return ++asked > 30; }}, watch);
    EXPECT_LT(ends.frames.size(), 100U);
    EXPECT_GT(ends.count(FrameEnd::kDone), 0);
    EXPECT_EQ(ends.count(FrameEnd::kFailed), 0);
}

TEST(SequenceRun, PassesOverWhatHasNothingToDo) {
    int begun = 0;
    runSequence(
        50, {.jobs = 3, .keepGoing = false, .isToStop = {}},
        [&](std::size_t) {
            ++begun;
            return std::unique_ptr<FrameTask>();
        },
        [](std::size_t, FrameTask&, const FrameOutcome&) { FAIL(); });
    EXPECT_EQ(begun, 50);
}

TEST(SequenceRun, ThrowsWhatBreaksIt) {
    Watch watch;
    EXPECT_THROW(runSequence(
                     20, {.jobs = 2, .keepGoing = true, .isToStop = {}},
                     [&](std::size_t frame) { return std::make_unique<WatchedTask>(watch, frame); },
                     [](std::size_t frame, FrameTask&, const FrameOutcome&) {
                         if (frame == 3) {
                             throw std::runtime_error("the log is full");
                         }
                     }),
                 std::runtime_error);
    EXPECT_EQ(watch.alive, 0);
}

} // namespace
} // namespace kovalune::test
