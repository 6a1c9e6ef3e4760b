// A clock that jumps, pictures from the future, and two runs that write the same files.

#include "tests/cli/FaultCase.h"

#include <chrono>
#include <filesystem>

namespace kovalune::test {
namespace {

class ClockFault : public FaultCase {};

TEST_F(ClockFault, OfATimeOfDayThatJumpsChangesNothing) {
    for (const OutputCommand& command : outputCommands()) {
        ASSERT_NO_FATAL_FAILURE(learn(command));
        for (const char* const seconds : {"1", "100000000", "-100000000", "4000000000"}) {
            restore();
            CommandSetting setting;
            setting.environment = {{"LD_PRELOAD", KOVALUNE_TEST_CLOCK}, {"TEST_CLOCK_SECONDS", seconds}};
            const CommandOutcome outcome = run(command.words, setting);
            expectNothingHalf(outcome);
            EXPECT_TRUE(outcome.exitCode == 0 || outcome.exitCode == 1) << outcome.err;
            for (const std::string& output : command.outputs) {
                EXPECT_TRUE(isWhole(output)) << output;
            }
        }
    }
}

/// Made anew each time rather than never again.
TEST_F(ClockFault, OfPicturesFromTheFutureAreMadeAgain) {
    using namespace std::chrono_literals;
    OutputCommand shot = outputCommands().back();
    shot.words.emplace_back("--newer");
    learn({outputCommands().back().words, shot.outputs});
    for (int time = 0; time < 2; ++time) {
        restore();
        for (const char* const name : {"cel.0001.png", "cel.0002.png", "cel.0003.png"}) {
            std::filesystem::last_write_time(folder_ / name, std::chrono::file_clock::now() + 24h * 365);
        }
        EXPECT_EQ(run(shot.words).exitCode, 0);
        for (const std::string& output : shot.outputs) {
            EXPECT_TRUE(isWhole(output)) << output;
        }
    }
}

/// Whoever comes last wins, file by file; nobody ever sees a part of one.
TEST_F(ClockFault, OfTwoRunsAtOnceEveryFileIsOneRunsOwn) {
    constexpr int kRounds = 6;
    const OutputCommand first = outputCommands().back();
    OutputCommand second = first;
    second.words.insert(second.words.end(), {"--set", "View=Extract"});
    const auto outputsOf = [this](const OutputCommand& command) {
        learn(command);
        std::map<std::string, std::vector<uint8_t>> bytes;
        for (const std::string& output : command.outputs) {
            bytes[output] = bytesOf(folder_ / output);
        }
        return bytes;
    };
    const auto ofSecond = outputsOf(second);
    const auto ofFirst = outputsOf(first);
    ASSERT_NE(ofFirst, ofSecond);
    CommandSetting setting;
    setting.folder = folder_.path();
    for (int round = 0; round < kRounds; ++round) {
        restore();
        RunningCommand one(first.words, setting);
        RunningCommand other(second.words, setting);
        const auto expectWhole = [&](bool finished) {
            for (const std::string& output : first.outputs) {
                const std::vector<uint8_t> there = bytesOf(folder_ / output);
                EXPECT_TRUE(there == ofFirst.at(output) || there == ofSecond.at(output) ||
                            (!finished && there.size() == 3))
                    << output;
            }
        };
        // Not with ||: both are asked, so that none stays unended.
        for (bool bothEnded = false; !bothEnded;) {
            expectWhole(false);
            const bool oneEnded = one.hasEnded();
            bothEnded = other.hasEnded() && oneEnded;
        }
        EXPECT_EQ(one.wait().exitCode, 0);
        EXPECT_EQ(other.wait().exitCode, 0);
        expectWhole(true);
        for (const std::string& name : folder_.names()) {
            EXPECT_FALSE(name.starts_with(".kovalune-")) << name;
        }
    }
}

} // namespace
} // namespace kovalune::test
