#include "host/MemoryPool.h"

#include <limits>
#include <new>

namespace kovalune::host {

namespace {

constexpr std::size_t kAlignment = 64;

std::byte* allocate(std::size_t bytes) {
    return static_cast<std::byte*>(::operator new (bytes, std::align_val_t{kAlignment}, std::nothrow));
}

void release(std::byte* base) {
    ::operator delete (base, std::align_val_t{kAlignment});
}

} // namespace

MemoryPool::~MemoryPool() {
    for (const auto& [capacity, base] : free_) {
        release(base);
    }
}

std::byte* MemoryPool::takePooled(std::size_t needed, std::size_t& capacity) {
    const std::lock_guard lock(mutex_);
    const auto found = free_.lower_bound(needed);
    // A much larger block is left for the request it fits.
    if (found == free_.end() || found->first - needed > needed / 4 + kAlignment) {
        return nullptr;
    }
    std::byte* base = found->second;
    capacity = found->first;
    freeBytes_ -= capacity;
    free_.erase(found);
    return base;
}

MemoryBlock MemoryPool::take(std::size_t bytes, const BlockPolicy& policy) {
    if (bytes > std::numeric_limits<std::size_t>::max() / 2) {
        return {};
    }
    const std::size_t needed = policy.dataOffset + bytes + policy.tailBytes;
    MemoryBlock block;
    block.capacity = needed == 0 ? 1 : needed;
    if (!policy.fresh) {
        block.base = takePooled(block.capacity, block.capacity);
    }
    if (block.base == nullptr) {
        block.base = allocate(block.capacity);
    }
    if (block.base == nullptr) {
        return {};
    }
    block.payload = block.base + policy.dataOffset;
    block.payloadBytes = bytes;
    return block;
}

void MemoryPool::give(const MemoryBlock& block, const BlockPolicy& policy) {
    if (block.base == nullptr) {
        return;
    }
    if (!policy.fresh) {
        const std::lock_guard lock(mutex_);
        if (block.capacity <= policy.poolCapBytes && freeBytes_ <= policy.poolCapBytes - block.capacity) {
            free_.emplace(block.capacity, block.base);
            freeBytes_ += block.capacity;
            return;
        }
    }
    release(block.base);
}

std::size_t MemoryPool::pooledBytes() const {
    const std::lock_guard lock(mutex_);
    return freeBytes_;
}

} // namespace kovalune::host
