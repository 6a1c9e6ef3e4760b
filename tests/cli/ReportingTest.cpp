#include "cli/text/Reporting.h"
#include "cli/ExitCode.h"
#include "render/shots/EndingSignals.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <gtest/gtest.h>

#include <csignal>
#include <new>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace kovalune::test {

using namespace cli;
using namespace shots;
using namespace text;

namespace {

struct Report {
    int exitCode = -1;
    std::string text;
};

Report reportOf(const std::function<ExitCode()>& body) {
    testing::internal::CaptureStderr();
    Report report;
    report.exitCode = reporting(body);
    report.text = testing::internal::GetCapturedStderr();
    return report;
}

TEST(Reporting, IsSilentAboutSuccess) {
    const Report report = reportOf([] { return ExitCode::kSuccess; });
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_EQ(report.text, "");
}

TEST(Reporting, HandsOnTheCodeOfWhatEndsWithoutAFailure) {
    const Report report = reportOf([] { return ExitCode::kDifferent; });
    EXPECT_EQ(report.exitCode, 1);
    EXPECT_EQ(report.text, "");
}

TEST(Reporting, TakesTheCodeOfAFailureAndMakesItOneLine) {
    for (const auto& each :
         {std::pair(FailureKind::kUsage, 2), {FailureKind::kFile, 3}, {FailureKind::kEffect, 4}}) {
        const Report report = reportOf([&each]() -> ExitCode { throw Failure(each.first, "first\nsecond"); });
        EXPECT_EQ(report.exitCode, each.second);
        EXPECT_EQ(report.text, "kovalune: first\\nsecond\n");
    }
}

TEST(Reporting, CountsLackOfMemoryAndAllOtherExceptionsAsFiles) {
    const Report memory = reportOf([]() -> ExitCode { throw std::bad_alloc(); });
    EXPECT_EQ(memory.exitCode, 3);
    EXPECT_EQ(memory.text, "kovalune: not enough memory\n");
    const Report other = reportOf([]() -> ExitCode { throw std::runtime_error("no random numbers"); });
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_EQ(other.text, "kovalune: no random numbers\n");
}

TEST(ReportingDeathTest, EndsByTheSignalThatInterrupted) {
    const auto endBy = [](int signalNumber) {
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        reporting([signalNumber]() -> ExitCode { throw Interruption(signalNumber); });
    };
    for (const int signalNumber : kEndingSignals) {
        EXPECT_EXIT(endBy(signalNumber), testing::KilledBySignal(signalNumber), "^kovalune: interrupted\n$");
    }
}

// What is ignored is not what interrupted, but nothing may hold up the end.
TEST(ReportingDeathTest, EndsByTheSignalWhateverItsMeaningHasBecome) {
    const auto endWithMask = [] {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
        std::signal(SIGINT, SIG_IGN);
        reporting([]() -> ExitCode { throw Interruption(SIGINT); });
    };
    EXPECT_EXIT(endWithMask(), testing::KilledBySignal(SIGINT), "");
}

TEST(ReportingDeathTest, EndsByTheSignalWhereNobodyReadsTheMessage) {
    const auto endWithBrokenPipe = [] {
        int ends[2];
        if (pipe(ends) != 0 || close(ends[0]) != 0 || dup2(ends[1], STDERR_FILENO) < 0) {
            _exit(1);
        }
        reporting([]() -> ExitCode { throw Interruption(SIGTERM); });
    };
    EXPECT_EXIT(endWithBrokenPipe(), testing::KilledBySignal(SIGTERM), "");
}

TEST(Reporting, NoControlCharacterReachesATerminal) {
    const Report report = reportOf([]() -> ExitCode {
        throw Failure(FailureKind::kFile, "\x1b[2J \x9b\x31m \xc2\x9b \x7f \xe2\x9b \r");
    });
    EXPECT_EQ(report.text, "kovalune: \\x1b[2J \\x9b1m \\xc2\\x9b \\x7f \xe2\\x9b \\r\n");
    const Report words = reportOf([]() -> ExitCode { throw Failure(FailureKind::kFile, "ほこり é \xe9"); });
    EXPECT_EQ(words.text, "kovalune: ほこり é \xe9\n");
}

TEST(Reporting, OfALongTextOfTheUserTwoEndsAreShown) {
    const std::string most(kMostShownBytes, 'x');
    EXPECT_EQ(shown(most), most);
    EXPECT_EQ(inQuotes(most), "'" + most + "'");
    const std::string half(kMostShownBytes / 2, 'a');
    const std::string otherHalf(kMostShownBytes / 2, 'b');
    EXPECT_EQ(shown(half + "+" + otherHalf), half + "..." + otherHalf);
    EXPECT_EQ(inQuotes(half + std::string(100000, '+') + otherHalf), "'" + half + "..." + otherHalf + "'");
}

TEST(Reporting, NoCharacterOfALongTextIsCut) {
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text += "ほ";
    }
    for (const char* const before : {"", "x", "xx"}) {
        const std::string line = shown(before + text + before);
        EXPECT_LE(line.size(), kMostShownBytes + 3);
        const std::size_t dots = line.find("...");
        ASSERT_NE(dots, std::string::npos);
        EXPECT_EQ((dots - std::string_view(before).size()) % 3, 0U);
        EXPECT_EQ((line.size() - dots - 3 - std::string_view(before).size()) % 3, 0U);
    }
    EXPECT_EQ(shown(std::string(1000, '\x1b')).size() % 4, 3U);
}

} // namespace
} // namespace kovalune::test
