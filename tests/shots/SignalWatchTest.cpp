// One watch over many files and several pieces of work at once.

#include "render/shots/SignalWatch.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <deque>
#include <functional>
#include <optional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kovalune::test {

using namespace shots;

namespace {

/// The signal that ends a process of its own which runs this; 0 if none does.
int endOf(const std::function<void()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

class SignalWatch : public testing::Test {
protected:
    std::filesystem::path file(int number) const { return folder_ / (std::to_string(number) + ".tmp"); }

    void make(std::deque<RemovedOnSignal>& watched, int count) const {
        for (int number = 0; number < count; ++number) {
            watched.emplace_back(file(number));
            writeBytes(file(number), {1});
        }
    }

    const TestFolder folder_;
};

TEST_F(SignalWatch, RemovesEveryFileOfMany) {
    constexpr int kFiles = 40;
    EXPECT_EQ(endOf([this] {
                  std::deque<RemovedOnSignal> watched;
                  make(watched, kFiles);
                  std::raise(SIGTERM);
              }),
              SIGTERM);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SignalWatch, LeavesAFileThatIsNotWatchedAnyMore) {
    EXPECT_EQ(endOf([this] {
                  std::optional<RemovedOnSignal> first(file(0));
                  writeBytes(file(0), {1});
                  const RemovedOnSignal second(file(1));
                  writeBytes(file(1), {1});
                  first.reset();
                  std::raise(SIGHUP);
              }),
              SIGHUP);
    EXPECT_EQ(folder_.names(), std::vector<std::string>{"0.tmp"});
}

TEST_F(SignalWatch, RemovesFilesOfOtherThreads) {
    EXPECT_EQ(endOf([this] {
                  std::array<std::thread, 4> threads;
                  for (std::size_t i = 0; i < threads.size(); ++i) {
                      threads[i] = std::thread([this, i] {
                          for (int round = 0; round < 50; ++round) {
                              const RemovedOnSignal watched(file(static_cast<int>(i)));
                              writeBytes(file(static_cast<int>(i)), {1});
                          }
                      });
                  }
                  for (std::thread& thread : threads) {
                      thread.join();
                  }
                  std::deque<RemovedOnSignal> watched;
                  make(watched, 4);
                  std::thread([] { std::raise(SIGTERM); }).join();
              }),
              SIGTERM);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SignalWatch, NotesTheFirstSignalWhileFilesAreWatchedAndRemovesThemAtTheSecond) {
    EXPECT_EQ(endOf([this] {
                  const Interrupt interrupt;
                  const RemovedOnSignal watched(file(0));
                  writeBytes(file(0), {1});
                  std::raise(SIGINT);
                  if (interrupt.signalNumber() != SIGINT || !std::filesystem::exists(file(0))) {
                      _exit(1);
                  }
                  std::raise(SIGINT);
              }),
              SIGINT);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(SignalWatch, TellsAllWhoLiveOfOneSignal) {
    Interrupt first;
    Interrupt second;
    std::raise(SIGTERM);
    EXPECT_EQ(first.signalNumber(), SIGTERM);
    first.release();
    EXPECT_EQ(first.signalNumber(), SIGTERM);
    EXPECT_EQ(second.signalNumber(), SIGTERM);
    EXPECT_EQ(Interrupt().signalNumber(), SIGTERM) << "what has come counts until the last is released";
    second.release();
    EXPECT_EQ(second.signalNumber(), SIGTERM);
    EXPECT_EQ(Interrupt().signalNumber(), 0);
}

} // namespace
} // namespace kovalune::test
