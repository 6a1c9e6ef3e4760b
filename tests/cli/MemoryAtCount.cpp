// Loaded before the command's own libraries: from main() on it counts requests for memory, of all libraries, and refuses the one of the
// number TEST_MEMORY_REQUEST, from 1. With TEST_MEMORY_LASTING all that come after it are refused too. The file
// TEST_MEMORY_MARK is made when the first is refused.
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

#define EXPORTED __attribute__((visibility("default")))

extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
}

namespace {

std::atomic<long> requests{0};
long refused = 0; // 0: none
bool lasting = false;
const char* mark = nullptr;
std::atomic<bool> counts{false};

bool isRefused() {
    if (!counts.load(std::memory_order_relaxed)) {
        return false;
    }
    const long request = requests.fetch_add(1) + 1;
    if (request == refused) {
        close(open(mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    }
    if (request == refused || (lasting && request > refused)) {
        errno = ENOMEM;
        return true;
    }
    return false;
}

using Main = int (*)(int, char**, char**);
Main programsMain = nullptr;

int countedMain(int argc, char** argv, char** environment) {
    const char* const request = std::getenv("TEST_MEMORY_REQUEST");
    mark = std::getenv("TEST_MEMORY_MARK");
    lasting = std::getenv("TEST_MEMORY_LASTING") != nullptr;
    refused = request != nullptr && mark != nullptr ? std::atol(request) : 0;
    counts = refused > 0;
    const int code = programsMain(argc, argv, environment);
    counts = false; // what the system does at the end is its own
    return code;
}

} // namespace

extern "C" {

EXPORTED int __libc_start_main(Main main, int argc, char** argv, void (*start)(), void (*end)(),
                               void (*linkerEnd)(), void* stackEnd) {
    programsMain = main;
    const auto real = reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return real(countedMain, argc, argv, start, end, linkerEnd, stackEnd);
}

EXPORTED void* malloc(std::size_t bytes) {
    return isRefused() ? nullptr : __libc_malloc(bytes);
}

EXPORTED void* calloc(std::size_t count, std::size_t bytes) {
    return isRefused() ? nullptr : __libc_calloc(count, bytes);
}

EXPORTED void* realloc(void* memory, std::size_t bytes) {
    return isRefused() ? nullptr : __libc_realloc(memory, bytes);
}

EXPORTED void* memalign(std::size_t alignment, std::size_t bytes) {
    return isRefused() ? nullptr : __libc_memalign(alignment, bytes);
}

EXPORTED void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    return isRefused() ? nullptr : __libc_memalign(alignment, bytes);
}

EXPORTED int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
    void* const made = isRefused() ? nullptr : __libc_memalign(alignment, bytes);
    if (made == nullptr) {
        return ENOMEM;
    }
    *memory = made;
    return 0;
}

EXPORTED void* mmap(void* address, std::size_t bytes, int protection, int flags, int file, off_t offset) {
    static const auto real = reinterpret_cast<decltype(&mmap)>(dlsym(RTLD_NEXT, "mmap"));
    return isRefused() ? MAP_FAILED : real(address, bytes, protection, flags, file, offset);
}

} // extern "C"
