// The n-th request for memory is refused, of whatever library it is, or all are from then on.

#include "tests/cli/FaultCase.h"

#include <filesystem>

namespace kovalune::test {
namespace {

#ifdef KOVALUNE_TEST_LONG
constexpr long kStep = 1;
#else
constexpr long kStep = 199; ///< of some nine thousand requests, most of them for the options' descriptions
#endif

class MemoryFault : public FaultCase {
protected:
    /// Whether the command came so far that the request was refused.
    bool refuse(const OutputCommand& command, long request, bool lasting, CommandOutcome& outcome) {
        CommandSetting setting;
        setting.environment = {{"LD_PRELOAD", KOVALUNE_TEST_MEMORY},
                               {"TEST_MEMORY_MARK", scratch_ / "mark"},
                               {"TEST_MEMORY_REQUEST", std::to_string(request)}};
        if (lasting) {
            setting.environment["TEST_MEMORY_LASTING"] = "yes";
        }
        restore();
        std::filesystem::remove(scratch_ / "mark");
        outcome = run(command.words, setting);
        SCOPED_TRACE(testing::Message() << command.words.front() << ", request " << request
                                        << (lasting ? " and all later" : ""));
        expectNothingHalf(outcome);
        return std::filesystem::exists(scratch_ / "mark");
    }

    void sweep(const OutputCommand& command, bool lasting, long first = 1, long step = kStep) {
        ASSERT_NO_FATAL_FAILURE(learn(command));
        int refusals = 0;
        for (long request = first;; request += step) {
            ASSERT_LT(request, 100000);
            CommandOutcome outcome;
            const bool wasRefused = refuse(command, request, lasting, outcome);
            refusals += outcome.exitCode >= 3 ? 1 : 0;
            if (HasFailure() || !wasRefused) {
                break;
            }
        }
        EXPECT_GT(refusals, 5) << command.words.front();
    }

    /// How many requests a command makes.
    long requestsOf(const OutputCommand& command) {
        learn(command);
        long made = 0;
        for (long step = 1L << 16; step > 0; step /= 2) {
            CommandOutcome outcome;
            made += refuse(command, made + step, false, outcome) ? step : 0;
        }
        return made;
    }

    const TestFolder scratch_;
};

TEST_F(MemoryFault, OfOneRequest) {
    for (const OutputCommand& command : outputCommands()) {
        sweep(command, false);
    }
}

/// The library for TIFF goes on without what it has found no memory for, so that a file may be whole and another one; that for
/// OpenEXR may wait for ever.
TEST_F(MemoryFault, OfEachRequestWhileAFileIsWritten) {
    struct Writing {
        OutputCommand command;
        long requests;
    };
    const Writing writings[] = {{{{"render", "in.png", "-o", "old.tif", "--quiet"}, {"old.tif"}}, 60},
                                {{{"render", "in.png", "-o", "old.exr", "--quiet"}, {"old.exr"}}, 250}};
    for (const auto& [command, ofWriting] : writings) {
        const long requests = requestsOf(command);
        ASSERT_GT(requests, ofWriting);
        sweep(command, false, requests - ofWriting, 1);
    }
}

TEST_F(MemoryFault, OfOneRequestAndAllThatFollow) {
    for (const OutputCommand& command : outputCommands()) {
        sweep(command, true);
    }
}

} // namespace
} // namespace kovalune::test
