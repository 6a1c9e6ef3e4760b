#include "host/MemoryPool.h"

#include "host/SystemMemory.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>

#ifdef KOVALUNE_MEMCHECK
#include <valgrind/memcheck.h>
#endif
#ifdef KOVALUNE_MEMORY_SANITIZED
#include <sanitizer/msan_interface.h>
#endif

namespace kovalune::host {

namespace {

/// A block has been used before, or its zeros are the system's: whoever reads it unwritten would not be found out by that. To
/// valgrind and to the memory sanitizer nobody has written it yet.
void forgetContents([[maybe_unused]] MemoryBlock& block) {
#ifdef KOVALUNE_MEMCHECK
    VALGRIND_MAKE_MEM_UNDEFINED(block.base, block.capacity);
    block.zeros = false;
#endif
#ifdef KOVALUNE_MEMORY_SANITIZED
    __msan_allocated_memory(block.base, block.capacity);
    block.zeros = false;
#endif
}

} // namespace

MemoryPool::~MemoryPool() {
    for (const auto& [capacity, kept] : free_) {
        giveToSystem({kept.base, capacity});
    }
}

std::byte* MemoryPool::takePooled(std::size_t needed, std::size_t& capacity) {
    const std::lock_guard lock(mutex_);
    const auto fitting = free_.lower_bound(needed);
    // A much larger block is left for the request it fits.
    if (fitting == free_.end() || fitting->first - needed > needed / 4 + kSystemAlignment) {
        return nullptr;
    }
    // The one that was in use last is the likeliest to be in a cache still.
    const auto latest = std::prev(free_.upper_bound(fitting->first));
    std::byte* base = latest->second.base;
    capacity = latest->first;
    freeBytes_ -= capacity;
    free_.erase(latest);
    return base;
}

MemoryBlock MemoryPool::take(std::size_t bytes, const BlockPolicy& policy) {
    if (bytes > std::numeric_limits<std::size_t>::max() / 2) {
        return {};
    }
    const std::size_t needed = std::max<std::size_t>(policy.dataOffset + bytes + policy.tailBytes, 1);
    MemoryBlock block;
    if (!policy.fresh) {
        block.base = takePooled(needed, block.capacity);
    }
    if (block.base == nullptr) {
        const SystemMemory memory = takeFromSystem(needed);
        block.base = memory.base;
        block.capacity = memory.bytes;
        block.zeros = memory.zeros;
    }
    if (block.base == nullptr) {
        return {};
    }
    forgetContents(block);
    block.payload = block.base + policy.dataOffset;
    block.payloadBytes = bytes;
    return block;
}

void MemoryPool::dropOldest() {
    const auto oldest = std::min_element(free_.begin(), free_.end(), [](const auto& a, const auto& b) {
        return a.second.since < b.second.since;
    });
    giveToSystem({oldest->second.base, oldest->first});
    freeBytes_ -= oldest->first;
    free_.erase(oldest);
}

bool MemoryPool::keep(const MemoryBlock& block, std::size_t mostBytes) {
    if (block.capacity > mostBytes) {
        return false;
    }
    const std::lock_guard lock(mutex_);
    try {
        free_.emplace(block.capacity, Kept{block.base, given_++});
    } catch (const std::bad_alloc&) {
        return false;
    }
    freeBytes_ += block.capacity;
    while (freeBytes_ > mostBytes) {
        dropOldest();
    }
    return true;
}

void MemoryPool::give(const MemoryBlock& block, const BlockPolicy& policy) {
    if (block.base == nullptr || (!policy.fresh && keep(block, policy.poolCapBytes))) {
        return;
    }
    giveToSystem({block.base, block.capacity});
}

std::size_t MemoryPool::pooledBytes() const {
    const std::lock_guard lock(mutex_);
    return freeBytes_;
}

} // namespace kovalune::host
