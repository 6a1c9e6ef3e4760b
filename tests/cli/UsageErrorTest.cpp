#include "tests/cli/ErrorCase.h"

#include <algorithm>

namespace kovalune::tests {
namespace {

class UsageError : public ErrorCase {
protected:
    void expectRefused(const std::vector<std::string>& options, const std::vector<std::string>& named) {
        std::vector<std::string> words = {"render", "in.png", "-o", "old.png"};
        words.insert(words.end(), options.begin(), options.end());
        expectFailure(words, 2, named);
    }
};

TEST_F(UsageError, CommandLinesOfWrongForm) {
    expectFailure({}, 2, {"subcommand"});
    expectFailure({"rendr", "in.png"}, 2, {"'rendr'"});
    expectFailure({"render", "in.png"}, 2, {"--output"});
    expectFailure({"render", "-o", "new.png"}, 2, {"INPUT"});
    expectRefused({"--bogus"}, {"--bogus"});
    expectRefused({"more.png"}, {"more.png"});
    expectRefused({"two\nlines"}, {"two"});
    expectRefused({"--threads", "65"}, {"--threads", "1", "64"});
    expectRefused({"--threads", "many"}, {"--threads"});
}

TEST_F(UsageError, UnknownLabelsNameTheNearest) {
    expectRefused({"--set", "Blur Amont=3"}, {"'Blur Amont'", "'Blur Amount'"});
    expectRefused({"--set", "Colour 2=#000000"}, {"'Colour 2'", "'Color 2'"});
    expectRefused({"--set", "=3"}, {"''"});
}

TEST_F(UsageError, SettingsWithoutAValue) {
    expectRefused({"--set", "Blur Amount"}, {"LABEL=VALUE", "'Blur Amount'"});
    expectRefused({"--set", "Blur Amount="}, {"'Blur Amount'", "a number"});
}

TEST_F(UsageError, GroupsHaveNoValue) {
    expectRefused({"--set", "base=1"}, {"'Base' is a group"});
    expectRefused({"--set", "Process 1=1"}, {"'Process 1' is a group"});
}

TEST_F(UsageError, ValuesOutsideTheValidRange) {
    expectRefused({"--set", "Blur Amount=1000.5"}, {"'Blur Amount'", "1000.5", "0 to 1000"});
    expectRefused({"--set", "Blur Repeat Num=0"}, {"'Blur Repeat Num'", " 0:", "1 to 10"});
    expectRefused({"--set", "Color 1=0,0,256"}, {"'Color 1'", "0,0,256", "0 to 255"});
}

TEST_F(UsageError, ValuesOfWrongForm) {
    expectRefused({"--set", "Blur Amount=1,5"}, {"'Blur Amount'", "'1,5'"});
    expectRefused({"--set", "Blur Repeat Num=2.5"}, {"'Blur Repeat Num'", "'2.5'"});
    expectRefused({"--set", "Enable 1=maybe"}, {"'Enable 1'", "'maybe'", "on or off"});
    expectRefused({"--set", "Color 1=#12345"}, {"'Color 1'", "'#12345'", "#RRGGBB"});
    expectRefused({"--set", "Color 1=\n"}, {"'\\n'"});
}

TEST_F(UsageError, ViewsThatCannotBeChosen) {
    expectRefused({"--view", "Basis"}, {"'View'", "'Basis'", "Normal, Extract, Base"});
    expectRefused({"--view", "2"}, {"'View'", "'(-'", "separates"});
    expectRefused({"--set", "View=(-"}, {"'View'", "'(-'", "separates"});
    expectRefused({"--view", "9"}, {"'View'", "'9'"});
}

TEST_F(UsageError, LabelsThatSeveralParametersHave) {
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "TWIN=1"}, {"'TWIN'", "2 parameters"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "Same=1"}, {"'Same'", "2 parameters"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "Place=1"}, {"'Place'", "cannot be set"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--view", "Base"}, {"'View'"});
}

// Two texts of the user in one message, and what the command itself says about them.
TEST_F(UsageError, LongTextsAreCut) {
    const std::string longText(5000, 'x');
    writeBytes(folder_ / "long.params", {longText.begin(), longText.end()});
    std::string folders = ".";
    for (int i = 0; i < 500; ++i)
        folders += "/.";
    const std::vector<std::vector<std::string>> commands = {
        {longText},
        {"render", "in.png", "-o", "old.png", "--" + longText},
        {"render", "in.png", "-o", "old.png", longText},
        {"render", "in.png", "-o", "old.png", "--threads", longText},
        {"render", "in.png", "-o", "old.png", "--depth", longText},
        {"render", "in.png", "-o", "old.png", "--alpha", longText},
        {"render", "in.png", "-o", "old.png", "--downsample", longText},
        {"render", "in.png", "-o", "old.png", "--quiet=" + longText},
        {"render", "in.png", "-o", "old.png", "--set", longText},
        {"render", "in.png", "-o", "old.png", "--set", longText + "=3"},
        {"render", "in.png", "-o", "old.png", "--set", "Blur Amount=" + longText},
        {"render", "in.png", "-o", "old.png", "--set", "Blur Amount=1" + std::string(5000, '0')},
        {"render", "in.png", "-o", "old.png", "--view", longText},
        {"render", "in.png", "-o", "old.png", "--params", folders + "/long.params"},
        {"render", "in.png", "-o", "old.png", "--plugin", folders + "/in.png"},
        {"render", longText, "-o", "old.png"},
        {"render", "in.png", "-o", longText + ".png"},
        {"render", "in.png", "-o", longText + '/' + longText + ".png"},
        {"pick", "in.png", longText},
        {"defaults", longText}};
    CommandSetting setting;
    setting.folder = folder_.path();
    for (const std::vector<std::string>& words : commands) {
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_NE(outcome.exitCode, 0);
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_LT(outcome.err.size(), 700U) << outcome.err;
        const auto isOfTheUser = [](char letter) { return letter == 'x' || letter == '0' || letter == '/'; };
        EXPECT_LE(std::count_if(outcome.err.begin(), outcome.err.end(), isOfTheUser), 310) << outcome.err;
    }
}

} // namespace
} // namespace kovalune::tests
