#include "tests/cli/CommandProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <pty.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::test {

namespace {

constexpr int kCannotStart = 127;

/// Notes are not what a test is about that does not ask for them.
void splitNotes(const std::string& text, CommandOutcome& outcome) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size() - 1) + 1;
        const std::string line = text.substr(start, end - start);
        (line.starts_with("kovalune: note: ") ? outcome.notes : outcome.err) += line;
        start = end;
    }
}

void limit(decltype(RLIMIT_AS) what, std::size_t bytes) {
    if (bytes == 0) {
        return;
    }
    const rlimit value{bytes, bytes};
    if (setrlimit(what, &value) != 0) {
        _exit(kCannotStart);
    }
}

void sendTo(const std::string& file, int stream) {
    const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (target < 0 || dup2(target, stream) < 0) {
        _exit(kCannotStart);
    }
}

/// In the new process; never comes back.
[[noreturn]] void becomeCommand(std::vector<char*>& words, const CommandSetting& setting,
                                const std::string& config, const std::string& out, const std::string& err,
                                int terminal) {
    setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    for (const auto& [name, value] : setting.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    if (!setting.standardInput.empty()) {
        const int source = open(setting.standardInput.c_str(), O_RDONLY);
        if (source < 0 || dup2(source, STDIN_FILENO) < 0) {
            _exit(kCannotStart);
        }
    }
    sendTo(out, STDOUT_FILENO);
    if (terminal < 0) {
        sendTo(err, STDERR_FILENO);
    } else if (dup2(terminal, STDERR_FILENO) < 0 || close(terminal) != 0) {
        _exit(kCannotStart);
    }
    if (!setting.folder.empty() && chdir(setting.folder.c_str()) != 0) {
        _exit(kCannotStart);
    }
    if (setting.mostFileBytes != 0) {
        // In a build that counts what runs, the limit would cut what all processes have counted.
        setenv("GCOV_PREFIX", "/dev/null", 1);
    }
    limit(RLIMIT_FSIZE, setting.mostFileBytes);
    limit(RLIMIT_AS, setting.mostMemoryBytes);
    const rlimit noCore{0, 0}; // that SIGQUIT would leave in the folder
    if (setrlimit(RLIMIT_CORE, &noCore) != 0 || (setting.ownGroup && setpgid(0, 0) != 0)) {
        _exit(kCannotStart);
    }
    execv(words.front(), words.data());
    _exit(kCannotStart);
}

std::string textOf(const std::filesystem::path& file) {
    const std::vector<uint8_t> bytes = bytesOf(file);
    return {bytes.begin(), bytes.end()};
}

/// All that comes until the other end is closed.
std::string terminalText(int terminal) {
    std::string text;
    std::array<char, 4096> letters{};
    for (;;) {
        const ssize_t count = read(terminal, letters.data(), letters.size());
        if (count > 0) {
            text.append(letters.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

} // namespace

bool CommandOutcome::hasOneErrorLine() const {
    return err.starts_with("kovalune: ") && err.find('\n') == err.size() - 1 &&
           err.find('\r') == std::string::npos;
}

RunningCommand::RunningCommand(const std::vector<std::string>& arguments, const CommandSetting& setting)
    : outIsCaught_(setting.standardOutput.empty()) {
    const std::string config = (scratch_ / "config").string();
    const std::string out = outIsCaught_ ? (scratch_ / "out").string() : setting.standardOutput.string();
    const std::string err = (scratch_ / "err").string();
    std::vector<std::string> texts = {setting.program.empty() ? KOVALUNE_COMMAND : setting.program};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    words.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        words.push_back(text.data());
    }
    words.push_back(nullptr);

    int far = -1;
    if (setting.errorColumns > 0) {
        const winsize size{24, static_cast<unsigned short>(setting.errorColumns), 0, 0};
        if (openpty(&terminal_, &far, nullptr, nullptr, &size) != 0) {
            throw std::runtime_error("no terminal for the command");
        }
        fcntl(terminal_, F_SETFD, FD_CLOEXEC);
    }
    child_ = fork();
    if (child_ < 0) {
        throw std::runtime_error("no process for the command");
    }
    if (child_ == 0) {
        becomeCommand(words, setting, config, out, err, far);
    }
    if (setting.ownGroup) {
        setpgid(child_, child_); // here too, so that it is done whoever comes first
    }
    target_ = setting.ownGroup ? -child_ : child_;
    if (far >= 0) {
        close(far);
    }
}

RunningCommand::~RunningCommand() {
    if (!ended_) {
        kill(target_, SIGKILL);
        waitpid(child_, &status_, 0);
    }
    if (terminal_ >= 0) {
        close(terminal_);
    }
}

void RunningCommand::send(int signalNumber) const {
    kill(target_, signalNumber);
}

bool RunningCommand::hasEnded() {
    ended_ = ended_ || waitpid(child_, &status_, WNOHANG) == child_;
    return ended_;
}

CommandOutcome RunningCommand::wait() {
    CommandOutcome outcome;
    if (terminal_ >= 0) {
        outcome.err = terminalText(terminal_);
    }
    if (!ended_ && waitpid(child_, &status_, 0) != child_) {
        throw std::runtime_error("the command got lost");
    }
    ended_ = true;
    outcome.exitCode = WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
    if (outIsCaught_) {
        outcome.out = textOf(scratch_ / "out");
    }
    if (terminal_ < 0) {
        splitNotes(textOf(scratch_ / "err"), outcome);
    }
    return outcome;
}

CommandOutcome runCommand(const std::vector<std::string>& arguments, const CommandSetting& setting) {
    return RunningCommand(arguments, setting).wait();
}

} // namespace kovalune::test
