// What happens to the file when the disk fails or a signal comes in the middle of writing.

#include "cli/AtomicFile.h"
#include "cli/Failure.h"
#include "cli/SignalAction.h"
#include "tests/cli/TestFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// What the program's calls of fsync see, which come here instead of to the system.
int flushError = 0;
int flushes = 0;
off_t flushedBytes = 0;

} // namespace

extern "C" int fsync(int file) {
    struct stat status {};
    if (fstat(file, &status) == 0)
        flushedBytes = status.st_size;
    ++flushes;
    errno = flushError;
    return flushError == 0 ? 0 : -1;
}

namespace kovalune::tests {
namespace {

const std::vector<std::uint8_t> kOld = {'o', 'l', 'd'};
const std::vector<std::uint8_t> kNew(100000, 'n');

class AtomicFile : public testing::Test {
protected:
    AtomicFile() {
        writeBytes(file_, kOld);
        flushError = 0;
        flushes = 0;
        flushedBytes = 0;
    }

    void expectUntouched() const {
        EXPECT_EQ(folder_.names(), (std::vector<std::string>{"out.png"}));
        EXPECT_EQ(bytesOf(file_), kOld);
    }

    const TestFolder folder_;
    const std::filesystem::path file_ = folder_ / "out.png";
};

TEST_F(AtomicFile, IsOnTheDiskAsAWholeBeforeItTakesItsName) {
    writeAtomically(file_, kNew);
    EXPECT_EQ(flushes, 1);
    EXPECT_EQ(flushedBytes, static_cast<off_t>(kNew.size()));
    EXPECT_EQ(bytesOf(file_), kNew);
}

TEST_F(AtomicFile, StaysAsItWasWhenTheDiskFails) {
    flushError = EIO;
    try {
        writeAtomically(file_, kNew);
        ADD_FAILURE() << "the disk's error got lost";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::File);
        EXPECT_EQ(failure.what(), "cannot write " + inQuotes(file_.string()) + ": " + systemReason(EIO));
    }
    expectUntouched();
}

TEST_F(AtomicFile, IsWrittenWhereTheFileSystemCannotFlush) {
    flushError = EINVAL;
    writeAtomically(file_, kNew);
    EXPECT_EQ(bytesOf(file_), kNew);
}

int signalToRaise = 0;

constexpr int kWritten = 10;
constexpr int kFailed = 11;

// Writes in a process of its own, in which the signal comes when half of the bytes are written. The system's
// own signal for a file that grows too large tells when that is. Gives the process's end as waitpid does.
int endOfWriting(const std::filesystem::path& file, int signalNumber, bool ignored) {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none);
        signalToRaise = signalNumber;
        std::signal(signalNumber, ignored ? SIG_IGN : SIG_DFL);
        std::signal(SIGXFSZ, [](int) { raise(signalToRaise); });
        const rlimit limit{kNew.size() / 2, kNew.size() / 2};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            writeAtomically(file, kNew);
        } catch (const Failure&) {
            _exit(kFailed);
        }
        _exit(kWritten);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST_F(AtomicFile, LeavesNothingBehindWhenASignalEndsTheProcess) {
    for (const int signalNumber : kEndingSignals) {
        const int status = endOfWriting(file_, signalNumber, false);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), signalNumber);
        expectUntouched();
    }
}

TEST_F(AtomicFile, LeavesAnIgnoredSignalIgnored) {
    const int status = endOfWriting(file_, SIGHUP, true);
    ASSERT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), kFailed); // by the limit
    expectUntouched();
}

TEST_F(AtomicFile, LeavesSignalsAloneAfterwards) {
    writeAtomically(file_, kNew);
    for (const int signalNumber : kEndingSignals) {
        struct sigaction action {};
        ASSERT_EQ(sigaction(signalNumber, nullptr, &action), 0);
        EXPECT_TRUE(action.sa_handler == SIG_DFL) << signalNumber;
    }
}

} // namespace
} // namespace kovalune::tests
