#include "host/SystemMemory.h"

#include <cstdint>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace kovalune::host {

namespace {

#if defined(__linux__)

constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// Below that the heap's own way is as good, and a block of pages would waste a part of its last one.
constexpr std::size_t kLeastPages = std::size_t{1} << 20;
constexpr std::size_t kPage = 4096;

bool isOfPages(std::size_t bytes) {
    return bytes >= kLeastPages;
}

void unmap(std::byte* first, std::size_t bytes) {
    if (bytes != 0) {
        ::munmap(first, bytes);
    }
}

std::size_t roundedUp(std::size_t bytes, std::size_t step) {
    return (bytes + step - 1) / step * step;
}

/// To the end of the last large page where little is wasted so: what is left over would take hundreds of small ones.
std::size_t wholePages(std::size_t bytes) {
    const std::size_t large = roundedUp(bytes, kLargePage);
    return large - bytes <= bytes / 8 ? large : roundedUp(bytes, kPage);
}

/// Asks for more and gives back what is before and after the part that large pages can be laid on.
SystemMemory takePages(std::size_t bytes) {
    const std::size_t wanted = wholePages(bytes);
    const std::size_t asked = wanted + kLargePage;
    void* const mapped = ::mmap(nullptr, asked, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        return {};
    }
    auto* const first = static_cast<std::byte*>(mapped);
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(first) % kLargePage;
    std::byte* const base = first + before;
    unmap(first, before);
    unmap(base + wanted, asked - before - wanted);
    static_cast<void>(::madvise(base, wanted, MADV_HUGEPAGE)); // a system without them goes on as it is
    return {base, wanted, true};
}

#else

bool isOfPages(std::size_t) {
    return false;
}

void unmap(std::byte*, std::size_t) {}

SystemMemory takePages(std::size_t) {
    return {};
}

#endif

} // namespace

SystemMemory takeFromSystem(std::size_t bytes) {
    if (isOfPages(bytes)) {
        return takePages(bytes);
    }
    void* const base = ::operator new (bytes, std::align_val_t{kSystemAlignment}, std::nothrow);
    return {static_cast<std::byte*>(base), bytes};
}

void giveToSystem(const SystemMemory& memory) {
    if (isOfPages(memory.bytes)) {
        unmap(memory.base, memory.bytes);
    } else {
        ::operator delete (memory.base, std::align_val_t{kSystemAlignment});
    }
}

} // namespace kovalune::host
