// The user's remembered defaults as the command meets them: sound, unfit to be chosen, or damaged.

#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <sstream>

namespace kovalune::test {

namespace {

class RememberedDefaults : public ErrorCase {
protected:
    RememberedDefaults() {
        std::filesystem::create_directories(file().parent_path());
        setting_.environment = {{"XDG_CONFIG_HOME", config_.path()}};
    }

    std::filesystem::path file() const { return config_ / "ORVEL" / "Tavik" / "Kovalune.ini"; }

    void remember(const std::string& text) const { writeBytes(file(), {text.begin(), text.end()}); }

    /// Kind, default and range of each label, without the blanks between.
    std::string defaults() const {
        const CommandOutcome outcome = runCommand({"params"}, setting_);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        std::string text = outcome.out;
        text.erase(std::unique(text.begin(), text.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
                   text.end());
        return text;
    }

    bool shows(const std::string& cells) const { return defaults().find(cells + ' ') != std::string::npos; }

    std::vector<uint8_t> rendered(const std::vector<std::string>& more = {}) {
        std::vector<std::string> words = {"render", "in.png", "-o", "out.png"};
        words.insert(words.end(), more.begin(), more.end());
        CommandSetting setting = setting_;
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return outcome.ok() ? readPngFile(folder_ / "out.png").rows : std::vector<uint8_t>{};
    }

    /// As if nothing were remembered.
    void expectTableDefaults() {
        EXPECT_EQ(defaults(), plainDefaults_);
        EXPECT_TRUE(rendered() == rendered({"--set", "Blur Amount=10", "--view", "Normal"}));
    }

    /// What the command, run in the folder, says of remembered defaults beside its result.
    std::string told(const std::vector<std::string>& words) {
        CommandSetting setting = setting_;
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        std::istringstream notes(outcome.notes);
        std::string told;
        for (std::string line; std::getline(notes, line);) {
            told += line.find("remembered") == std::string::npos ? "" : line + '\n';
        }
        return told;
    }

    const TestFolder config_;
    CommandSetting setting_;
    const std::string plainDefaults_ = defaults();
};

TEST_F(RememberedDefaults, AreTheDefaultsOfTheCommand) {
    remember("[Version=1.0]\r\nView=3\r\nBlur Amount=2.5\r\n");
    EXPECT_TRUE(shows("View popup Extract"));
    EXPECT_TRUE(shows("Blur Amount number 2.5"));
    EXPECT_TRUE(rendered() == rendered({"--view", "Extract", "--set", "Blur Amount=2.5"}));
}

TEST_F(RememberedDefaults, ThatCannotBeChosenAreRefusedUntilOverruled) {
    remember("[Version=1.0]\r\nView=2\r\n");
    const std::vector<std::string> named = {"'View' cannot be", "'(-'", "remembered default", "--view",
                                            "Normal, Extract, Base"};
    expectFailure({"render", "in.png", "-o", "old.png"}, 2, named, setting_);
    expectFailure({"render", "in.png", "-o", "old.png", "--set", "Blur Amount=3"}, 2, named, setting_);
    const std::vector<uint8_t> extract = rendered({"--view", "Extract"});
    EXPECT_TRUE(rendered({"--set", "View=Extract"}) == extract);
}

TEST_F(RememberedDefaults, ThatCannotBeChosenAreShownAsSuch) {
    remember("[Version=1.0]\r\nView=2\r\n");
    EXPECT_TRUE(shows("View popup (- (cannot be chosen)"));
    remember("[Version=1.0]\r\nView=5\r\n");
    EXPECT_TRUE(shows("View popup Process 1"));
    EXPECT_FALSE(shows("cannot be chosen"));
    EXPECT_EQ(plainDefaults_.find("cannot be chosen"), std::string::npos);
}

TEST_F(RememberedDefaults, OfADamagedFileAreReadWhereTheyCanBe) {
    remember(
        "View=3\n=\n[\n[[]\n[Version=1.0\nView=3\n[Version=1.0]\r\n\r=7\nBlur Amount\nBlur Repeat Num = 7 x\n"
        "Color 1.r=\nEnable 2=99999999999999999999\nColor 2 Range=1e999\nColor 3 Range=-5\nView=");
    EXPECT_TRUE(shows("View popup Normal"));
    EXPECT_TRUE(shows("Blur Amount number 10"));
    EXPECT_TRUE(shows("Blur Repeat Num whole number 7"));
    EXPECT_TRUE(shows("Color 3 Range number 0"));
    EXPECT_FALSE(rendered().empty());
}

TEST_F(RememberedDefaults, OutsideTheirRangeDoNotPassIt) {
    remember("[Version=1.0]\nView=4000\nBlur Repeat Num=-2000000000\nBlur Amount=123456\n");
    EXPECT_TRUE(shows("Blur Repeat Num whole number 1"));
    EXPECT_TRUE(shows("Blur Amount number 1000"));
    EXPECT_FALSE(rendered({"--view", "Base"}).empty());
}

TEST_F(RememberedDefaults, BehindAFolderInTheirPlaceAreTheTables) {
    std::filesystem::create_directory(file());
    expectTableDefaults();
}

TEST_F(RememberedDefaults, OfABinaryFileAreTheTables) {
    std::string bytes;
    uint32_t state = 1;
    for (int i = 0; i < 100000; ++i) {
        state = state * 1664525U + 1013904223U;
        bytes += static_cast<char>(state >> 24);
    }
    remember(bytes);
    expectTableDefaults();
}

TEST_F(RememberedDefaults, OfAHugeFileAreReadAsFarAsTheyCanBe) {
    const std::string filler(std::size_t{30} << 20, 'x');
    remember(filler + "\n[Version=1.0]\nBlur Amount=3\n");
    expectTableDefaults();
    remember("[Version=1.0]\nBlur Amount=3\n" + filler);
    EXPECT_TRUE(shows("Blur Amount number 3"));
    EXPECT_TRUE(rendered() == rendered({"--set", "Blur Amount=3"}));
}

TEST_F(RememberedDefaults, AreOutOfSightForFactoryDefaults) {
    const auto printed = [this](const std::vector<std::string>& more) {
        std::vector<std::string> words = {"render", "--print-params"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = runCommand(words, setting_);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return outcome.out;
    };
    const std::string table = printed({});
    remember("[Version=1.0]\r\nView=3\r\nBlur Amount=2.5\r\nColor 1.r=9\r\n");
    for (const std::vector<std::string>& plugin :
         {std::vector<std::string>{}, std::vector<std::string>{"--plugin", KOVALUNE_PLUGIN}}) {
        std::vector<std::string> words = plugin;
        EXPECT_NE(printed(words), table);
        EXPECT_NE(printed(words).find("Blur Amount=2.5\n"), std::string::npos);
        words.emplace_back("--factory");
        EXPECT_EQ(printed(words), table);
    }
    EXPECT_TRUE(rendered({"--factory"}) ==
                rendered({"--view", "Normal", "--set", "Blur Amount=10", "--set", "Color 1=#03B4F5"}));
    remember("[Version=1.0]\r\nView=2\r\n");
    EXPECT_FALSE(rendered({"--factory"}).empty());
}

TEST_F(RememberedDefaults, AreToldWithTheirFileWhereTheyCount) {
    const std::string line = "kovalune: note: the defaults remembered in '" + file().string() +
                             "' count here; --factory leaves them out\n";
    const std::vector<std::vector<std::string>> commands = {
        {"render", "in.png", "-o", "out.png"},
        {"render", "--print-params"},
        {"render", "--print-params", "--plugin", KOVALUNE_PLUGIN},
        {"sheet", "in.png", "-o", "out.png"},
        {"params"},
        {"params", "--json"}};
    for (const std::vector<std::string>& words : commands) {
        EXPECT_EQ(told(words), "");
    }
    remember("[Version=1.0]\nBlur Amount=2.5\n");
    for (const std::vector<std::string>& words : commands) {
        EXPECT_EQ(told(words), line) << words.front();
        std::vector<std::string> factory = words;
        factory.emplace_back("--factory");
        EXPECT_EQ(told(factory), "") << words.front();
    }
}

TEST_F(RememberedDefaults, AreNotToldWhereTheyChangeNothing) {
    remember("[Version=1.0]\nView=3\nBlur Amount=10\nColor 1.r=3\n");
    EXPECT_EQ(told({"sheet", "in.png", "-o", "out.png"}), "");
    EXPECT_EQ(told({"render", "--print-params", "--view", "Base"}), "");
    EXPECT_NE(told({"render", "--print-params"}), "");
    EXPECT_EQ(told({"render", "in.png", "-o", "out.png", "--quiet"}), "");
    EXPECT_EQ(told({"defaults", "save", "--view", "Base"}), "");
    EXPECT_EQ(told({"defaults", "show"}), "");
}

TEST_F(RememberedDefaults, DoNotCountBehindAFileOfParameters) {
    const auto printed = [this](const std::vector<std::string>& more) {
        std::vector<std::string> words = {"render", "--print-params"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = runCommand(words, setting_);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return outcome.out;
    };
    const TestFolder others;
    const std::string params = others / "a.params";
    const std::string text = "Blur Amount=4\n";
    writeBytes(params, {text.begin(), text.end()});
    const std::string alone = printed({"--params", params});
    remember("[Version=1.0]\nView=3\nBlur Amount=2.5\nBlur Repeat Num=8\n");
    EXPECT_EQ(printed({"--params", params}), alone);
    EXPECT_EQ(printed({"--params", params, "--factory"}), alone);
    remember("[Version=1.0]\nView=2\n");
    EXPECT_EQ(printed({"--params", params}), alone);
}

} // namespace
} // namespace kovalune::test
