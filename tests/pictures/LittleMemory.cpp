#include "tests/pictures/LittleMemory.h"

#include "text/Failure.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::test {

using namespace text;

namespace {

int endCode(LittleMemoryEnd end) {
    return static_cast<int>(end);
}

std::size_t bytesInUse() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool setLimit(std::size_t bytes) {
    const rlimit value{bytes, RLIM_INFINITY};
    return setrlimit(RLIMIT_AS, &value) == 0;
}

/// Takes what memory earlier work gave back, for good; otherwise it would serve the requests to come.
void useUpFreeMemory() {
    for (std::size_t size = std::size_t{1} << 20; size >= 16; size /= 2) {
        void* volatile block = nullptr;
        do {
            block = std::malloc(size);
        } while (block != nullptr);
    }
}

} // namespace

LittleMemoryEnd endWithLittleMemory(const std::function<void()>& body) {
    constexpr std::size_t kStep = std::size_t{16} << 10;
    const pid_t child = fork();
    if (child == 0) {
        int lacks = 0;
        std::size_t limit = bytesInUse();
        if (!setLimit(limit)) {
            _exit(endCode(LittleMemoryEnd::kCannotLimit));
        }
        useUpFreeMemory();
        for (;; limit += kStep) {
            if (!setLimit(limit)) {
                _exit(endCode(LittleMemoryEnd::kCannotLimit));
            }
            try {
                body();
                _exit(lacks > 3 ? endCode(LittleMemoryEnd::kSuccess)
                                : endCode(LittleMemoryEnd::kEnoughAtOnce));
            } catch (const std::bad_alloc&) {
                ++lacks;
            } catch (const Failure& failure) {
                std::fprintf(stderr, "%s\n", failure.what());
                _exit(endCode(LittleMemoryEnd::kFailure));
            }
        }
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? static_cast<LittleMemoryEnd>(WEXITSTATUS(status)) : LittleMemoryEnd::kCrash;
}

} // namespace kovalune::test
