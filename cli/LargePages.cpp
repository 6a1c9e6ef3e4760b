// The command's large blocks of memory on large pages, where the system has them and they are asked for. A picture is a
// few such blocks, each used once: on small pages the faults of its first touch take longer than what is done to it.

#include <cstdlib>
#include <limits>
#include <new>

#include <sys/mman.h>

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// What no object can have is left to malloc, which refuses it.
bool isLarge(std::size_t bytes) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max() / 2;
    return bytes >= kLargePage / 8 * 7 && bytes <= kMost;
}

/// What free() takes back, or null. To the end of its last large page where little is wasted so.
void* largeBlock(std::size_t wanted) noexcept {
    const std::size_t missing = (kLargePage - wanted % kLargePage) % kLargePage;
    const std::size_t bytes = missing <= wanted / 8 ? wanted + missing : wanted;
    void* const block = std::aligned_alloc(kLargePage, bytes);
#if defined(MADV_HUGEPAGE)
    if (block != nullptr) {
        static_cast<void>(::madvise(block, bytes / kLargePage * kLargePage, MADV_HUGEPAGE));
    }
#endif
    return block;
}

} // namespace

// All other forms of both come down to these.

void* operator new(std::size_t bytes) {
    void* const block = isLarge(bytes) ? largeBlock(bytes) : std::malloc(bytes != 0 ? bytes : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*bytes*/) noexcept {
    std::free(block);
}
