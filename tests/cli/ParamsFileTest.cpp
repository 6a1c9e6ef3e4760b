// Files of parameters, through the command: what --params takes and what --print-params gives.

#include "tests/cli/ErrorCase.h"

namespace kovalune::test {
namespace {

class ParamsFile : public ErrorCase {
protected:
    std::string file(const std::string& text) const {
        writeBytes(params_, {text.begin(), text.end()});
        return params_;
    }

    /// The parameters in use, as they are printed.
    std::string printed(std::vector<std::string> words, const CommandSetting& setting = {}) const {
        words.insert(words.begin(), {"render", "--print-params"});
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return outcome.out;
    }

    std::string printedWith(const std::string& text, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words = {"--params", file(text)};
        words.insert(words.end(), more.begin(), more.end());
        return printed(words);
    }

    static bool hasLine(const std::string& text, const std::string& line) {
        return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
    }

    void expectRefused(const std::string& text, int line, const std::vector<std::string>& named) {
        std::vector<std::string> all = {"'" + params_ + "' line " + std::to_string(line) + ": "};
        all.insert(all.end(), named.begin(), named.end());
        expectFailure({"render", "in.png", "-o", "old.png", "--params", file(text)}, 2, all);
    }

    const TestFolder others_;
    const std::string params_ = others_ / "パラメータ 1.txt";
    const std::string defaults_ = printed({});
};

TEST_F(ParamsFile, SetsLabelsToValues) {
    const std::string text = printedWith("Blur Amount=2.5\nview=extract\n Color 2 = 1, 2, 3\nEnable 3=on\n"
                                         "2 : Boundary Blur=7\n1 : Enable Process=off");
    for (const char* line : {"View=Extract", "Blur Amount=2.5", "Color 2=#010203", "Enable 3=on",
                             "2 : Boundary Blur=7", "1 : Enable Process=off", "Blur Repeat Num=5"}) {
        EXPECT_TRUE(hasLine(text, line)) << line << " is not in\n" << text;
    }
}

TEST_F(ParamsFile, MayHaveAMarkBlankLinesRemarksAndAnyLineEnds) {
    EXPECT_EQ(printedWith(""), defaults_);
    EXPECT_EQ(printedWith("\xEF\xBB\xBF"), defaults_);
    EXPECT_EQ(printedWith("\r\n\n \t\n; Blur Amount=3\n  ;=\n;"), defaults_);
    const std::string three = printed({"--set", "Blur Amount=3", "--set", "Enable 2=on"});
    EXPECT_NE(three, defaults_);
    EXPECT_EQ(printedWith("\xEF\xBB\xBF"
                          "Blur Amount=3\r\n\r\nEnable 2=1\r\n"),
              three);
    EXPECT_EQ(printedWith("Enable 2=yes\nBlur Amount=3"), three);
}

TEST_F(ParamsFile, MayHaveRemarksBehindANumberSign) {
    EXPECT_EQ(printedWith("# Blur Amount=3\n  #=\n#\n#Blur Amount=4"), defaults_);
}

TEST_F(ParamsFile, MayHaveOtherBlanksAroundColons) {
    const std::string text =
        printedWith("1: Color=1,2,3\n2 :Boundary Blur=7\n3:Color.g=17\n4  :  color = #040506\n");
    for (const char* line :
         {"1 : Color=#010203", "2 : Boundary Blur=7", "3 : Color=#0311F5", "4 : Color=#040506"}) {
        EXPECT_TRUE(hasLine(text, line)) << line << " is not in\n" << text;
    }
    EXPECT_EQ(printed({"--set", "1: Color=1,2,3"}), printed({"--set", "1 : Color=1,2,3"}));
    expectRefused("1 : Color=1,2,3\n1:Color=1,2,3\n", 2, {"'1 : Color' was set in line 1"});
    expectRefused("1 Color=1,2,3\n", 1, {"'1 Color'", "'1 : Color'"});
}

TEST_F(ParamsFile, OfAnotherEncodingIsNamedSo) {
    const auto wide = [](const std::string& text, bool bigEndian) {
        std::string bytes;
        for (const char letter : text) {
            bytes += bigEndian ? std::string{'\0', letter} : std::string{letter, '\0'};
        }
        return bytes;
    };
    const auto expectNamed = [this](const std::string& text) {
        expectFailure({"render", "in.png", "-o", "old.png", "--params", file(text)}, 3,
                      {"cannot read '" + params_ + "'", "UTF-16", "UTF-8"});
    };
    const std::string text = "Blur Amount=3\r\nView=Base\r\n";
    expectNamed("\xFF\xFE" + wide(text, false));
    expectNamed("\xFE\xFF" + wide(text, true));
    expectNamed(wide(text, false));
    expectNamed(wide(text, true));
    expectRefused(std::string("Blur Amount=3") + '\0' + "0\n", 1, {"LABEL=VALUE", "\\x00"});
}

TEST_F(ParamsFile, BareCarriageReturnsAreNamed) {
    expectRefused("Blur Amount=3\rView=Base\r", 1, {"bare carriage return"});
    expectRefused("Blur Amount=3\r\n; a remark\rView=Base\r\n", 2, {"bare carriage return"});
    expectRefused("Blur Amount=3\r\r\n", 1, {"bare carriage return"});
}

TEST_F(ParamsFile, TakesTheFormOfTheDefaultsFile) {
    const std::string text =
        printedWith("[Version=1.0]\r\nView=3\r\nBlur Amount=12.500000\r\nKeep Division=0\r\n"
                    "Color 1.r=3\r\nColor 1.g=180\r\nColor 1.b=0\r\nColor 1.a=255\r\n"
                    "3 : Color.g=17\r\n2 : Keep Process=1\r\nColor 4 Range=0.000000\r\n");
    for (const char* line : {"View=Extract", "Blur Amount=12.5", "Keep Division=off", "Color 1=#03B400",
                             "2 : Keep Process=on"}) {
        EXPECT_TRUE(hasLine(text, line)) << line << " is not in\n" << text;
    }
    EXPECT_EQ(text.find(".a="), std::string::npos);
    EXPECT_EQ(printedWith("3 : Color.G=17"), printed({"--set", "3 : Color=3,17,245"}));
}

TEST_F(ParamsFile, ComesAfterTheEffectsOwnDefaultsAndBeforeTheSettingsAndTheView) {
    const TestFolder config;
    const std::filesystem::path remembered = config / "ORVEL" / "Tavik" / "Kovalune.ini";
    std::filesystem::create_directories(remembered.parent_path());
    const std::string text = "[Version=1.0]\nBlur Amount=8\nBlur Repeat Num=8\nView=5\n";
    writeBytes(remembered, {text.begin(), text.end()});
    CommandSetting setting;
    setting.environment = {{"XDG_CONFIG_HOME", config.path()}};
    const std::string all = printed({"--view", "Base", "--set", "Color 1 Range=3", "--params",
                                     file("Color 1 Range=4\nBlur Amount=4\nView=Extract\n")},
                                    setting);
    for (const char* line : {"Blur Repeat Num=5", "Blur Amount=4", "Color 1 Range=3", "View=Base"}) {
        EXPECT_TRUE(hasLine(all, line)) << line << " is not in\n" << all;
    }
}

TEST_F(ParamsFile, IsWhatIsRenderedWith) {
    const auto rendered = [this](const std::vector<std::string>& more) {
        std::vector<std::string> words = {"render", folder_ / "in.png", "-o", folder_ / "out.png"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = runCommand(words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPngFile(folder_ / "out.png").rows;
    };
    const auto set = rendered({"--view", "Extract", "--set", "Color 1=#808080", "--set", "Color 1 Range=80"});
    EXPECT_FALSE(set == rendered({"--view", "Extract"}));
    EXPECT_TRUE(set == rendered({"--params", file("View=Extract\nColor 1=#808080\nColor 1 Range=80\n")}));
}

TEST_F(ParamsFile, ThatWasPrintedReadsBackTheSame) {
    EXPECT_EQ(printedWith(defaults_), defaults_);
    const std::string mixed =
        printed({"--set", "Blur Amount=0.1", "--set", "Color 1 Range=3.1415926535897931", "--set",
                 "Color 2 Range=1e-300", "--set", "Color 3 Range=0.30000001", "--set", "Color 1=#0A0b0C",
                 "--set", "Enable 4=on", "--view", "Base"});
    for (const char* line : {"Blur Amount=0.1", "Color 1 Range=3.141592653589793", "Color 2 Range=1e-300",
                             "Color 3 Range=0.30000001", "Color 1=#0A0B0C", "Enable 4=on", "View=Base"}) {
        EXPECT_TRUE(hasLine(mixed, line)) << line << " is not in\n" << mixed;
    }
    EXPECT_EQ(printedWith(mixed), mixed);
}

TEST_F(ParamsFile, KeepsTheAlphaOfAColour) {
    const std::string text = printedWith("Color 1.a=7\nColor 1=#010203\n");
    EXPECT_TRUE(hasLine(text, "Color 1=#010203\nColor 1.a=7")) << text;
    EXPECT_EQ(printedWith("Color 1=#010203\nColor 1.a=7"), text);
    EXPECT_EQ(printedWith(text), text);
}

TEST_F(ParamsFile, SaysNothingOfWhatItCouldNotRead) {
    const std::string text = printed({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "twin=-3"});
    EXPECT_EQ(text, "[Version=1.0]\nTwin=0\ntwin=-3\n; Same=0\n; Same=0\n");
    EXPECT_EQ(printedWith(text, {"--plugin", KOVALUNE_TEST_EFFECT}), text);
}

TEST_F(ParamsFile, ErrorsNameTheFileTheLineAndTheReason) {
    expectRefused("Blur Amount=3\n\nBlur Amonut=3\n", 3, {"'Blur Amonut'", "the nearest: 'Blur Amount'"});
    expectRefused("Blur Repeat Num=0", 1, {"'Blur Repeat Num' cannot be 0", "1 to 10"});
    expectRefused("; remark\r\nBlur Amount=1000.1\r\n", 2, {"'Blur Amount' cannot be 1000.1", "0 to 1000"});
    expectRefused("Keep Division=2", 1, {"on or off", "'2'"});
    expectRefused("Color 1=#12345", 1, {"'Color 1'", "#RRGGBB"});
    expectRefused("Color 1.r=256", 1, {"'Color 1.r' cannot be 256", "0 to 255"});
    expectRefused("Color 1.b=-1", 1, {"'Color 1.b' cannot be -1"});
    expectRefused("Color 1.g=x", 1, {"'Color 1.g' takes a whole number, not 'x'"});
    expectRefused("Color 1.h=1", 1, {"no parameter is called 'Color 1.h'"});
    expectRefused("Blur Amount.r=1", 1, {"no parameter is called 'Blur Amount.r'"});
    expectRefused("View=2", 1, {"'View' cannot be '(-'"});
    expectRefused("View=99", 1, {"'View' has no choice '99'"});
    expectRefused("View=", 1, {"'View' has no choice ''"});
    expectRefused("=3", 1, {"no parameter is called ''"});
    expectRefused("Process 1=3", 1, {"'Process 1' is a group"});
    expectRefused("Blur Amount", 1, {"LABEL=VALUE", "'Blur Amount'"});
    expectRefused("[Version=3.0]\nBlur Amount=3\n", 1, {"version 3.0", "versions 1.0 and 2.0"});
    expectRefused("[Settings]\nBlur Amount=3\n", 1, {"'[Settings]'", "[Version=1.0]"});
    expectRefused(std::string("\x01\0\n", 3), 1, {"LABEL=VALUE", "\\x01\\x00"});
}

TEST_F(ParamsFile, RefusesASecondValueForALabel) {
    expectRefused("View=Base\nBlur Amount=3\nview=Base", 3, {"'View' was set in line 1 already"});
    expectRefused("Color 1.r=3\nColor 1.g=3\nColor 1.R=3\n", 3, {"'Color 1' was set in line 1 already"});
    expectRefused("Color 1.b=3\nColor 1=#000000", 2, {"'Color 1' was set in line 1 already"});
    expectRefused("Color 1=#000000\nColor 1.b=3", 2, {"'Color 1' was set in line 1 already"});
}

TEST_F(ParamsFile, ThatCannotBeReadIsAFileError) {
    const auto words = [](const std::string& name) {
        return std::vector<std::string>{"render", "in.png", "-o", "old.png", "--params", name};
    };
    expectFailure(words("missing.txt"), 3, {"'missing.txt'", "No such file"});
    expectFailure(words("."), 3, {"'.'"});
    expectFailure(words(""), 3, {"''"});
    expectFailure(words(file(std::string((std::size_t{1} << 20) + 1, '\n'))), 3, {params_, "1048576"});
    expectFailure(words("/dev/zero"), 3, {"/dev/zero", "1048576"});
    EXPECT_EQ(printedWith(std::string(std::size_t{1} << 20, '\n')), defaults_);
}

TEST_F(ParamsFile, PrintedBesideAPictureIsThereWithIt) {
    CommandSetting setting;
    setting.folder = folder_.path();
    const CommandOutcome outcome =
        runCommand({"render", "in.png", "-o", "out.png", "--print-params", "--time"}, setting);
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_TRUE(outcome.out.starts_with(defaults_ + "; reading "));
    EXPECT_EQ(printedWith(outcome.out), defaults_);
    EXPECT_EQ(readPngFile(folder_ / "out.png").width, 12U);
}

TEST_F(ParamsFile, ThatCannotBePrintedLeavesNothing) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    CommandSetting full;
    full.standardOutput = "/dev/full";
    expectFailure({"render", "in.png", "-o", "old.png", "--print-params"}, 3, {"standard output"}, full);
    expectFailure({"render", "--print-params"}, 3, {"standard output"}, full);
}

} // namespace
} // namespace kovalune::test
