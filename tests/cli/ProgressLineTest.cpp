// The progress of a frame on a terminal, and that nobody else sees it.

#include "cli/ProgressLine.h"
#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <chrono>

namespace kovalune::tests {
namespace {

TEST(ProgressText, HasABarThePercentageTheRateAndTheTimeLeft) {
    EXPECT_EQ(progressText(0.0, 2400000, 3.0), "[--------------------]   0 %");
    EXPECT_EQ(progressText(0.5, 2400000, 4.0), "[##########----------]  50 %  0.3 megapixels/s  4 s left");
    EXPECT_EQ(progressText(1.0, 50000000, 2.0), "[####################] 100 %  25.0 megapixels/s  0 s left");
}

TEST(ProgressText, WritesLongTimesInMinutesAndHours) {
    const auto endsWith = [](double seconds, const std::string& end) {
        return progressText(0.5, 1, seconds).ends_with("  " + end + " left");
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
    // 300 reports: 25, 50 and 75 of 100.
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

    // What stands on the terminal's lines in the end.
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
    EXPECT_EQ(outcome.err.find('\n'), std::string::npos);
    EXPECT_EQ(screen(outcome.err), "");
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
    EXPECT_EQ(screen(outcome.err), "");
}

TEST_F(Progress, IsNotShownQuietlyOrWhereThereIsNoTerminal) {
    EXPECT_TRUE(run(100, {"--quiet"}).ok());
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
} // namespace kovalune::tests
