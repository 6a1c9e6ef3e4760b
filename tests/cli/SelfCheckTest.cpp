// `kovalune selfcheck`: every instruction set of the machine, and effects from files.

#include "effect/Kovalune.h"
#include "tests/cli/ErrorCase.h"

namespace kovalune::test {
namespace {

class SelfCheck : public ErrorCase {};

TEST_F(SelfCheck, LooksAtEveryInstructionSet) {
    const CommandOutcome outcome = runHere("selfcheck", {});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    for (const std::string& set : instructionSets()) {
        EXPECT_NE(outcome.out.find('\n' + set + ' '), std::string::npos) << outcome.out;
    }
    EXPECT_NE(outcome.out.find(" 435 scenes as everywhere, "), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("Processor"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(KOVALUNE_VERSION), std::string::npos) << outcome.out;
}

TEST_F(SelfCheck, LooksAtFewerWhereItIsToBeQuick) {
    const CommandOutcome outcome = runHere("selfcheck", {"--quick"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_NE(outcome.out.find('\n' + instructionSet() + ' '), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(" 109 scenes as everywhere, "), std::string::npos) << outcome.out;
}

/// What the user has remembered is no part of it.
TEST_F(SelfCheck, TakesNoRememberedDefaults) {
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.environment = {{"XDG_CONFIG_HOME", folder_ / "config"}};
    ASSERT_EQ(runCommand({"defaults", "save", "--set", "Blur Amount=77"}, setting).exitCode, 0);
    EXPECT_EQ(runCommand({"selfcheck", "--quick"}, setting).exitCode, 0);
}

TEST_F(SelfCheck, NamesTheFirstSceneOfAnotherEffect) {
    const CommandOutcome outcome = runHere("selfcheck", {"--quick", "--plugin", KOVALUNE_TEST_EFFECT});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
    EXPECT_NE(outcome.err.find("the scene 'frame cel-1 301x203 8 smart Normal |' gives"), std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.out.find("differs: frame cel-1 "), std::string::npos) << outcome.out;
    expectFailure({"selfcheck", "--plugin", "in.png"}, 3, {"in.png"});
    expectFailure({"selfcheck", "in.png"}, 2, {"in.png"});
}

} // namespace
} // namespace kovalune::test
