// The command run as a user runs it: a process with arguments, an environment, an exit code and two streams.
#pragma once

#include "tests/support/TestFolder.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace kovalune::test {

struct CommandSetting {
    std::map<std::string, std::string> environment; ///< beside the test's own
    std::filesystem::path folder;                   ///< to run in; empty: the test's own
    std::size_t mostFileBytes = 0;                  ///< of any file written; 0: no limit
    std::size_t mostMemoryBytes = 0;                ///< of address space; 0: no limit
    std::filesystem::path standardInput = {};       ///< empty: the test's own
    std::filesystem::path standardOutput;           ///< empty: caught
    std::string program;                            ///< a whole path; empty: the command
    bool ownGroup = false; ///< signals go to it and all that it starts, as Ctrl-C does
    int errorColumns = 0;  ///< above 0: standard error is a terminal of this width
};

struct CommandOutcome {
    int exitCode = -1; ///< negative: ended by that signal
    std::string out;
    std::string err;   ///< what a terminal got, if it was one
    std::string notes; ///< lines that say so, of what was no terminal; they are not in err

    bool ok() const { return exitCode == 0 && err.empty(); }
    /// One line that starts with the command's name.
    bool hasOneErrorLine() const;
};

/// The user's remembered defaults are out of its sight: it gets an empty configuration folder.
class RunningCommand {
public:
    explicit RunningCommand(const std::vector<std::string>& arguments, const CommandSetting& setting = {});
    ~RunningCommand(); ///< ends it if nobody waited
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    void send(int signalNumber) const;

    /// Once wait() was called or this is true, nothing may be sent any more.
    bool hasEnded();

    CommandOutcome wait();

private:
    const TestFolder scratch_;
    const bool outIsCaught_;
    int terminal_ = -1; ///< this end of it
    pid_t child_ = -1;
    pid_t target_ = -1; ///< of signals, as kill() takes it
    bool ended_ = false;
    int status_ = 0;
};

CommandOutcome runCommand(const std::vector<std::string>& arguments, const CommandSetting& setting = {});

} // namespace kovalune::test
