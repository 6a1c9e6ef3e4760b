// Ctrl-C at every point of a render: nothing is written, whatever the effect makes of it.

#include "tests/cli/ErrorCase.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace kovalune::tests {
namespace {

class Interrupted : public ErrorCase {
protected:
    static CommandSetting settingFor(const char* word, const TestFolder& folder, const TestFolder& marks) {
        CommandSetting setting;
        setting.folder = folder.path();
        setting.environment = {
            {"TEST_EFFECT", word}, {"TEST_EFFECT_FRAME", marks / "frame"}, {"TEST_EFFECT_GO", marks / "go"}};
        return setting;
    }

    CommandSetting setting(const char* word) const { return settingFor(word, folder_, marks_); }

    // Until the effect is in the frame, or the command is at its end.
    void awaitFrame(RunningCommand& command) const {
        while (!std::filesystem::exists(marks_ / "frame") && !command.hasEnded())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ASSERT_TRUE(std::filesystem::exists(marks_ / "frame"));
    }

    void expectNothingWritten() const {
        EXPECT_EQ(folder_.names(), names_);
        EXPECT_EQ(bytesOf(folder_ / "old.png"), oldBytes());
    }

    void expectInterrupted(const CommandOutcome& outcome) const {
        EXPECT_EQ(outcome.exitCode, 130);
        EXPECT_EQ(outcome.err, "kovalune: interrupted\n");
        EXPECT_EQ(outcome.out, "");
        expectNothingWritten();
    }

    const TestFolder marks_;
    const std::vector<std::string> names_ = folder_.names();
    const std::vector<std::string> words_ = {"render",  "in.png",   "-o",
                                             "old.png", "--plugin", KOVALUNE_TEST_EFFECT};
};

TEST_F(Interrupted, ByASignalInMidFrameTheEffectIsCancelled) {
    for (const int signalNumber : {SIGINT, SIGTERM}) {
        std::filesystem::remove(marks_ / "frame");
        RunningCommand command(words_, setting("cancel"));
        awaitFrame(command);
        command.send(signalNumber);
        expectInterrupted(command.wait());
    }
}

TEST_F(Interrupted, NoTimesAndParametersArePrinted) {
    std::vector<std::string> words = words_;
    words.insert(words.end(), {"--time", "--print-params"});
    RunningCommand command(words, setting("cancel"));
    awaitFrame(command);
    command.send(SIGINT);
    expectInterrupted(command.wait());
}

TEST_F(Interrupted, TheFrameOfAnEffectThatDoesNotAskIsDropped) {
    RunningCommand command(words_, setting("deaf"));
    awaitFrame(command);
    command.send(SIGINT);
    writeBytes(marks_ / "go", {});
    expectInterrupted(command.wait());
}

TEST_F(Interrupted, TwiceItEndsAtOnce) {
    RunningCommand command(words_, setting("deaf"));
    awaitFrame(command);
    // Two that come together are one to the process.
    while (!command.hasEnded()) {
        command.send(SIGINT);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(command.wait().exitCode, -SIGINT);
    expectNothingWritten();
}

TEST_F(Interrupted, ByTwoKindsOfSignalItEndsAtOnce) {
    RunningCommand command(words_, setting("deaf"));
    awaitFrame(command);
    command.send(SIGINT);
    while (!command.hasEnded()) {
        command.send(SIGTERM);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(command.wait().exitCode, -SIGTERM);
    expectNothingWritten();
}

TEST_F(Interrupted, WhileItReadsTheProcessEnds) {
    const TestFolder pipes;
    const std::filesystem::path pipe = pipes / "in.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    RunningCommand command({"render", pipe, "-o", "old.png"}, setting("none"));
    const int end = open(pipe.c_str(), O_WRONLY); // comes back when the command has opened it
    ASSERT_GE(end, 0);
    command.send(SIGINT);
    const CommandOutcome outcome = command.wait();
    close(end);
    EXPECT_EQ(outcome.exitCode, -SIGINT);
    EXPECT_EQ(outcome.err, "");
    expectNothingWritten();
}

TEST_F(Interrupted, AnIgnoredSignalStaysIgnored) {
    std::signal(SIGINT, SIG_IGN); // the command inherits it
    RunningCommand command(words_, setting("deaf"));
    awaitFrame(command);
    command.send(SIGINT);
    writeBytes(marks_ / "go", {});
    const CommandOutcome outcome = command.wait();
    std::signal(SIGINT, SIG_DFL);
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(readPngFile(folder_ / "old.png").rows,
              std::vector<std::uint8_t>(std::size_t{4} * 12 * 9, 0x77));
}

TEST_F(Interrupted, TheProgressLineIsGoneFromTheTerminal) {
    CommandSetting terminal = setting("cancel");
    terminal.errorColumns = 100;
    RunningCommand command(words_, terminal);
    awaitFrame(command);
    command.send(SIGINT);
    const CommandOutcome outcome = command.wait();
    EXPECT_EQ(outcome.exitCode, 130);
    const std::string end = "\rkovalune: interrupted\r\n";
    ASSERT_GE(outcome.err.size(), end.size());
    EXPECT_TRUE(outcome.err.ends_with(end) || outcome.err == end.substr(1)) << outcome.err;
    expectNothingWritten();
}

} // namespace
} // namespace kovalune::tests
