// The command run as a user runs it: a process with arguments, an environment, an exit code and two streams.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kovalune::tests {

struct CommandSetting {
    std::map<std::string, std::string> environment; // beside the test's own
    std::filesystem::path folder;                   // to run in; empty: the test's own
    std::size_t mostFileBytes = 0;                  // of any file written; 0: no limit
    std::size_t mostMemoryBytes = 0;                // of address space; 0: no limit
    std::filesystem::path standardOutput;           // empty: caught
};

struct CommandOutcome {
    int exitCode = -1; // negative: ended by that signal
    std::string out;
    std::string err;

    bool ok() const { return exitCode == 0 && err.empty(); }
    // One line that starts with the command's name.
    bool hasOneErrorLine() const;
};

// The user's remembered defaults are out of its sight: it gets an empty configuration folder.
CommandOutcome runCommand(const std::vector<std::string>& arguments, const CommandSetting& setting = {});

} // namespace kovalune::tests
