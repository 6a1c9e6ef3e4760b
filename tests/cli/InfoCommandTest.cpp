#include "tests/cli/ErrorCase.h"

#include "cli/text/EffectFlags.h"
#include "hostapi/Constants.h"

namespace kovalune::test {

using namespace cli;

namespace {

void expectLines(const std::string& text, const std::vector<std::string>& lines) {
    std::string all = "\n";
    for (const std::string& line : lines) {
        all += line + '\n';
    }
    EXPECT_NE(("\n" + text).find(all), std::string::npos) << all << "is not in\n" << text;
}

TEST(InfoCommand, TellsWhatTheEffectSaysOfItself) {
    const CommandOutcome outcome = runCommand({"info"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_TRUE(outcome.out.starts_with("Effect          built in\nAbout           Kovalune 1.0.1 Release\n"))
        << outcome.out;
    expectLines(
        outcome.out,
        {"Effect version  1.0.1 release, build 8 (0x00080E08)", //
         "Out flags       0x06000070", "                PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING",
         "                PF_OutFlag_I_DO_DIALOG", //
         "                PF_OutFlag_USE_OUTPUT_EXTENT", "                PF_OutFlag_DEEP_COLOR_AWARE",
         "                PF_OutFlag_SEND_UPDATE_PARAMS_UI", "Out flags 2     0x00001419",
         "                PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS",
         "                PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG",
         "                PF_OutFlag2_I_AM_THREADSAFE", "                PF_OutFlag2_SUPPORTS_SMART_RENDER",
         "                PF_OutFlag2_FLOAT_COLOR_AWARE",
         "Depths          8, 16, 32 (float) bits a channel", //
         "Smart render    yes",                              //
         "Command version " KOVALUNE_VERSION});
}

TEST(InfoCommand, TellsWhatTheBuildRunsOn) {
    const std::string text = runCommand({"info"}).out;
    for (const char* start :
         {"\nCompiler        ", "\nBuild type      ", "\nLibraries       libpng 1.",
          "\n                libtiff 4.", "\n                OpenEXR 3.", "\n                libwebp 1.",
          "\n                libjpeg ", "\n                stb_image 2.", "\nSystem          Linux ",
          "\nProcessor       ", "\nInstructions    ", "\nThreads         "}) {
        EXPECT_NE(text.find(start), std::string::npos) << start << " is not in\n" << text;
    }
}

TEST(InfoCommand, ShowsAnEffectsTextLineByLineWithoutControlBytes) {
    const CommandOutcome outcome = runCommand({"info", "--plugin", KOVALUNE_JSON_EFFECT});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    expectLines(outcome.out, {"Effect          " KOVALUNE_JSON_EFFECT,               //
                              "About           First",                               //
                              "                second",                              //
                              "                third \\x83",                         //
                              "                \\tfourth",                           //
                              "Effect version  12.3.4 beta, build 511 (0x0421A5FF)", //
                              "Out flags       0x00000408",                          //
                              "                0x00000008",                          //
                              "                PF_OutFlag_PIX_INDEPENDENT",          //
                              "Out flags 2     0x00000000",                          //
                              "Depths          8 bits a channel",                    //
                              "Smart render    no"});
}

TEST(InfoCommand, VersionsHaveEveryStage) {
    EXPECT_EQ(versionText(PF_VERSION(1, 2, 3, PF_Stage_DEVELOP, 0)), "1.2.3 development, build 0");
    EXPECT_EQ(versionText(PF_VERSION(127, 15, 15, PF_Stage_ALPHA, 1)), "127.15.15 alpha, build 1");
    EXPECT_EQ(versionText(PF_VERSION(8, 0, 0, PF_Stage_RELEASE, 511)), "8.0.0 release, build 511");
}

using InfoError = ErrorCase;

TEST_F(InfoError, HasItsExitCode) {
    CommandSetting setting;
    expectFailure({"info", "--plugin", "missing.so"}, 3, {"'missing.so'"});
    setting.environment = {{"TEST_EFFECT", "setup"}};
    expectFailure({"info", "--plugin", KOVALUNE_TEST_EFFECT}, 4, {"set-up", "512"}, setting);
    expectFailure({"info", "more"}, 2, {"more"});
    CommandSetting full;
    full.standardOutput = "/dev/full";
    expectFailure({"info"}, 3, {"standard output"}, full);
}

} // namespace
} // namespace kovalune::test
