// `kovalune defaults` as a user runs it: the file that it writes and deletes, and what the other commands make of it.

#include "tests/cli/ErrorCase.h"
#include "text/MessageText.h"

namespace kovalune::test {

using namespace text;

namespace {

class DefaultsCommand : public ErrorCase {
protected:
    DefaultsCommand() { setting_.environment = {{"XDG_CONFIG_HOME", config_.path()}}; }

    std::filesystem::path file() const { return config_ / "ORVEL" / "Tavik" / "Kovalune.ini"; }

    std::string done(const std::vector<std::string>& words) const {
        const CommandOutcome outcome = runCommand(words, setting_);
        EXPECT_TRUE(outcome.ok()) << outcome.exitCode << ' ' << outcome.err;
        return outcome.out;
    }
    std::string content() const {
        const std::vector<uint8_t> bytes = bytesOf(file());
        return {bytes.begin(), bytes.end()};
    }
    void remember(const std::string& text) const {
        std::filesystem::create_directories(file().parent_path());
        writeBytes(file(), {text.begin(), text.end()});
    }
    std::string heading() const { return "; " + file().string() + '\n'; }

    const TestFolder config_;
    CommandSetting setting_;
};

TEST_F(DefaultsCommand, SaveMakesTheValuesThoseOfEveryNewInstance) {
    EXPECT_EQ(
        done({"defaults", "save", "--set", "Blur Amount=12.5", "--set", "Color 1=#F0C8A0", "--view", "Base"}),
        "saved " + file().string() + '\n');
    EXPECT_TRUE(
        content().starts_with("[Version=1.0]\r\nView=4\r\nBlur Amount=12.500000\r\nBlur Repeat Num=5\r\n"))
        << content();
    const std::string params = done({"render", "--print-params", "--quiet"});
    for (const char* line :
         {"View=Base\n", "Blur Amount=12.5\n", "Color 1=#F0C8A0\n", "Blur Repeat Num=5\n"}) {
        EXPECT_NE(params.find(line), std::string::npos) << line;
    }
    const std::string version = "[Version=1.0]\n";
    ASSERT_TRUE(params.starts_with(version));
    EXPECT_EQ(done({"defaults", "show"}), heading() + params.substr(version.size()));
}

TEST_F(DefaultsCommand, SaveKeepsWhatWasRememberedUnlessToldOtherwise) {
    remember("; mine\r\n[Version=1.0]\r\nBlur Amount=7.5\r\n");
    done({"defaults", "save", "--set", "Enable 2=on"});
    EXPECT_TRUE(content().starts_with("; mine\r\n[Version=1.0]\r\nBlur Amount=7.500000\r\n")) << content();
    EXPECT_NE(content().find("\r\nEnable 2=1\r\n"), std::string::npos);
    done({"defaults", "save", "--factory", "--set", "Enable 3=on"});
    EXPECT_TRUE(content().starts_with("; mine\r\n[Version=1.0]\r\nBlur Amount=10.000000\r\n")) << content();
    EXPECT_NE(content().find("\r\nEnable 2=0\r\n"), std::string::npos);
    EXPECT_NE(content().find("\r\nEnable 3=1\r\n"), std::string::npos);
}

TEST_F(DefaultsCommand, SaveTakesAFileOfParameters) {
    remember("[Version=1.0]\r\nBlur Amount=7.5\r\n");
    const std::string text = "View=Extract\nBlur Repeat Num=2\n";
    writeBytes(folder_ / "some.params", {text.begin(), text.end()});
    done({"defaults", "save", "--params", (folder_ / "some.params").string(), "--set", "Blur Repeat Num=3"});
    EXPECT_NE(content().find("\r\nView=3\r\n"), std::string::npos);
    EXPECT_NE(content().find("\r\nBlur Amount=10.000000\r\n"), std::string::npos);
    EXPECT_NE(content().find("\r\nBlur Repeat Num=3\r\n"), std::string::npos);
}

TEST_F(DefaultsCommand, SaveRefusesWhatTheEffectDoesNotTakeAndWritesNothing) {
    for (const char* setting : {"Blur=3", "Blur Amount=x", "Blur Amount=1001", "View=(-", "Blur Amount"}) {
        expectFailure({"defaults", "save", "--set", setting}, 2, {}, setting_);
    }
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(DefaultsCommand, SaveNamesTheFileThatCannotBeWritten) {
    std::filesystem::create_directories(file());
    expectFailure({"defaults", "save"}, 3, {"cannot write '" + file().string() + "': Is a directory\n"},
                  setting_);
    expectFailure({"defaults", "forget"}, 3, {"cannot delete", file().string()}, setting_);
    EXPECT_TRUE(std::filesystem::is_directory(file()));
}

TEST_F(DefaultsCommand, SaveGivesTheSystemsReasonAndLeavesNoFolder) {
    setting_.mostFileBytes = 300; // the first values fit, and so does the message
    expectFailure({"defaults", "save"}, 3, {"cannot write", "Kovalune.ini': File too large\n"}, setting_);
    EXPECT_TRUE(config_.names().empty());
    std::filesystem::create_directory(config_ / "ORVEL"); // somebody's, and it stays
    expectFailure({"defaults", "save"}, 3, {"cannot write"}, setting_);
    EXPECT_EQ(config_.names(), std::vector<std::string>{"ORVEL"});
    EXPECT_TRUE(std::filesystem::is_empty(config_ / "ORVEL"));
    setting_.mostFileBytes = 0;
    std::filesystem::remove(config_ / "ORVEL");
    writeBytes(config_ / "ORVEL", oldBytes());
    expectFailure({"defaults", "save"}, 3, {"Kovalune.ini': Not a directory\n"}, setting_);
    EXPECT_EQ(bytesOf(config_ / "ORVEL"), oldBytes());
    setting_.environment["XDG_CONFIG_HOME"] = "/proc/settings";
    expectFailure({"defaults", "save"}, 3, {"/Kovalune.ini': No such file or directory\n"}, setting_);
}

TEST_F(DefaultsCommand, SaveThatFailsLeavesWhatHadTheName) {
    std::filesystem::create_directories(file().parent_path());
    std::filesystem::create_symlink(config_.path(), file());
    expectFailure({"defaults", "save"}, 3, {"cannot write '" + file().string() + "': Is a directory\n"},
                  setting_);
    EXPECT_TRUE(std::filesystem::is_symlink(file()));
}

TEST_F(DefaultsCommand, SaveLeavesAWriteProtectedFileAlone) {
    done({"defaults", "save"});
    const std::string before = content();
    std::filesystem::permissions(file(), std::filesystem::perms(0444));
    expectFailure({"defaults", "save", "--set", "Blur Amount=3"}, 3,
                  {"cannot write '" + file().string() + "': it is write-protected\n"}, setting_);
    EXPECT_EQ(content(), before);
}

TEST_F(DefaultsCommand, SaveLeavesAFileAloneThatIsTooLarge) {
    const std::string huge(std::size_t{1} << 20, 'x');
    remember(huge);
    expectFailure({"defaults", "save"}, 3, {"cannot write", "': File too large\n"}, setting_);
    EXPECT_TRUE(content() == huge);
}

TEST_F(DefaultsCommand, ForgetDeletesTheFileAndSaysWhetherThereWasOne) {
    done({"defaults", "save"});
    EXPECT_EQ(done({"defaults", "forget"}), "deleted " + file().string() + '\n');
    EXPECT_TRUE(std::filesystem::is_empty(config_.path()));
    EXPECT_EQ(done({"defaults", "forget"}), "nothing is remembered: there is no " + file().string() + '\n');
    EXPECT_TRUE(std::filesystem::is_empty(config_.path()));
}

TEST_F(DefaultsCommand, ForgetKeepsTheFoldersOfOthers) {
    done({"defaults", "save"});
    writeBytes(file().parent_path() / "other.ini", oldBytes());
    done({"defaults", "forget"});
    EXPECT_EQ(bytesOf(file().parent_path() / "other.ini"), oldBytes());
}

TEST_F(DefaultsCommand, ShowPrintsWhatTheFileHoldsAlone) {
    EXPECT_EQ(done({"defaults", "show"}), heading() + "; nothing is remembered\n");
    EXPECT_FALSE(std::filesystem::exists(file()));
    remember("[Version=0.9]\r\nView=3\r\n[Version=1.0]\r\nBlur Repeat Num=3\r\nColor 2.g=9\r\nodd=1\r\n");
    EXPECT_EQ(done({"defaults", "show"}), heading() + "Blur Repeat Num=3\nColor 2=#0309F5\n");
}

TEST_F(DefaultsCommand, ShowPrintsValuesAsTheyCount) {
    remember("[Version=1.0]\nView=2\nBlur Amount=123456\nBlur Repeat Num=x\n");
    EXPECT_EQ(done({"defaults", "show"}), heading() + "; View=(-\nBlur Amount=1000\nBlur Repeat Num=1\n");
}

TEST_F(DefaultsCommand, ShowIsAFileOfParameters) {
    done({"defaults", "save", "--set", "Blur Amount=3.5", "--set", "Color 4=1,2,3"});
    const std::string shown = done({"defaults", "show"});
    writeBytes(folder_ / "shown.params", {shown.begin(), shown.end()});
    const std::string params = done({"render", "--print-params", "--quiet"});
    EXPECT_EQ(
        done({"render", "--print-params", "--factory", "--params", (folder_ / "shown.params").string()}),
        params);
}

TEST_F(DefaultsCommand, TellsWhereThereIsNoPlaceForSettings) {
    setting_.environment["XDG_CONFIG_HOME"] = "/" + std::string(250, 'x');
    for (const char* action : {"save", "forget", "show"}) {
        expectFailure({"defaults", action}, 3, {"folder for settings"}, setting_);
    }
}

TEST_F(DefaultsCommand, WrongUsageIsNamed) {
    expectFailure({"defaults"}, 2, {"ACTION"}, setting_);
    expectFailure({"defaults", "sav"}, 2, {"'sav'", "save"}, setting_);
    expectFailure({"defaults", "save", "forget"}, 2, {"forget"}, setting_);
    expectFailure({"defaults", "save", "--plugin", "x.so"}, 2, {"'--plugin'"}, setting_);
    for (const char* action : {"forget", "show"}) {
        expectFailure({"defaults", action, "--set", "Blur Amount=3"}, 2, {"only save"}, setting_);
        expectFailure({"defaults", action, "--factory"}, 2, {"only save"}, setting_);
        expectFailure({"defaults", action, "--params", "x"}, 2, {"only save"}, setting_);
        expectFailure({"defaults", action, "--view", "Base"}, 2, {"only save"}, setting_);
    }
    EXPECT_NE(done({"defaults", "--help"}).find("Example:\n  kovalune defaults save "), std::string::npos);
}

} // namespace
} // namespace kovalune::test
