// Runs a program with every call that it makes to the system in hand, and does something before one of them:
//
//   cli_test_calls COUNT-FILE KIND NUMBER ACTION VALUE COMMAND...
//
// KIND says which calls count: "any"; "output", which put files, or what is in them, on a disk; "input", which read files of
// VALUE's folder. Before call NUMBER of these, from 1, ACTION happens: "fail" lets it fail with the error VALUE instead of being
// made; "signal" sends VALUE; "remove" removes the folder VALUE with all that is in it; "halve" leaves the first half of the file VALUE.
// With NUMBER 0 nothing happens. What is to be flushed to the disk is said to be there, which saves the wait. COUNT-FILE gets the number of such calls. Ends as the program ended; with 77 where this system
// cannot be followed.
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kCannotFollow = 77;

#ifdef __x86_64__

struct Plan {
    std::string countFile;
    std::string kind;
    long number = 0;
    std::string action;
    std::string value;
};

/// The file that a descriptor of the process stands for.
std::string fileOf(pid_t process, unsigned long long descriptor) {
    const std::string link = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor);
    std::error_code none;
    return std::filesystem::read_symlink(link, none).string();
}

/// Standard error is for the words about a failure.
bool isOutput(pid_t process, const user_regs_struct& registers) {
    switch (registers.orig_rax) {
    case SYS_open:
        return (registers.rsi & O_CREAT) != 0;
    case SYS_openat:
        return (registers.rdx & O_CREAT) != 0;
    case SYS_write:
    case SYS_writev:
    case SYS_pwrite64:
        return registers.rdi != STDERR_FILENO;
    case SYS_close:
        // Some file systems tell only then that the disk is full.
        return fileOf(process, registers.rdi).find("/.kovalune-") != std::string::npos;
    case SYS_fsync:
    case SYS_fdatasync:
    case SYS_ftruncate:
    case SYS_fallocate:
    case SYS_rename:
    case SYS_renameat:
    case SYS_renameat2:
    case SYS_link:
    case SYS_linkat:
    case SYS_mkdir:
    case SYS_mkdirat:
    case SYS_fchmod:
    case SYS_fchown:
        return true;
    default:
        return false;
    }
}

class Follower {
public:
    Follower(const Plan& plan, pid_t process) : plan_(plan), process_(process) {}

    /// To the program's end; gives its status.
    int follow() {
        int status = 0;
        waitpid(process_, &status, 0);
        ptrace(PTRACE_SETOPTIONS, process_, 0,
               PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL);
        ptrace(PTRACE_SYSCALL, process_, 0, 0);
        for (;;) {
            const pid_t thread = waitpid(-1, &status, __WALL);
            if (thread < 0) {
                return 1 << 8;
            }
            if (WIFEXITED(status) || WIFSIGNALED(status)) {
                if (thread == process_) {
                    return status;
                }
                continue;
            }
            ptrace(PTRACE_SYSCALL, thread, 0, signalToPass(thread, status));
        }
    }

    long count() const { return count_; }

private:
    struct Thread {
        bool known = false;
        bool isInside = false; ///< of a call
        bool isPassedOver = false;
        int error = 0; ///< of a call that is passed over; 0: none
    };

    long signalToPass(pid_t id, int status) {
        Thread& thread = threads_[id];
        const int signalNumber = WSTOPSIG(status);
        const bool isNew = !thread.known && id != process_;
        thread.known = true;
        if (signalNumber == (SIGTRAP | 0x80)) {
            thread.isInside = !thread.isInside;
            thread.isInside ? entered(id, thread) : left(id, thread);
            return 0;
        }
        // Its own events, and the stop that a new thread begins with.
        return signalNumber == SIGTRAP || (isNew && signalNumber == SIGSTOP) ? 0 : signalNumber;
    }

    void entered(pid_t id, Thread& thread) {
        user_regs_struct registers{};
        if (ptrace(PTRACE_GETREGS, id, 0, &registers) != 0) {
            return;
        }
        if (registers.orig_rax == SYS_fsync || registers.orig_rax == SYS_fdatasync) {
            thread.isPassedOver = true;
        }
        if (counts(registers) && ++count_ == plan_.number) {
            act(thread);
        }
        if (thread.isPassedOver) {
            registers.orig_rax = ~0ULL; // no call at all
            ptrace(PTRACE_SETREGS, id, 0, &registers);
        }
    }

    void act(Thread& thread) const {
        std::error_code none;
        if (plan_.action == "fail") {
            thread.isPassedOver = true;
            thread.error = std::atoi(plan_.value.c_str());
        } else if (plan_.action == "signal") {
            kill(process_, std::atoi(plan_.value.c_str()));
        } else if (plan_.action == "remove") {
            // Under another name first: the program's other threads go on, and what they make would keep the folder.
            std::filesystem::rename(plan_.value, plan_.value + ".gone", none);
            std::filesystem::remove_all(plan_.value + ".gone", none);
        } else if (plan_.action == "halve") {
            std::filesystem::resize_file(plan_.value, std::filesystem::file_size(plan_.value, none) / 2,
                                         none);
        }
    }

    static void left(pid_t id, Thread& thread) {
        if (!thread.isPassedOver) {
            return;
        }
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, id, 0, &registers);
        registers.rax = static_cast<unsigned long long>(-static_cast<long long>(thread.error));
        ptrace(PTRACE_SETREGS, id, 0, &registers);
        thread.isPassedOver = false;
        thread.error = 0;
    }

    bool counts(const user_regs_struct& registers) const {
        if (plan_.kind == "any") {
            return true;
        }
        if (plan_.kind == "output") {
            return isOutput(process_, registers);
        }
        const bool reads = registers.orig_rax == SYS_read || registers.orig_rax == SYS_pread64;
        return reads && fileOf(process_, registers.rdi) == plan_.value;
    }

    const Plan& plan_;
    const pid_t process_;
    std::map<pid_t, Thread> threads_;
    long count_ = 0;
};

int run(const Plan& plan, char** command) {
    const pid_t process = fork();
    if (process == 0) {
        if (ptrace(PTRACE_TRACEME, 0, 0, 0) != 0) {
            _exit(kCannotFollow);
        }
        execv(command[0], command);
        _exit(kCannotFollow);
    }
    Follower follower(plan, process);
    const int status = follower.follow();
    std::ofstream(plan.countFile) << follower.count();
    if (WIFSIGNALED(status)) {
        std::signal(WTERMSIG(status), SIG_DFL);
        raise(WTERMSIG(status));
    }
    return WEXITSTATUS(status);
}

#endif

} // namespace

int main(int argc, char** argv) {
    constexpr int kOwnWords = 6;
    if (argc <= kOwnWords) {
        std::fputs("usage: cli_test_calls COUNT-FILE KIND NUMBER ACTION VALUE COMMAND...\n", stderr);
        return 2;
    }
#ifdef __x86_64__
    return run({argv[1], argv[2], std::atol(argv[3]), argv[4], argv[5]}, argv + kOwnWords);
#else
    return kCannotFollow;
#endif
}
