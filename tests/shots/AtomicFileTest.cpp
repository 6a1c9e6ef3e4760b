// What happens to the file when the disk fails or a signal comes in the middle of writing.

#include "render/shots/AtomicFile.h"
#include "render/shots/EndingSignals.h"
#include "tests/support/TestFolder.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace {

/// What the program's calls of fsync see, which come here instead of to the system.
int flushError = 0;
int flushErrorFrom = 0; // the number of the call that the disk begins to fail with; 0: none
int signalAtFlush = 0;  // the number of the call that SIGTERM comes with; 0: none
int flushes = 0;
off_t flushedBytes = 0;
std::filesystem::path
    heldIn;          // the folder whose temporary files are counted as another process sees them; empty: none
int heldAtFlush = 0; // those that somebody held

/// What another process finds of the temporary files there: one that is held is nobody else's.
int heldFiles(const std::filesystem::path& folder) {
    int held = 0;
    for (const auto& each : std::filesystem::directory_iterator(folder)) {
        if (each.path().extension() != ".tmp") {
            continue;
        }
        const pid_t other = fork();
        if (other == 0) {
            struct flock lock {};
            lock.l_type = F_WRLCK;
            _exit(fcntl(open(each.path().c_str(), O_RDWR), F_SETLK, &lock) == 0 ? 0 : 1);
        }
        int status = 0;
        waitpid(other, &status, 0);
        held += status != 0 ? 1 : 0;
    }
    return held;
}

} // namespace

extern "C" int fsync(int file) {
    struct stat status {};
    if (fstat(file, &status) == 0) {
        flushedBytes = status.st_size;
    }
    ++flushes;
    if (!heldIn.empty()) {
        heldAtFlush = heldFiles(heldIn);
    }
    if (flushes == signalAtFlush) {
        raise(SIGTERM);
    }
    errno = flushErrorFrom != 0 && flushes >= flushErrorFrom ? EIO : flushError;
    return errno == 0 ? 0 : -1;
}

namespace kovalune::test {

using namespace shots;
using namespace text;

namespace {

const std::vector<uint8_t> kOld = {'o', 'l', 'd'};
const std::vector<uint8_t> kNew(100000, 'n');

/// The text of the Failure that it ends with; empty without one.
std::string refusalOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

struct stat statusOf(const std::filesystem::path& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status;
}

class AtomicFile : public testing::Test {
protected:
    AtomicFile() {
        writeBytes(file_, kOld);
        flushError = 0;
        flushErrorFrom = 0;
        signalAtFlush = 0;
        flushes = 0;
        flushedBytes = 0;
        heldIn.clear();
        heldAtFlush = 0;
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
        EXPECT_EQ(failure.kind(), FailureKind::kFile);
        EXPECT_EQ(failure.what(), "cannot write " + inQuotes(file_.string()) + ": " + systemReason(EIO));
    }
    expectUntouched();
}

TEST_F(AtomicFile, IsWrittenWhereTheFileSystemCannotFlush) {
    flushError = EINVAL;
    writeAtomically(file_, kNew);
    EXPECT_EQ(bytesOf(file_), kNew);
}

TEST_F(AtomicFile, KeepsTheOlderOnesOwnerAndPermissions) {
    const bool isRoot = geteuid() == 0;
    ASSERT_EQ(chown(file_.c_str(), isRoot ? 1234 : geteuid(), isRoot ? 4321 : getegid()), 0);
    for (const mode_t mode : {0604U, 0444U, 04755U}) {
        ASSERT_EQ(chmod(file_.c_str(), mode), 0);
        writeAtomically(file_, kNew);
        const struct stat status = statusOf(file_);
        EXPECT_EQ(status.st_mode & 07777U, mode);
        EXPECT_EQ(status.st_uid, isRoot ? 1234 : geteuid());
        EXPECT_EQ(status.st_gid, isRoot ? 4321 : getegid());
    }
}

TEST_F(AtomicFile, IsRefusedWhereNobodyMayWriteItUnlessForced) {
    EXPECT_NO_THROW(checkWritable(file_));
    ASSERT_EQ(chmod(file_.c_str(), 0444), 0);
    EXPECT_TRUE(isWriteProtected(file_)); // root's too
    EXPECT_EQ(refusalOf([&] { checkWritable(file_); }),
              "cannot write " + inQuotes(file_.string()) +
                  ": it is write-protected; --force replaces it all the same");
    std::filesystem::create_symlink("out.png", folder_ / "link.png");
    EXPECT_NE(refusalOf([&] { checkWritable(folder_ / "link.png"); }), "");
    EXPECT_NO_THROW(checkWritable(file_, true));
    EXPECT_FALSE(isWriteProtected(folder_ / "new.png"));
}

/// What follows happens in a process of a user whom the system stops, which root is not.
std::string refusalOfPlainUser(const std::function<void()>& body) {
    constexpr uid_t kNobody = 65534;
    int ends[2] = {};
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
            _exit(1);
        }
        const std::string text = refusalOf(body);
        _exit(write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string text(10000, '\0');
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], text.data(), text.size()), 0)));
    close(ends[0]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    return text;
}

TEST_F(AtomicFile, IsNotBegunInAFolderThatTakesNoFiles) {
    ASSERT_EQ(chmod(folder_.path().c_str(), 0555), 0);
    const std::string reason =
        ": the folder " + inQuotes(folder_.path().string()) + " takes no new file: Permission denied";
    for (const char* const name : {"out.png", "new.png"}) {
        const std::string text = refusalOfPlainUser([&] { checkWritable(folder_ / name, true); });
        EXPECT_EQ(text, "cannot write " + inQuotes((folder_ / name).string()) + reason);
    }
    chmod(folder_.path().c_str(), 0700);
    expectUntouched();
}

