#include "tests/support/AllocationControl.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

thread_local bool memoryRefused = false;
thread_local std::size_t largestRequest = 0;
thread_local long live = 0;

std::atomic<int> scratchRequests{0};
std::atomic<std::size_t> scratchBytes{0};
std::atomic<int> failingScratch{0}; ///< 0: none

void* allocated(std::size_t bytes) noexcept {
    largestRequest = std::max(largestRequest, bytes);
    void* const memory = memoryRefused ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
    live += memory != nullptr ? 1 : 0;
    return memory;
}

void* allocatedOrThrown(std::size_t bytes) {
    void* const memory = allocated(bytes);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void freed(void* memory) noexcept {
    live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

namespace kovalune::test {

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

long liveAllocations() {
    return live;
}

ScratchPlan::ScratchPlan(int failing) {
    scratchRequests = 0;
    failingScratch = failing;
}
ScratchPlan::~ScratchPlan() {
    failingScratch = 0;
}
int ScratchPlan::requests() const {
    return scratchRequests;
}
std::size_t ScratchPlan::bytes() const {
    return scratchBytes;
}
bool ScratchPlan::hasFailed() const {
    return scratchRequests >= failingScratch;
}

} // namespace kovalune::test

void* operator new(std::size_t bytes) {
    return allocatedOrThrown(bytes);
}
void* operator new[](std::size_t bytes) {
    return allocatedOrThrown(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
    return allocated(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
    const int request = scratchRequests.fetch_add(1) + 1;
    scratchBytes = bytes;
    return request == failingScratch ? nullptr : allocated(bytes);
}
void operator delete(void* memory) noexcept {
    freed(memory);
}
void operator delete[](void* memory) noexcept {
    freed(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
    freed(memory);
}
void operator delete[](void* memory, std::size_t /*bytes*/) noexcept {
    freed(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    freed(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    freed(memory);
}
