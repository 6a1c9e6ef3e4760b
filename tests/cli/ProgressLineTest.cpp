// The progress of a frame on a terminal, and that nobody else sees it.

#include "cli/text/ProgressLine.h"
#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <chrono>

namespace kovalune::test {

using namespace cli;

namespace {

TEST(ProgressText, HasABarThePercentageTheStageTheTimesAndTheRate) {
    EXPECT_EQ(progressText(0.0, 2400000, 3.0), "[--------------------]   0 %");
    EXPECT_EQ(progressText(0.0, 2400000, 3.0, "Base"), "[--------------------]   0 %  Base");
    EXPECT_EQ(progressText(0.5, 2400000, 4.0),
              "[##########----------]  50 %  4 s gone, 4 s left, 0.3 megapixels/s");
    EXPECT_EQ(progressText(1.0, 50000000, 2.0, "Process 1"),
              "[####################] 100 %  Process 1  2 s gone, 0 s left, 25.0 megapixels/s");
}

TEST(ProgressText, WritesLongTimesInMinutesAndHours) {
    const auto endsWith = [](double seconds, const std::string& end) {
        const std::string text = progressText(0.5, 1, seconds);
        return text.find(", " + end + " left, ") != std::string::npos;
    };
    EXPECT_TRUE(endsWith(59.0, "59 s"));
    EXPECT_TRUE(endsWith(60.0, "1:00 min"));
    EXPECT_TRUE(endsWith(185.0, "3:05 min"));
    EXPECT_TRUE(endsWith(3600.0, "1:00 h"));
    EXPECT_TRUE(endsWith(7500.0, "2:05 h"));
    EXPECT_TRUE(endsWith(1e30, "100:00 h"));
}

class Progress : public ErrorCase {
protected:
    /// 300 reports: 25, 50 and 75 of 100.
    CommandOutcome run(int columns, const std::vector<std::string>& more = {}, const char* word = "steps") {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.errorColumns = columns;
        setting.environment = {{"TEST_EFFECT", word}};
        std::vector<std::string> words = {"render",  "in.png",   "-o",
                                          "out.png", "--plugin", KOVALUNE_TEST_EFFECT};
        words.insert(words.end(), more.begin(), more.end());
        return runCommand(words, setting);
    }

    /// What the command says at the end of a frame of this effect.
    static constexpr char kNote[] =
        "kovalune: note: no counts: only the built-in effect tells what it selects and changes\n";

    /// What stands on the terminal's lines in the end.
    static std::string screen(const std::string& text) {
        std::string lines;
        std::string line;
        std::size_t place = 0;
        for (const char letter : text) {
            if (letter == '\n') {
                lines += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
                line.clear();
            } else if (letter == '\r') {
                place = 0;
            } else {
                line.resize(std::max(line.size(), place + 1), ' ');
                line[place++] = letter;
            }
        }
        return lines + line.substr(0, line.find_last_not_of(' ') + 1);
    }
};

TEST_F(Progress, StandsOnATerminalAndIsGoneAtTheEnd) {
    const CommandOutcome outcome = run(100);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.starts_with("\r[#####---------------]  25 %  ")) << outcome.err;
    EXPECT_EQ(screen(outcome.err), kNote);
}

/// The lines that a terminal of this width showed, one after the other.
std::vector<std::string> linesShown(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while ((start = text.find('\r', start)) != std::string::npos) {
        const std::size_t end = std::min(text.find('\r', start + 1), text.size());
        lines.push_back(text.substr(start + 1, end - start - 1));
        start = end;
    }
    std::erase_if(lines, [](const std::string& line) { return line.find('[') == std::string::npos; });
    return lines;
}

TEST_F(Progress, NamesTheStageAndEndsAtTheLastReport) {
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.errorColumns = 100;
    const std::vector<std::string> lines =
        linesShown(runCommand({"render", "in.png", "-o", "out.png", "--factory"}, setting).err);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_TRUE(lines.front().starts_with("[#-------------------]   7 %  Base  "))
        << lines.front() << ": one of 7 calls for Base and 7 for Process 1";
    EXPECT_TRUE(lines.back().starts_with("[####################] 100 %  Process 1  ")) << lines.back();
    for (const std::string& line : lines) {
        EXPECT_NE(line.find(" gone, "), std::string::npos) << line;
    }
}

TEST_F(Progress, IsOneBarOverAllViewsOfASheet) {
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.errorColumns = 100;
    const std::vector<std::string> lines =
        linesShown(runCommand({"sheet", "in.png", "-o", "out.png", "--factory"}, setting).err);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_TRUE(lines.front().starts_with("Normal  [--------------------]   2 %  Base  ")) << lines.front();
    EXPECT_TRUE(lines.back().starts_with("Process 1  [####################] 100 %  Process 1  "))
        << lines.back();
}

TEST_F(Progress, ShowsAViewsNameWithoutWhatATerminalObeys) {
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.errorColumns = 100;
    setting.environment = {{"TEST_EFFECT", "views"}};
    const CommandOutcome outcome =
        runCommand({"sheet", "in.png", "-o", "out.png", "--plugin", KOVALUNE_TEST_EFFECT}, setting);
    EXPECT_EQ(outcome.exitCode, 0);
    const std::vector<std::string> lines = linesShown(outcome.err);
    ASSERT_GE(lines.size(), 1U);
    EXPECT_TRUE(lines.front().starts_with("\\x1b[2JFirst\\n  [##--")) << lines.front();
    EXPECT_EQ(outcome.err.find('\x1b'), std::string::npos);
}

TEST_F(Progress, IsWrittenAtMostTenTimesASecond) {
    const auto start = std::chrono::steady_clock::now();
    const CommandOutcome outcome = run(100);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const auto lines = std::count(outcome.err.begin(), outcome.err.end(), '[');
    EXPECT_GE(lines, 1);
    EXPECT_LE(static_cast<double>(lines), elapsed.count() * 10.0 + 1.0);
}

TEST_F(Progress, IsCutToANarrowTerminal) {
    const CommandOutcome outcome = run(20);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.err.starts_with("\r[#####-------------\r")) << outcome.err;
    EXPECT_EQ(screen(outcome.err), kNote);
}

TEST_F(Progress, IsNotShownQuietlyOrWhereThereIsNoTerminal) {
    const CommandOutcome quiet = run(100, {"--quiet"});
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_EQ(quiet.err.find('['), std::string::npos) << quiet.err;
    EXPECT_EQ(screen(quiet.err), kNote);
    EXPECT_TRUE(run(0).ok());
}

TEST_F(Progress, LeavesTheLineToAFailure) {
    const CommandOutcome outcome = run(100, {}, "late failure");
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.err.find("25 %"), std::string::npos);
    EXPECT_EQ(screen(outcome.err),
              "kovalune: the effect failed with code 512: first line\\rsecond\\nthird\n");
}

} // namespace
} // namespace kovalune::test
