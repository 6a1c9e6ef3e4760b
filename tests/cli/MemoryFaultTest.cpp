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
    void sweep(const OutputCommand& command, bool lasting) {
        ASSERT_NO_FATAL_FAILURE(learn(command));
        CommandSetting setting;
        setting.environment = {{"LD_PRELOAD", KOVALUNE_TEST_MEMORY}, {"TEST_MEMORY_MARK", scratch_ / "mark"}};
        if (lasting) {
            setting.environment["TEST_MEMORY_LASTING"] = "yes";
        }
        int refusals = 0;
        for (long request = 1;; request += kStep) {
            ASSERT_LT(request, 100000);
            restore();
            std::filesystem::remove(scratch_ / "mark");
            setting.environment["TEST_MEMORY_REQUEST"] = std::to_string(request);
            const CommandOutcome outcome = run(command.words, setting);
            SCOPED_TRACE(testing::Message() << command.words.front() << ", request " << request
                                            << (lasting ? " and all later" : ""));
            expectNothingHalf(outcome);
            refusals += outcome.exitCode >= 3 ? 1 : 0;
            if (HasFailure() || !std::filesystem::exists(scratch_ / "mark")) {
                break;
            }
        }
        EXPECT_GT(refusals, 5) << command.words.front();
    }

    const TestFolder scratch_;
};

TEST_F(MemoryFault, OfOneRequest) {
    for (const OutputCommand& command : outputCommands()) {
        sweep(command, false);
    }
}

TEST_F(MemoryFault, OfOneRequestAndAllThatFollow) {
    for (const OutputCommand& command : outputCommands()) {
        sweep(command, true);
    }
}

} // namespace
} // namespace kovalune::test
