#include "tests/cli/CommandProcess.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

bool hasLine(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

bool hasLineStarting(const std::string& text, const std::string& start) {
    return ("\n" + text).find("\n" + start) != std::string::npos;
}

TEST(ParamsCommand, ListsEveryLabelInItsGroup) {
    const CommandOutcome outcome = runCommand({"params"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_TRUE(hasLineStarting(outcome.out, "View  "));
    for (const char* group : {"Base", "Process 1", "Process 2", "Process 3", "Process 4"}) {
        EXPECT_TRUE(hasLine(outcome.out, group)) << group;
    }
    for (const char* label : {"Blur Amount", "Blur Repeat Num", "Keep Division"}) {
        EXPECT_TRUE(hasLineStarting(outcome.out, "  " + std::string(label) + "  ")) << label;
    }
    for (const char* number : {"1", "2", "3", "4"}) {
        const std::string n(number);
        for (const std::string& label : {"Enable " + n, "Color " + n, "Color " + n + " Range"}) {
            EXPECT_TRUE(hasLineStarting(outcome.out, "  " + label + "  ")) << label;
        }
        for (const char* rest : {"Enable Process", "Color", "Color Range", "Boundary Blur", "Blur Repeat Num",
                                 "Boundary Bias", "Keep Division", "Keep Process"}) {
            const std::string label = n + " : " + rest;
            EXPECT_EQ(hasLineStarting(outcome.out, "  " + label + "  "), label != "1 : Keep Process")
                << label;
        }
    }
}

TEST(ParamsCommand, ShowsKindDefaultAndWhatIsTaken) {
    const std::string text = runCommand({"params"}).out;
    EXPECT_TRUE(hasLine(text, "View                   popup         Normal   Normal, Extract, Base, Process "
                              "1, Process 2, Process 3, Process 4"));
    EXPECT_TRUE(hasLine(text, "  Blur Amount          number        10       0 to 1000"));
    EXPECT_TRUE(hasLine(text, "  Blur Repeat Num      whole number  5        1 to 10"));
    EXPECT_TRUE(hasLine(text, "  Enable 2             check box     off      on, off"));
    EXPECT_TRUE(hasLine(text, "  Color 1              colour        #03B4F5  "
                              "#RRGGBB, or red,green,blue of 0 to 255 each"));
}

TEST(ParamsCommand, ListsThoseOfAPlugInFile) {
    EXPECT_EQ(runCommand({"params", "--plugin", KOVALUNE_PLUGIN}).out, runCommand({"params"}).out);
    const CommandOutcome other = runCommand({"params", "--plugin", KOVALUNE_TEST_EFFECT});
    EXPECT_TRUE(hasLine(other.out, "Twin   whole number  0        -5 to 5")) << other.out;
    EXPECT_FALSE(hasLineStarting(other.out, "Place"));
}

TEST(ParamsCommand, ReportsAFullOutput) {
    CommandSetting setting;
    setting.standardOutput = "/dev/full";
    const CommandOutcome outcome = runCommand({"params"}, setting);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
}

TEST(ParamsCommand, VersionAndHelpGoToTheStandardOutput) {
    const CommandOutcome version = runCommand({"--version"});
    EXPECT_TRUE(version.ok());
    EXPECT_EQ(version.out, "kovalune " KOVALUNE_VERSION "\n");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--help"}, {"render", "--help"}, {"params", "--help"}}) {
        const CommandOutcome help = runCommand(words);
        EXPECT_TRUE(help.ok());
        EXPECT_TRUE(help.out.ends_with("\n"));
        EXPECT_NE(help.out.find("Example:"), std::string::npos);
    }
}

} // namespace
} // namespace kovalune::test
