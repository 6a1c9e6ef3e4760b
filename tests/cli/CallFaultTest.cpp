// The system refuses a call of the command, or something happens between two of them: a full disk at every write, a folder that
// vanishes, a file that shrinks while it is read, a signal at many points of a run.

#include "render/shots/EndingSignals.h"
#include "tests/cli/FaultCase.h"
#include "tests/pictures/PngMaker.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>

namespace kovalune::test {
namespace {

#ifdef KOVALUNE_TEST_LONG
constexpr long kPoints = 1000; ///< of each command that something happens to
#else
constexpr long kPoints = 7;
#endif

class CallFault : public FaultCase {
protected:
    struct Fault {
        std::string kind;
        long number = 0;
        std::string action = "fail";
        std::string value = "0";
    };

    /// A command, the learned one if none is given, with something happening to it.
    CommandOutcome runWith(const Fault& fault, const std::vector<std::string>& other = {}) {
        std::vector<std::string> words = {(scratch_ / "count").string(),
                                          fault.kind,
                                          std::to_string(fault.number),
                                          fault.action,
                                          fault.value,
                                          KOVALUNE_COMMAND};
        const std::vector<std::string>& own = other.empty() ? command().words : other;
        words.insert(words.end(), own.begin(), own.end());
        CommandSetting setting;
        setting.program = KOVALUNE_TEST_CALLS;
        setting.environment = {{"XDG_CONFIG_HOME", folder_ / "config"}};
        const CommandOutcome outcome = run(words, setting);
        count_ = 0;
        std::ifstream(scratch_ / "count") >> count_;
        return outcome;
    }

    /// Calls of a kind that the unharmed command makes; 0: nobody may look at them here.
    long callsOf(const std::string& kind, const std::string& value = "0") {
        restore();
        runWith({kind, 0, "none", value});
        return count_;
    }

    const TestFolder scratch_;
    long count_ = 0; ///< of the last run's calls
};

#define SKIP_IF_NONE(calls)                                                                                  \
    if ((calls) == 0) {                                                                                      \
        GTEST_SKIP() << "this system lets nobody look at a program's calls";                                 \
    }                                                                                                        \
    static_assert(true)

/// Every one of them, so also when a file is opened, flushed, closed or renamed.
TEST_F(CallFault, OfAFullDiskAtEveryWrite) {
    for (const OutputCommand& command : outputCommands()) {
        ASSERT_NO_FATAL_FAILURE(learn(command));
        const long calls = callsOf("output");
        SKIP_IF_NONE(calls);
        int refusals = 0;
        for (long call = 1; call <= calls; ++call) {
            restore();
            const CommandOutcome outcome = runWith({"output", call, "fail", std::to_string(ENOSPC)});
            SCOPED_TRACE(testing::Message()
                         << command.words.front() << ", write " << call << " of " << calls);
            expectNothingHalf(outcome);
            if (outcome.exitCode == 3) {
                ++refusals;
                EXPECT_NE(outcome.err.find("No space left on device"), std::string::npos) << outcome.err;
            }
        }
        // Opening, writing, flushing and renaming at the least.
        EXPECT_GE(refusals, 4) << command.words.front();
    }
}

TEST_F(CallFault, OfAFullDiskUnderTheStandardOutput) {
    for (const OutputCommand& command :
         {OutputCommand{{"render", "in.png", "-o", "-", "--format", "png"}, {}},
          OutputCommand{{"params"}, {}}, OutputCommand{{"colors", "in.png"}, {}}}) {
        ASSERT_NO_FATAL_FAILURE(learn(command));
        const long calls = callsOf("output");
        SKIP_IF_NONE(calls);
        for (long call = 1; call <= calls; ++call) {
            restore();
            const CommandOutcome outcome = runWith({"output", call, "fail", std::to_string(ENOSPC)});
            EXPECT_EQ(outcome.exitCode, 3) << command.words.front();
            expectNothingHalf(outcome);
        }
    }
}

/// What was remembered before is remembered still.
TEST_F(CallFault, OfAFullDiskUnderRememberedDefaults) {
    const std::filesystem::path file = folder_ / "config/ORVEL/Tavik/Kovalune.ini";
    const std::vector<std::string> save = {"defaults", "save", "--set", "Blur Amount=33"};
    ASSERT_EQ(runWith({"output", 0, "none"}, save).exitCode, 0);
    const long calls = count_;
    SKIP_IF_NONE(calls);
    const std::vector<uint8_t> after = bytesOf(file);
    ASSERT_EQ(runWith({"output", 0, "none"}, {"defaults", "save", "--set", "Blur Amount=22"}).exitCode, 0);
    const std::vector<uint8_t> before = bytesOf(file);
    // Each value is written on its own.
    for (long call = 1; call <= calls; call += std::max(1L, calls / kPoints)) {
        std::filesystem::create_directories(file.parent_path());
        writeBytes(file, before);
        const CommandOutcome outcome = runWith({"output", call, "fail", std::to_string(ENOSPC)}, save);
        SCOPED_TRACE(testing::Message()
                     << "write " << call << " of " << calls << ": " << outcome.exitCode << outcome.err);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(file.parent_path()), {}), 1);
        if (outcome.exitCode != 0) {
            EXPECT_EQ(outcome.exitCode, 3);
            EXPECT_TRUE(outcome.hasOneErrorLine());
        }
        // That they are saved is told last.
        const bool wasSaved =
            outcome.exitCode == 0 || outcome.err.find("standard output") != std::string::npos;
        EXPECT_EQ(bytesOf(file), wasSaved ? after : before);
    }
}

