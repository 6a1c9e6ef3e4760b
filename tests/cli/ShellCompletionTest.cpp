// The completions for zsh and fish: what they offer is what the command takes.

#include "tests/cli/CommandHelp.h"
#include "tests/cli/CommandProcess.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kovalune::test {
namespace {

using Words = std::vector<std::string>;

/// Asks a shell for what it offers, one a line. Gets the completion, the line up to the cursor and the command.
struct Shell {
    const char* name;
    const char* completion;
    const char* option; ///< for a shell without the user's own settings
    const char* script;
};

// What zsh's own functions for completion do with what they are given, on a line without quotes.
constexpr char kZsh[] = R"(
compadd() {
    local word
    local -a list
    while [[ $1 == -* ]]; do
        case $1 in
            -a) shift; list=("${(@P)1}") ;;
            -d | -S) shift ;;
        esac
        shift
    done
    for word in "${list[@]}" "$@"; do
        [[ -n $word && ( -z $list || $word != $1 ) && $word == "$PREFIX"* ]] && print -r -- "$word"
    done
}
compset() { PREFIX=${PREFIX#*=} }
_files() {
    setopt localoptions extendedglob nullglob
    local pattern='*'
    [[ $1 == -g ]] && pattern=$2
    local file
    for file in ${~pattern} *(-/); do
        [[ $file == "$PREFIX"* ]] && print -r -- "$file"
    done
}
words=("${(@Q)${(z)2}}")
[[ $2 == *[^\\]\  ]] && words+=('')
CURRENT=${#words}
PREFIX=${words[-1]}
words[1]=$3
source "$1"
)";

constexpr char kFish[] = R"(
source $argv[1]
set -l line (string replace -r '^kovalune' $argv[3] -- $argv[2])
# The descriptions stand behind a tab.
complete -C $line | string replace -r '\t.*' ''
)";

constexpr Shell kShells[] = {{"zsh", KOVALUNE_COMPLETIONS "/kovalune.zsh", "-f", kZsh},
                             {"fish", KOVALUNE_COMPLETIONS "/kovalune.fish", "--no-config", kFish}};

std::string programOf(const Shell& shell) {
    for (const char* folder : {"/usr/bin/", "/bin/", "/usr/local/bin/"}) {
        if (std::filesystem::exists(folder + std::string(shell.name))) {
            return folder + std::string(shell.name);
        }
    }
    return {};
}

class ShellCompletion : public testing::TestWithParam<Shell> {
protected:
    void SetUp() override {
        program_ = programOf(GetParam());
        const char* const isCi = std::getenv("CI");
        if (program_.empty() && isCi != nullptr && std::string(isCi) == "true") {
            FAIL() << GetParam().name << " is not installed";
        }
        if (program_.empty()) {
            GTEST_SKIP() << GetParam().name << " is not installed";
        }
    }

    /// Sorted.
    Words offered(const std::string& line) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.program = program_;
        setting.environment = {{"LC_ALL", "C.UTF-8"}, {"HOME", scratch_.path().string()}, {"TERM", "dumb"}};
        const std::string script = (scratch_ / "script").string();
        std::ofstream(script) << GetParam().script;
        const CommandOutcome outcome =
            runCommand({GetParam().option, script, GetParam().completion, line, KOVALUNE_COMMAND}, setting);
        EXPECT_EQ(outcome.err, "") << line;
        std::istringstream lines(outcome.out);
        Words words;
        for (std::string word; std::getline(lines, word);) {
            words.push_back(word.ends_with('/') ? word.substr(0, word.size() - 1) : word);
        }
        std::sort(words.begin(), words.end());
        return words;
    }

    const TestFolder folder_;
    const TestFolder scratch_;
    std::string program_;
};

