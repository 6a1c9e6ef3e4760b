#include "cli/Reporting.h"
#include "cli/Failure.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

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
    for (const ExitCode code : {ExitCode::Usage, ExitCode::File, ExitCode::Effect, ExitCode::Interrupted}) {
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

} // namespace
} // namespace kovalune::tests
