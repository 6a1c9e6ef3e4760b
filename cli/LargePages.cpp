// The command's large blocks of memory on large pages, where the system has them and they are asked for. A picture is a
// few such blocks, each used once: on small pages the faults of its first touch take longer than what is done to it.

#include <cstdlib>
#include <new>

#include <sys/mman.h>

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// What free() takes back, or null.
void* largeBlock(std::size_t bytes) noexcept {
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
    void* const block = bytes < kLargePage ? std::malloc(bytes != 0 ? bytes : 1) : largeBlock(bytes);
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
