// The swatches of `kovalune colors`, with the command's standard output on a terminal.

#include "cli/text/Swatch.h"
#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::test {

using namespace cli;

namespace {

using Variables = std::map<std::string, std::string>;

std::string readAll(int stream) {
    std::string text;
    std::array<char, 4096> part{};
    // The other side's end is an error of a pseudo-terminal, EIO.
    for (ssize_t count = 0; (count = read(stream, part.data(), part.size())) > 0;) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

/// What the command writes to a terminal, whose lines end in \r\n.
std::string onTerminal(const std::string& picture, const Variables& variables) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) {
        throw std::runtime_error("no pseudo-terminal");
    }
    if (child == 0) {
        for (const char* name : {"NO_COLOR", "COLORTERM", "TERM"}) {
            unsetenv(name);
        }
        for (const auto& [name, value] : variables) {
            setenv(name.c_str(), value.c_str(), 1);
        }
        execl(KOVALUNE_COMMAND, KOVALUNE_COMMAND, "colors", picture.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    const std::string text = readAll(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << text;
    return text;
}

class TerminalColors : public testing::Test {
protected:
    TerminalColors() {
        PngPicture png = blankPng(PngColor::kRgb, 8, 2, 1);
        png.rows = {200, 10, 20, 255, 255, 255};
        writePng(picture_, png);
    }

    static std::string lines(const std::string& first, const std::string& second) {
        return " 50.000 %  1  #C80A14" + first + "\r\n 50.000 %  1  #FFFFFF" + second + "\r\n";
    }

    void expectPlain(const Variables& variables) {
        EXPECT_EQ(onTerminal(picture_, variables), lines("", ""));
    }
    void expectTrue(const Variables& variables) {
        EXPECT_EQ(onTerminal(picture_, variables),
                  lines("  \x1b[48;2;200;10;20m      \x1b[0m", "  \x1b[48;2;255;255;255m      \x1b[0m"));
    }

    const TestFolder folder_;
    const std::string picture_ = (folder_ / "a.png").string();
};

TEST_F(TerminalColors, AreExactWhereTheTerminalSaysSo) {
    expectTrue({{"COLORTERM", "truecolor"}, {"TERM", "xterm"}});
    expectTrue({{"COLORTERM", "24bit"}, {"TERM", "xterm-256color"}});
    expectTrue({{"COLORTERM", "truecolor"}, {"NO_COLOR", ""}});
}

TEST_F(TerminalColors, AreTheNearestOf256OnOtherColourTerminals) {
    EXPECT_EQ(onTerminal(picture_, {{"TERM", "screen-256color"}}),
              lines("  \x1b[48;5;160m      \x1b[0m", "  \x1b[48;5;231m      \x1b[0m"));
}

TEST_F(TerminalColors, AreLeftOutWhereTheyAreNotKnownOrNotWanted) {
    expectPlain({});
    expectPlain({{"TERM", "vt100"}});
    expectPlain({{"TERM", "xterm-256color"}, {"NO_COLOR", "1"}});
    expectPlain({{"COLORTERM", "truecolor"}, {"NO_COLOR", "0"}});
}

TEST_F(TerminalColors, AreLeftOutInFiles) {
    CommandSetting setting;
    setting.environment = {{"COLORTERM", "truecolor"}, {"TERM", "xterm-256color"}, {"NO_COLOR", ""}};
    EXPECT_EQ(runCommand({"colors", picture_}, setting).out.find('\x1b'), std::string::npos);
}

TEST(Swatch, GreysOf256AreNearerThanTheCube) {
    const auto index = [](uint8_t grey) {
        return swatch({grey, grey, grey}, cli::TerminalColors::kIndexed256);
    };
    EXPECT_TRUE(index(0).starts_with("\x1b[48;5;16m"));
    EXPECT_TRUE(index(8).starts_with("\x1b[48;5;232m"));
    EXPECT_TRUE(index(128).starts_with("\x1b[48;5;244m"));
    EXPECT_TRUE(index(238).starts_with("\x1b[48;5;255m"));
}

} // namespace
} // namespace kovalune::test