TEST_F(CallFault, OfAFolderThatVanishes) {
    OutputCommand shot = {{"render", "in/cel.####.png", "-o", "out/soft.####.tga", "--jobs", "2", "--quiet"},
                          {}};
    for (const std::string frame : {"0001", "0002", "0003"}) {
        addInput("in/cel." + frame + ".png", bytesOf(folder_ / ("cel." + frame + ".png")));
        shot.outputs.push_back("out/soft." + frame + ".tga");
    }
    for (const std::string vanishing : {"in", "out"}) {
        ASSERT_NO_FATAL_FAILURE(learn(shot));
        const long calls = callsOf("any");
        SKIP_IF_NONE(calls);
        const long points = std::min(calls, kPoints);
        int refusals = 0;
        for (long point = 1; point <= points; ++point) {
            restore();
            const long call = calls * point / points;
            const CommandOutcome outcome = runWith({"any", call, "remove", folder_ / vanishing});
            SCOPED_TRACE(testing::Message()
                         << vanishing << " before call " << call << ": " << outcome.exitCode << outcome.err);
            refusals += outcome.exitCode == 3 ? 1 : 0;
            EXPECT_TRUE(outcome.exitCode == 0 || (outcome.exitCode == 3 && outcome.hasOneErrorLine()));
            // What has gone is not made again. With two jobs a run makes a few calls more or less.
            EXPECT_EQ(std::filesystem::exists(folder_ / vanishing), count_ < call);
            expectNothingElse();
            for (const std::string& output : shot.outputs) {
                if (std::filesystem::exists(folder_ / output)) {
                    EXPECT_TRUE(isWhole(output) || (outcome.exitCode != 0 && isOld(output))) << output;
                }
            }
        }
        EXPECT_GT(refusals, 2) << vanishing;
    }
}

TEST_F(CallFault, OfAFileThatShrinksWhileItIsRead) {
    // More than the system reads at once.
    writePng(folder_ / "large.png", randomPng(PngColor::kRgb, 8, 80, 60, 5));
    addInput("large.png", bytesOf(folder_ / "large.png"));
    for (const char* const name : {"sound.png", "sound.tif", "sound.exr", "sound.tga"}) {
        learn({{"render", "large.png", "-o", name}, {name}});
        addInput(name, bytesOf(folder_ / name));
        ASSERT_NO_FATAL_FAILURE(learn({{"render", name, "-o", "old.png"}, {"old.png"}}));
        const std::string file = std::filesystem::canonical(folder_.path()) / name;
        const long calls = callsOf("input", file);
        SKIP_IF_NONE(calls);
        int refusals = 0;
        for (long call = 1; call <= calls; ++call) {
            restore();
            const CommandOutcome outcome = runWith({"input", call, "halve", file});
            SCOPED_TRACE(testing::Message()
                         << name << ", read " << call << " of " << calls << ": " << outcome.err);
            expectNothingHalf(outcome);
            refusals += outcome.exitCode == 3 ? 1 : 0;
        }
        EXPECT_GE(refusals, 1) << name;
    }
}

TEST_F(CallFault, OfASignalAtManyPointsOfARun) {
    const std::vector<OutputCommand> commands = outputCommands();
    for (std::size_t i = 0; i < commands.size(); ++i) {
        ASSERT_NO_FATAL_FAILURE(learn(commands[i]));
        const long calls = callsOf("any");
        SKIP_IF_NONE(calls);
        const long points = std::min(calls, kPoints);
        int ended = 0;
        for (long point = 1; point <= points; ++point) {
            restore();
            const int signalNumber =
                shots::kEndingSignals[static_cast<std::size_t>(point) % std::size(shots::kEndingSignals)];
            // Not the same places for every command.
            const long call = calls * point / points - static_cast<long>(i);
            const CommandOutcome outcome = runWith({"any", call, "signal", std::to_string(signalNumber)});
            SCOPED_TRACE(testing::Message() << commands[i].words.front() << ", signal " << signalNumber
                                            << " before call " << call << " of " << calls);
            expectNothingHalf(outcome);
            EXPECT_TRUE(outcome.exitCode == -signalNumber || outcome.exitCode == 0 || outcome.exitCode == 1)
                << outcome.exitCode;
            ended += outcome.exitCode == -signalNumber ? 1 : 0;
            // Outputs of one picture belong together.
            if (commands[i].words.front() == "smooth") {
                EXPECT_EQ(isOld("old.tga"), isOld("map.png"));
            }
        }
        EXPECT_GT(ended, points / 2) << commands[i].words.front();
    }
}

} // namespace
} // namespace kovalune::test
