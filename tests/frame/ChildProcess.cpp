#include "tests/frame/ChildProcess.h"

#ifdef _WIN32
#include <process.h>
#include <windows.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace kovalune::test {

int runThisProgramAgain(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"test"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> line;
    for (std::string& word : words) {
        line.push_back(word.data());
    }
    line.push_back(nullptr);
#ifdef _WIN32
    char path[MAX_PATH];
    if (GetModuleFileNameA(nullptr, path, sizeof path) == 0) {
        return -1;
    }
    return static_cast<int>(_spawnv(_P_WAIT, path, line.data()));
#else
    pid_t child = 0;
    if (::posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, line.data(), environ) != 0) {
        return -1;
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

} // namespace kovalune::test