TEST_P(ShellCompletion, OffersTheSubCommands) {
    EXPECT_EQ(offered("kovalune "), subCommands());
    EXPECT_EQ(offered("kovalune p"), (Words{"params", "pick"}));
    EXPECT_EQ(offered("kovalune zqj"), Words{}); // fish offers what has the letters anywhere
    EXPECT_EQ(offered("kovalune help "), subCommands());
    EXPECT_EQ(offered("kovalune -"), optionsOf());
}

TEST_P(ShellCompletion, OffersTheOptionsOfEverySubCommandAndNoOther) {
    for (const std::string& command : subCommands()) {
        EXPECT_EQ(offered("kovalune " + command + " -"), optionsOf(command)) << command;
    }
    EXPECT_EQ(offered("kovalune render --pa"), (Words{"--params", "--part", "--pass"}));
}

TEST_P(ShellCompletion, OffersTheValuesOfOptions) {
    EXPECT_EQ(offered("kovalune render --alpha "), (Words{"premultiplied", "straight"}));
    EXPECT_EQ(offered("kovalune pick --alpha s"), (Words{"straight"}));
    EXPECT_EQ(offered("kovalune sheet --depth "), (Words{"16", "32", "8", "auto"}));
    EXPECT_EQ(offered("kovalune smooth --key "), (Words{"only", "remove"}));
    EXPECT_EQ(offered("kovalune smooth --png-level "),
              (Words{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
    EXPECT_EQ(offered("kovalune defaults "), (Words{"forget", "save", "show"}));
    EXPECT_EQ(offered("kovalune defaults s"), (Words{"save", "show"}));
    EXPECT_EQ(offered("kovalune render --threads "), Words{});
    const Words behind = offered("kovalune smooth --key=o");
    ASSERT_EQ(behind.size(), 1U);
    EXPECT_TRUE(behind[0] == "only" || behind[0] == "--key=only") << behind[0];
}

TEST_P(ShellCompletion, OffersViewsAndLabelsOfTheCommandItself) {
    EXPECT_EQ(offered("kovalune render --view "),
              (Words{"Base", "Extract", "Normal", "Process 1", "Process 2", "Process 3", "Process 4"}));
    EXPECT_EQ(offered("kovalune render --set Blur"), (Words{"Blur Amount=", "Blur Repeat Num="}));
    EXPECT_EQ(offered("kovalune render --set Enable\\ 2="), (Words{"Enable 2=off", "Enable 2=on"}));
    EXPECT_EQ(offered("kovalune render --set Blur\\ Amount="), Words{});
    const std::string table = runCommand({"params"}).out;
    const Words labels = offered("kovalune render --set ");
    EXPECT_GT(labels.size(), 40U);
    for (const std::string& label : labels) {
        EXPECT_TRUE(label.ends_with("=")) << label;
        EXPECT_NE(table.find(label.substr(0, label.size() - 1) + "  "), std::string::npos) << label;
    }
}

TEST_P(ShellCompletion, OffersFilesByTheirEnds) {
    for (const char* name : {"a.png", "b.TIFF", "c.tif", "d.exr", "e.tga", "f.txt", "g.so", "絵 1.png"}) {
        writeBytes(folder_ / name, {});
    }
    std::filesystem::create_directory(folder_ / "sub");
    const Words pictures = {"a.png", "b.TIFF", "c.tif", "d.exr", "e.tga", "sub", "絵 1.png"};
    EXPECT_EQ(offered("kovalune render "), pictures);
    EXPECT_EQ(offered("kovalune render -o "), pictures);
    EXPECT_EQ(offered("kovalune compare a.png b.png --diff "), pictures);
    EXPECT_EQ(offered("kovalune info --plugin "), (Words{"g.so", "sub"}));
    EXPECT_EQ(offered("kovalune render --params f"), (Words{"f.txt"}));
    EXPECT_EQ(offered("kovalune params "), Words{});
}

INSTANTIATE_TEST_SUITE_P(Shells, ShellCompletion, testing::ValuesIn(kShells),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
} // namespace kovalune::test
