// Ctrl-C and its like at every point of a command: nothing is written, whatever the effect makes of it, and the command
// ends by the signal, so that the loop that called it ends too.

#include "render/shots/EndingSignals.h"
#include "tests/cli/ErrorCase.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace kovalune::test {

using namespace shots;

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

    /// Until the effect is in the frame, or the command is at its end.
    void awaitFrame(RunningCommand& command) const {
        while (!std::filesystem::exists(marks_ / "frame") && !command.hasEnded()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ASSERT_TRUE(std::filesystem::exists(marks_ / "frame"));
    }

    void expectNothingWritten() const {
        EXPECT_EQ(folder_.names(), names_);
        EXPECT_EQ(bytesOf(folder_ / "old.png"), oldBytes());
    }

    /// By the signal itself, as a shell has to see it.
    void expectInterrupted(const CommandOutcome& outcome, int signalNumber) const {
        EXPECT_EQ(outcome.exitCode, -signalNumber);
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
    for (const int signalNumber : kEndingSignals) {
        std::filesystem::remove(marks_ / "frame");
        RunningCommand command(words_, setting("cancel"));
        awaitFrame(command);
        command.send(signalNumber);
        expectInterrupted(command.wait(), signalNumber);
    }
}

TEST_F(Interrupted, NoTimesAndParametersArePrinted) {
    std::vector<std::string> words = words_;
    words.insert(words.end(), {"--time", "--print-params"});
    RunningCommand command(words, setting("cancel"));
    awaitFrame(command);
    command.send(SIGINT);
    expectInterrupted(command.wait(), SIGINT);
}

TEST_F(Interrupted, TheFrameOfAnEffectThatDoesNotAskIsDropped) {
    RunningCommand command(words_, setting("deaf"));
    awaitFrame(command);
    command.send(SIGINT);
    writeBytes(marks_ / "go", {});
    expectInterrupted(command.wait(), SIGINT);
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

// Of Ctrl-C a shell asks what it waits for: it ends only if the command has ended by that signal. Any other signal ends
// the shell itself, or leaves its loop alone.
TEST_F(Interrupted, TheShellsLoopEndsToo) {
    CommandSetting shell = setting("cancel");
    shell.program = "/bin/bash";
    shell.ownGroup = true; // as a terminal tells the shell and what it runs
    RunningCommand loop({"-c", "for i in 1 2; do echo $i; test $i = 1 || exit 9; " KOVALUNE_COMMAND
                               " render in.png -o old.png --plugin " KOVALUNE_TEST_EFFECT "; done"},
                        shell);
    awaitFrame(loop);
    loop.send(SIGINT);
    const CommandOutcome outcome = loop.wait();
    EXPECT_EQ(outcome.exitCode, -SIGINT);
    EXPECT_EQ(outcome.out, "1\n");
    expectNothingWritten();
}

TEST_F(Interrupted, AScriptSeesTheSignalsNumber) {
    const std::string pidFile = (marks_ / "pid").string();
    const std::string script = "for i in 1 2 3; do sh -c 'echo $$ > " + pidFile +
                               "; exec " KOVALUNE_COMMAND
                               " render in.png -o old.png --plugin " KOVALUNE_TEST_EFFECT
                               "'; code=$?; echo $code; test $code -lt 128 || exit $code; done";
    for (const auto& [signalNumber, code] :
         {std::pair(SIGINT, 130), {SIGTERM, 143}, {SIGHUP, 129}, {SIGQUIT, 131}}) {
        std::filesystem::remove(marks_ / "frame");
        CommandSetting shell = setting("cancel");
        shell.program = "/bin/sh";
        RunningCommand loop({"-c", script}, shell);
        awaitFrame(loop);
        pid_t command = 0;
        std::ifstream(pidFile) >> command;
        ASSERT_GT(command, 0);
        kill(command, signalNumber);
        const CommandOutcome outcome = loop.wait();
        EXPECT_EQ(outcome.exitCode, code);
        EXPECT_EQ(outcome.out, std::to_string(code) + '\n');
        expectNothingWritten();
    }
}

TEST_F(Interrupted, WhileItReadsTheProcessEnds) {
    const TestFolder pipes;
    const std::filesystem::path pipe = pipes / "in.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::vector<std::string>& words : {std::vector<std::string>{"render", pipe, "-o", "old.png"},
                                                  {"sheet", pipe, "-o", "old.png"},
                                                  {"smooth", pipe, "-o", "old.png", "--flag-map", "map.png"},
                                                  {"colors", pipe, "-o", "old.png"},
                                                  {"compare", "in.png", pipe, "--diff", "old.png"}}) {
        for (const int signalNumber : kEndingSignals) {
            RunningCommand command(words, setting("none"));
            const int end = open(pipe.c_str(), O_WRONLY); // comes back when the command has opened it
            ASSERT_GE(end, 0);
            command.send(signalNumber);
            const CommandOutcome outcome = command.wait();
            close(end);
            EXPECT_EQ(outcome.exitCode, -signalNumber) << words.front();
            EXPECT_EQ(outcome.err, "");
            expectNothingWritten();
        }
    }
}