TEST_F(AtomicFile, LeavesNothingOfTheLookBehind) {
    checkWritable(file_);
    checkWritable(folder_ / "new.png");
    expectUntouched();
}

TEST_F(AtomicFile, OfSomebodyElseIsWriteProtected) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files of two users";
    }
    ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
    ASSERT_EQ(chmod(file_.c_str(), 04755), 0);
    EXPECT_EQ(refusalOf([&] { checkWritable(file_); }), "");
    EXPECT_NE(refusalOfPlainUser([&] { checkWritable(file_); }).find("write-protected"), std::string::npos);
    EXPECT_EQ(refusalOfPlainUser([&] {
                  checkWritable(file_, true);
                  writeAtomically(file_, kNew);
              }),
              "");
    EXPECT_EQ(bytesOf(file_), kNew);
    // The system gives files to nobody else, and then the owner's rights do not go to who runs the file.
    EXPECT_EQ(statusOf(file_).st_uid, 65534);
    EXPECT_EQ(statusOf(file_).st_mode & 07777U, 0755U);
}

TEST_F(AtomicFile, GivesAnotherGroupNoMoreThanAllOthersHave) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files of two users";
    }
    constexpr gid_t kTheirs = 4321;
    constexpr gid_t kOwn = 65534;
    ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
    for (const auto& [group, before, after] : {std::tuple(kTheirs, 0660U, 0600U),
                                               {kTheirs, 0664U, 0644U},
                                               {kTheirs, 0604U, 0644U},
                                               {kTheirs, 02770U, 0700U},
                                               {kOwn, 0660U, 0660U},
                                               {kOwn, 02750U, 0750U}}) {
        ASSERT_EQ(chown(file_.c_str(), 1234, group), 0);
        ASSERT_EQ(chmod(file_.c_str(), before), 0);
        EXPECT_EQ(refusalOfPlainUser([&] { writeAtomically(file_, kNew); }), "");
        EXPECT_EQ(statusOf(file_).st_uid, 65534U);
        EXPECT_EQ(statusOf(file_).st_gid, kOwn);
        EXPECT_EQ(statusOf(file_).st_mode & 07777U, after) << "of " << std::oct << before;
    }
}

TEST_F(AtomicFile, OfSomebodyElseIsNotReplacedInAFolderWhereOnlyOwnersDo) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files of two users";
    }
    constexpr uid_t kNobody = 65534;
    const std::string reason = "cannot write " + inQuotes(file_.string()) +
                               ": it is another user's, and in the folder " +
                               inQuotes(folder_.path().string()) + " only owners replace files";
    const auto refusal = [this](bool force) {
        return refusalOfPlainUser([&] { checkWritable(file_, force); });
    };
    ASSERT_EQ(chmod(folder_.path().c_str(), 01777), 0);
    ASSERT_EQ(chmod(file_.c_str(), 0666), 0);
    EXPECT_EQ(refusal(true), reason);
    EXPECT_EQ(refusal(false), reason) << "that --force would do is no advice here";
    EXPECT_EQ(refusalOf([&] { checkWritable(file_); }), "") << "root may";
    EXPECT_NE(refusalOfPlainUser([&] { writeAtomically(file_, kNew); }), "") << "the system agrees";
    expectUntouched();
    ASSERT_EQ(chown(file_.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(refusal(false), "");
    ASSERT_EQ(chown(file_.c_str(), 0, 0), 0);
    ASSERT_EQ(chown(folder_.path().c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(refusal(false), "");
    EXPECT_EQ(refusalOfPlainUser([&] { writeAtomically(file_, kNew); }), "") << "the system agrees";
}

/// So that nobody takes it for one that was left behind.
TEST_F(AtomicFile, IsHeldUntilItHasItsName) {
    heldIn = folder_.path();
    writeAtomically(file_, kNew);
    EXPECT_EQ(heldAtFlush, 1);
    const std::vector<FileContent> both = {{file_, kNew}, {folder_ / "map.png", kNew}};
    writeAtomically(both);
    EXPECT_EQ(heldAtFlush, 2) << "the first waits for the second";
}

TEST_F(AtomicFile, OfTwoNeitherIsPlacedBeforeBothAreOnTheDisk) {
    const std::vector<FileContent> both = {{file_, kNew}, {folder_ / "map.png", kNew}};
    flushErrorFrom = 2;
    EXPECT_NE(refusalOf([&] { writeAtomically(both); }), "");
    expectUntouched();
    flushErrorFrom = 0;
    writeAtomically(both);
    EXPECT_EQ(flushes, 4);
    EXPECT_EQ(bytesOf(file_), kNew);
    EXPECT_EQ(bytesOf(folder_ / "map.png"), kNew);
}

TEST_F(AtomicFile, OfTwoNeitherIsLeftWhenASignalEndsTheProcess) {
    const std::vector<FileContent> both = {{file_, kNew}, {folder_ / "map.png", kNew}};
    for (const int flush : {1, 2}) {
        EXPECT_EXIT(
            {
                signalAtFlush = flush;
                writeAtomically(both);
            },
            testing::KilledBySignal(SIGTERM), "");
        expectUntouched();
    }
}

int signalToRaise = 0;

constexpr int kWritten = 10;
constexpr int kFailed = 11;

/// Writes in a process of its own, in which the signal comes when half of the bytes are written. The system's
/// own signal for a file that grows too large tells when that is. Gives the process's end as waitpid does.
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
} // namespace kovalune::test
