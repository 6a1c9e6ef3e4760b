#include "cli/Reporting.h"
#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/SignalAction.h"

#include <gtest/gtest.h>

#include <csignal>
#include <new>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

namespace kovalune::tests {
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
    const Report report = reportOf([] { return ExitCode::Success; });
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_EQ(report.text, "");
}

TEST(Reporting, HandsOnTheCodeOfWhatEndsWithoutAFailure) {
    const Report report = reportOf([] { return ExitCode::Different; });
    EXPECT_EQ(report.exitCode, 1);
    EXPECT_EQ(report.text, "");
}

TEST(Reporting, TakesTheCodeOfAFailureAndMakesItOneLine) {
    for (const ExitCode code : {ExitCode::Usage, ExitCode::File, ExitCode::Effect}) {
        const Report report = reportOf([code]() -> ExitCode { throw Failure(code, "first\nsecond"); });
        EXPECT_EQ(report.exitCode, static_cast<int>(code));
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
    for (const int signalNumber : kEndingSignals)
        EXPECT_EXIT(endBy(signalNumber), testing::KilledBySignal(signalNumber), "^kovalune: interrupted\n$");
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
        if (pipe(ends) != 0 || close(ends[0]) != 0 || dup2(ends[1], STDERR_FILENO) < 0)
            _exit(1);
        reporting([]() -> ExitCode { throw Interruption(SIGTERM); });
    };
    EXPECT_EXIT(endWithBrokenPipe(), testing::KilledBySignal(SIGTERM), "");
}

} // namespace
} // namespace kovalune::tests