#ifndef KOVALUNE_SANITIZED // the sanitizers want to be loaded first
TEST_F(Interrupted, WhileItWritesNothingIsLeft) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"render", "in.png", "-o", "old.png"},
          {"sheet", "in.png", "-o", "old.png"},
          {"smooth", "in.png", "-o", "old.png"},
          {"smooth", "in.png", "-o", "old.png", "--flag-map", "map.png"},
          {"colors", "in.png", "-o", "old.png"},
          {"compare", "in.png", "in.png", "--diff", "old.png"}}) {
        for (const int signalNumber : kEndingSignals) {
            CommandSetting preloaded = setting("none");
            preloaded.environment["LD_PRELOAD"] = KOVALUNE_TEST_SIGNAL;
            preloaded.environment["TEST_FLUSH_SIGNAL"] = std::to_string(signalNumber);
            const CommandOutcome outcome = runCommand(words, preloaded);
            EXPECT_EQ(outcome.exitCode, -signalNumber) << words.front() << outcome.err;
            EXPECT_EQ(outcome.out, "");
            expectNothingWritten();
        }
    }
}

TEST_F(Interrupted, SavedDefaultsAreWholeOrNotThere) {
    const TestFolder config;
    CommandSetting preloaded = setting("none");
    preloaded.environment["LD_PRELOAD"] = KOVALUNE_TEST_SIGNAL;
    preloaded.environment["XDG_CONFIG_HOME"] = config.path();
    const std::filesystem::path folder = config / "ORVEL/Tavik";
    ASSERT_TRUE(runCommand({"defaults", "save"}, preloaded).ok());
    const std::vector<uint8_t> whole = bytesOf(folder / "Kovalune.ini");
    for (const char* const flush : {"1", "30"}) {
        std::filesystem::remove_all(config / "ORVEL");
        preloaded.environment["TEST_FLUSH_SIGNAL"] = std::to_string(SIGTERM);
        preloaded.environment["TEST_FLUSH_NUMBER"] = flush;
        const CommandOutcome outcome = runCommand({"defaults", "save"}, preloaded);
        EXPECT_EQ(outcome.exitCode, -SIGTERM);
        EXPECT_EQ(outcome.err,
                  "kovalune: interrupted after saving " + (folder / "Kovalune.ini").string() + '\n');
        EXPECT_EQ(bytesOf(folder / "Kovalune.ini"), whole);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
    }
}
#endif

TEST_F(Interrupted, AnIgnoredSignalStaysIgnored) {
    for (const int signalNumber : {SIGINT, SIGHUP}) {
        std::filesystem::remove(marks_ / "frame");
        std::filesystem::remove(marks_ / "go");
        writeBytes(folder_ / "old.png", oldBytes());
        std::signal(signalNumber, SIG_IGN); // the command inherits it
        RunningCommand command(words_, setting("deaf"));
        awaitFrame(command);
        command.send(signalNumber);
        writeBytes(marks_ / "go", {});
        const CommandOutcome outcome = command.wait();
        std::signal(signalNumber, SIG_DFL);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(readPngFile(folder_ / "old.png").rows, std::vector<uint8_t>(std::size_t{4} * 12 * 9, 0x77));
    }
}

TEST_F(Interrupted, TheProgressLineIsGoneFromTheTerminal) {
    CommandSetting terminal = setting("cancel");
    terminal.errorColumns = 100;
    RunningCommand command(words_, terminal);
    awaitFrame(command);
    command.send(SIGINT);
    const CommandOutcome outcome = command.wait();
    EXPECT_EQ(outcome.exitCode, -SIGINT);
    const std::string end = "\rkovalune: interrupted\r\n";
    ASSERT_GE(outcome.err.size(), end.size());
    EXPECT_TRUE(outcome.err.ends_with(end) || outcome.err == end.substr(1)) << outcome.err;
    expectNothingWritten();
}

} // namespace
} // namespace kovalune::test
