// The PNG library's own lack of memory is told from a damaged file.

#include "cli/Failure.h"
#include "cli/PngFile.h"
#include "tests/cli/PngMaker.h"
#include "tests/cli/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <new>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::tests {
namespace {

#ifndef KOVALUNE_SANITIZED // the sanitizers need their address space for themselves

enum End { kEndsInSuccess = 10, kHadEnoughAtOnce, kEndsInFailure, kCannotLimit };

std::size_t bytesInUse() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool setLimit(std::size_t bytes) {
    const rlimit value{bytes, RLIM_INFINITY};
    return setrlimit(RLIMIT_AS, &value) == 0;
}

// Takes what memory earlier work gave back, for good; otherwise it would serve the requests to come.
void useUpFreeMemory() {
    for (std::size_t size = std::size_t{1} << 20; size >= 16; size /= 2) {
        void* volatile block = nullptr;
        do
            block = std::malloc(size);
        while (block != nullptr);
    }
}

// Runs `body` in a process of its own with more and more memory until it has enough. It may throw std::bad_alloc.
int endWithLittleMemory(const std::function<void()>& body) {
    constexpr std::size_t kStep = std::size_t{16} << 10;
    const pid_t child = fork();
    if (child == 0) {
        int lacks = 0;
        std::size_t limit = bytesInUse();
        if (!setLimit(limit))
            _exit(kCannotLimit);
        useUpFreeMemory();
        for (;; limit += kStep) {
            if (!setLimit(limit))
                _exit(kCannotLimit);
            try {
                body();
                _exit(lacks > 3 ? kEndsInSuccess : kHadEnoughAtOnce);
            } catch (const std::bad_alloc&) {
                ++lacks;
            } catch (const Failure&) {
                _exit(kEndsInFailure);
            }
        }
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Rows so long that each of the library's own takes memory anew.
std::vector<std::uint8_t> wideFile() {
    const TestFolder folder;
    writePng(folder / "wide.png", randomPng(PngColor::RgbAlpha, 16, 30000, 3, 1));
    return bytesOf(folder / "wide.png");
}

TEST(PngMemory, OfAReaderIsNoDamageOfTheFile) {
    const std::vector<std::uint8_t> bytes = wideFile();
    EXPECT_EQ(endWithLittleMemory([&] { decodePng(bytes, "wide.png"); }), kEndsInSuccess);
}

TEST(PngMemory, OfAWriterIsNoFailureOfTheFile) {
    const Picture picture = decodePng(wideFile(), "wide.png");
    EXPECT_EQ(endWithLittleMemory([&] { encodePng(picture); }), kEndsInSuccess);
}

#endif

} // namespace
} // namespace kovalune::tests
