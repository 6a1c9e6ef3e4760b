#include "tests/share/FailingNew.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool failing = false;
thread_local long live = 0;

void* allocated(std::size_t size) noexcept {
    void* const memory = failing ? nullptr : std::malloc(size != 0 ? size : 1);
    live += memory != nullptr ? 1 : 0;
    return memory;
}

void freed(void* memory) noexcept {
    live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

namespace kovalune::test {

FailingNew::FailingNew() {
    failing = true;
}
FailingNew::~FailingNew() {
    failing = false;
}

long liveAllocations() {
    return live;
}

} // namespace kovalune::test

void* operator new(std::size_t size) {
    void* const memory = allocated(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void operator delete(void* memory) noexcept {
    freed(memory);
}
void operator delete[](void* memory) noexcept {
    freed(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    freed(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    freed(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    freed(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    freed(memory);
}
