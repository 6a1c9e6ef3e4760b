#include "tests/host/AllocationControl.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

thread_local bool memoryRefused = false;
thread_local std::size_t largestRequest = 0;

} // namespace

void* operator new(std::size_t bytes) {
    largestRequest = std::max(largestRequest, bytes);
    void* memory = memoryRefused ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace kovalune::host::test {

void refuseMemory(bool refused) {
    memoryRefused = refused;
}

NoMemory::NoMemory() {
    refuseMemory(true);
}
NoMemory::~NoMemory() {
    refuseMemory(false);
}

LargestRequest::LargestRequest() {
    largestRequest = 0;
}
std::size_t LargestRequest::bytes() const {
    return largestRequest;
}

} // namespace kovalune::host::test
