// The completion for bash: what it offers is what the command takes, file by file and word by word.

#include "tests/cli/CommandHelp.h"
#include "tests/cli/CommandProcess.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::test {
namespace {

using Words = std::vector<std::string>;

/// Runs bash as a completion does, with the cursor at the end of the line. `offered.txt` gets the replies.
constexpr char kScript[] = R"(
source "$1"
COMP_LINE=$2
COMP_POINT=${#2}
_kovalune "$3"
printf '%s\n' "${COMPREPLY[@]}" >"$4"
)";

class Completion : public testing::Test {
protected:
    /// Sorted.
    Words offered(const std::string& line) const {
        const std::string replies = (scratch_ / "offered.txt").string();
        const pid_t child = fork();
        if (child == 0) {
            if (chdir(folder_.path().c_str()) != 0) {
                _exit(126);
            }
            setenv("XDG_CONFIG_HOME", scratch_.path().c_str(), 1);
            setenv("LC_ALL", "C.UTF-8", 1);
            execlp("bash", "bash", "--norc", "--noprofile", "-c", kScript, "bash", KOVALUNE_COMPLETION,
                   line.c_str(), KOVALUNE_COMMAND, replies.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << line;
        const std::vector<uint8_t> bytes = bytesOf(replies);
        std::istringstream lines(std::string(bytes.begin(), bytes.end()));
        Words words;
        for (std::string word; std::getline(lines, word);) {
            if (!word.empty()) {
                words.push_back(word);
            }
        }
        std::sort(words.begin(), words.end());
        return words;
    }

    const TestFolder folder_;
    const TestFolder scratch_;
};

TEST_F(Completion, OffersTheSubCommands) {
    EXPECT_EQ(offered("kovalune "), subCommands());
    EXPECT_EQ(offered("kovalune p"), (Words{"params", "pick"}));
    EXPECT_EQ(offered("kovalune x"), Words{});
    EXPECT_EQ(offered("kovalune help "), subCommands());
    EXPECT_EQ(offered("kovalune -"), optionsOf());
}

TEST_F(Completion, OffersTheOptionsOfEverySubCommandAndNoOther) {
    for (const std::string& command : subCommands()) {
        const Words options = optionsOf(command);
        EXPECT_TRUE(std::binary_search(options.begin(), options.end(), "--help")) << command;
        EXPECT_EQ(offered("kovalune " + command + " -"), options) << command;
    }
    EXPECT_EQ(offered("kovalune render --pa"), (Words{"--params", "--part", "--pass"}));
    EXPECT_EQ(offered("kovalune compare a.png --d"), (Words{"--diff"}));
}

TEST_F(Completion, OffersTheValuesOfOptions) {
    EXPECT_EQ(offered("kovalune render --alpha "), (Words{"premultiplied", "straight"}));
    EXPECT_EQ(offered("kovalune pick --alpha s"), (Words{"straight"}));
    EXPECT_EQ(offered("kovalune sheet --depth "), (Words{"16", "32", "8", "auto"}));
    EXPECT_EQ(offered("kovalune smooth --key "), (Words{"only", "remove"}));
    EXPECT_EQ(offered("kovalune smooth --png-level "),
              (Words{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
    EXPECT_EQ(offered("kovalune smooth --key=o"), (Words{"only"}));
    EXPECT_EQ(offered("kovalune defaults "), (Words{"forget", "save", "show"}));
    EXPECT_EQ(offered("kovalune defaults s"), (Words{"save", "show"}));
    EXPECT_EQ(offered("kovalune render --threads "), Words{});
}

// The command is the judge: it takes what is offered and refuses anything else.
TEST_F(Completion, OfferedValuesAreTaken) {
    for (const std::string option :
         {"--alpha", "--compression", "--depth", "--format", "--in-format", "--out-depth", "--png-level"}) {
        for (const std::string& value : offered("kovalune render " + option + " ")) {
            const CommandOutcome outcome = runCommand({"render", "--print-params", option, value});
            EXPECT_NE(outcome.exitCode, 2) << outcome.err;
        }
    }
    for (const std::string& view : offered("kovalune render --view \"")) {
        const CommandOutcome outcome = runCommand({"render", "missing.png", "-o", "x.png", "--view", view});
        EXPECT_NE(outcome.exitCode, 2) << outcome.err;
    }
}

TEST_F(Completion, OffersViewsAndLabelsOfTheCommandItself) {
    const Words views = offered("kovalune render --view ");
    for (const char* view : {"Normal", "Extract", "Base"}) {
        EXPECT_TRUE(std::binary_search(views.begin(), views.end(), view)) << view;
    }
    EXPECT_FALSE(std::binary_search(views.begin(), views.end(), "(-"));
    EXPECT_EQ(offered("kovalune render --set \"Blur"), (Words{"Blur Amount=", "Blur Repeat Num="}));
    EXPECT_EQ(offered("kovalune render --set \"Enable 2="), (Words{"Enable 2=off", "Enable 2=on"}));
    EXPECT_EQ(offered("kovalune render --set \"Blur Amount="), Words{});
    EXPECT_EQ(offered("kovalune render --set 'B"), (Words{"Blur Amount=", "Blur Repeat Num="}));
    std::size_t labels = 0;
    for (const std::string& label : offered("kovalune render --set \"")) {
        EXPECT_TRUE(label.ends_with("=")) << label;
        const std::string text = runCommand({"params"}).out;
        EXPECT_NE(text.find(label.substr(0, label.size() - 1) + "  "), std::string::npos) << label;
        ++labels;
    }
    EXPECT_GT(labels, 40U);
}

// Readline replaces the text after the last unquoted '=' or ':' only.
TEST_F(Completion, QuotesWhatIsNotQuotedYet) {
    EXPECT_EQ(offered("kovalune render --set Bl"), (Words{"Blur\\ Amount=", "Blur\\ Repeat\\ Num="}));
    EXPECT_EQ(offered("kovalune render --set Blur\\ A"), (Words{"Blur\\ Amount="}));
    EXPECT_EQ(offered("kovalune render --set 2\\ :\\ Keep"),
              (Words{"\\ Keep\\ Division=", "\\ Keep\\ Process="}));
    EXPECT_EQ(offered("kovalune render --set '2 : Keep"), (Words{"2 : Keep Division=", "2 : Keep Process="}));
    EXPECT_EQ(offered("kovalune render --set Enable\\ 2=of"), (Words{"off"}));
}

TEST_F(Completion, OffersFilesByTheirEnds) {
    for (const char* name : {"a.png", "b.TIFF", "c.tif", "d.exr", "e.tga", "f.txt", "g.so", "絵 1.png",
                             "h.bmp", "i.webp", "j.JPG"}) {
        writeBytes(folder_ / name, {});
    }
    std::filesystem::create_directory(folder_ / "sub");
    const Words pictures = {"a.png", "b.TIFF", "c.tif", "d.exr", "e.tga",
                            "h.bmp", "i.webp", "j.JPG", "sub",   "絵 1.png"};
    EXPECT_EQ(offered("kovalune render "), pictures);
    EXPECT_EQ(offered("kovalune render -o "), pictures);
    EXPECT_EQ(offered("kovalune compare a.png "), pictures);
    EXPECT_EQ(offered("kovalune compare a.png b.png --diff "), pictures);
    EXPECT_EQ(offered("kovalune render --set \"Blur Amount=3\" \"絵"), (Words{"絵 1.png"}));
    EXPECT_EQ(offered("kovalune info --plugin "), (Words{"g.so", "sub"}));
    EXPECT_EQ(offered("kovalune render --params f"), (Words{"f.txt"}));
    EXPECT_EQ(offered("kovalune suggest a.png -o f"), (Words{"f.txt"}));
    EXPECT_EQ(offered("kovalune suggest "), pictures);
    EXPECT_EQ(offered("kovalune params "), Words{});
}

} // namespace
} // namespace kovalune::test
