#include "tests/soak/ProcessState.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <unistd.h>

namespace kovalune::test {

namespace {

std::size_t entriesOf(const char* folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

} // namespace

ProcessState ProcessState::now() {
    malloc_trim(0);
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    const auto pageBytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const struct mallinfo2 heap = mallinfo2();
    return {resident * pageBytes, heap.uordblks + heap.hblkhd, entriesOf("/proc/self/fd"),
            entriesOf("/proc/self/task")};
}

} // namespace kovalune::test
