#include "tests/cli/CommandProcess.h"

#include "tests/cli/TestFolder.h"

#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::tests {

namespace {

constexpr int kCannotStart = 127;

void limit(decltype(RLIMIT_AS) what, std::size_t bytes) {
    if (bytes == 0)
        return;
    const rlimit value{bytes, bytes};
    if (setrlimit(what, &value) != 0)
        _exit(kCannotStart);
}

void sendTo(const std::string& file, int stream) {
    const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (target < 0 || dup2(target, stream) < 0)
        _exit(kCannotStart);
}

// In the new process; never comes back.
[[noreturn]] void becomeCommand(std::vector<char*>& words, const CommandSetting& setting,
                                const std::string& config, const std::string& out, const std::string& err) {
    setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    for (const auto& [name, value] : setting.environment)
        setenv(name.c_str(), value.c_str(), 1);
    sendTo(out, STDOUT_FILENO);
    sendTo(err, STDERR_FILENO);
    if (!setting.folder.empty() && chdir(setting.folder.c_str()) != 0)
        _exit(kCannotStart);
    limit(RLIMIT_FSIZE, setting.mostFileBytes);
    limit(RLIMIT_AS, setting.mostMemoryBytes);
    execv(KOVALUNE_COMMAND, words.data());
    _exit(kCannotStart);
}

std::string textOf(const std::filesystem::path& file) {
    const std::vector<std::uint8_t> bytes = bytesOf(file);
    return {bytes.begin(), bytes.end()};
}

} // namespace

bool CommandOutcome::hasOneErrorLine() const {
    return err.starts_with("kovalune: ") && err.find('\n') == err.size() - 1 &&
           err.find('\r') == std::string::npos;
}

CommandOutcome runCommand(const std::vector<std::string>& arguments, const CommandSetting& setting) {
    const TestFolder scratch;
    const std::string config = (scratch / "config").string();
    const std::string out = (scratch / "out").string();
    const std::string err = (scratch / "err").string();
    std::vector<std::string> texts = {KOVALUNE_COMMAND};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    words.reserve(texts.size() + 1);
    for (std::string& text : texts)
        words.push_back(text.data());
    words.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no process for the command");
    if (child == 0)
        becomeCommand(words, setting, config,
                      setting.standardOutput.empty() ? out : setting.standardOutput.string(), err);
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        throw std::runtime_error("the command got lost");
    CommandOutcome outcome;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    if (setting.standardOutput.empty())
        outcome.out = textOf(out);
    outcome.err = textOf(err);
    return outcome;
}

} // namespace kovalune::tests
