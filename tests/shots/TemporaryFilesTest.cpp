// What is held while it is written, and what a sweep takes away.

#include "render/shots/TemporaryFiles.h"
#include "tests/support/TestFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What the program's calls of fcntl see, which come here: a file system without locks, where this is on.
bool lacksLocks = false;

} // namespace

extern "C" int fcntl(int file, int command, ...) {
    std::va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (lacksLocks && command == F_SETLK) {
        errno = ENOLCK;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fcntl, file, command, argument));
}

namespace kovalune::test {

using namespace shots;
using namespace std::chrono_literals;

namespace {

using Names = std::vector<std::string>;

class TemporaryFiles : public testing::Test {
protected:
    TemporaryFiles() { lacksLocks = false; }
    ~TemporaryFiles() override {
        lacksLocks = false;
        if (holder_ > 0) {
            ::kill(holder_, SIGKILL);
            ::waitpid(holder_, nullptr, 0);
        }
    }

    void make(const std::string& name, std::chrono::seconds age) const {
        writeBytes(folder_ / name, {'x'});
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(folder_ / name, now - age);
    }

    Names sweep() const {
        Names names;
        for (const std::filesystem::path& file : sweepFolder(folder_.path()).removed) {
            names.push_back(file.filename().string());
        }
        return names;
    }

    /// By another process, until it is killed.
    void hold(const std::string& name) {
        int ready[2] = {};
        ASSERT_EQ(::pipe(ready), 0);
        holder_ = ::fork();
        if (holder_ == 0) {
            holdTemporary(::open((folder_ / name).c_str(), O_RDWR));
            static_cast<void>(::write(ready[1], "x", 1));
            ::pause();
            ::_exit(0);
        }
        char sign = 0;
        ASSERT_EQ(::read(ready[0], &sign, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }

    void killHolder() {
        ASSERT_EQ(::kill(holder_, SIGKILL), 0);
        ASSERT_EQ(::waitpid(holder_, nullptr, 0), holder_);
        holder_ = -1;
    }

    const TestFolder folder_;
    pid_t holder_ = -1;
};

TEST_F(TemporaryFiles, AreSweptOnceTheyAreOldAndNobodys) {
    make(".kovalune-1a.tmp", 13s);
    make(".kovalune-2b.tmp", 5s);
    make(".kovalune-3c.png", 13s);
    make("kovalune-4d.tmp", 13s);
    make("soft.0001.png", 13s);
    EXPECT_EQ(sweep(), Names{".kovalune-1a.tmp"});
    EXPECT_EQ(folder_.names(),
              (Names{".kovalune-2b.tmp", ".kovalune-3c.png", "kovalune-4d.tmp", "soft.0001.png"}));
    EXPECT_EQ(sweep(), Names{});
}

TEST_F(TemporaryFiles, AreLeftWhileTheirWriterLives) {
    make(".kovalune-1.tmp", 48h);
    hold(".kovalune-1.tmp");
    EXPECT_EQ(sweep(), Names{});
    killHolder();
    EXPECT_EQ(sweep(), Names{".kovalune-1.tmp"});
}

TEST_F(TemporaryFiles, StayForADayWhereThereAreNoLocks) {
    make(".kovalune-1.tmp", 23h);
    make(".kovalune-2.tmp", 25h);
    lacksLocks = true;
    EXPECT_EQ(sweep(), Names{".kovalune-2.tmp"});
    lacksLocks = false;
    EXPECT_EQ(sweep(), Names{".kovalune-1.tmp"});
}

TEST_F(TemporaryFiles, LeavesFoldersLinksAndPipesAlone) {
    std::filesystem::create_directory(folder_ / ".kovalune-1.tmp");
    std::filesystem::create_symlink("nowhere", folder_ / ".kovalune-2.tmp");
    ASSERT_EQ(::mkfifo((folder_ / ".kovalune-3.tmp").c_str(), 0600), 0);
    EXPECT_EQ(sweep(), Names{});
    EXPECT_EQ(folder_.names().size(), 3U);
    EXPECT_TRUE(sweepFolder(folder_ / "not there").removed.empty());
}

} // namespace

} // namespace kovalune::test
