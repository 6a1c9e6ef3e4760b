#include "host/MemoryPool.h"

#include "host/Guard.h"

#include <limits>
#include <new>

namespace kovalune::host {

namespace {

constexpr std::size_t kAlignment = 64;
constexpr std::size_t kGuardBytes = 64;

std::byte* allocate(std::size_t bytes) {
    return static_cast<std::byte*>(::operator new (bytes, std::align_val_t{kAlignment}, std::nothrow));
}

void release(std::byte* base) {
    ::operator delete (base, std::align_val_t{kAlignment});
}

std::size_t frontBytes(const MemoryBlock& block) {
    return static_cast<std::size_t>(block.payload - block.base);
}

void openGuards(const MemoryBlock& block) {
    openMemory(block.base, frontBytes(block));
    openMemory(block.payload + block.payloadBytes, kGuardBytes);
}

void closeGuards(const MemoryBlock& block) {
    closeMemory(block.base, frontBytes(block));
    closeMemory(block.payload + block.payloadBytes, kGuardBytes);
}

} // namespace

bool MemoryBlock::guardsIntact() const {
    if (!guarded) {
        return true;
    }
    openGuards(*this);
    const bool intact = bytesIntact(base, frontBytes(*this), kGuardByte) &&
                        bytesIntact(payload + payloadBytes, kGuardBytes, kGuardByte);
    closeGuards(*this);
    return intact;
}

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
    const std::size_t front = (policy.audit ? kGuardBytes : 0) + policy.dataOffset;
    const std::size_t back = policy.audit ? kGuardBytes : 0;
    if (bytes > std::numeric_limits<std::size_t>::max() / 2) {
        return {};
    }
    const std::size_t needed = front + bytes + back;
    MemoryBlock block;
    block.capacity = needed == 0 ? 1 : needed;
    if (!policy.audit) {
        block.base = takePooled(block.capacity, block.capacity);
    }
    if (block.base == nullptr) {
        block.base = allocate(block.capacity);
    }
    if (block.base == nullptr) {
        return {};
    }
    block.payload = block.base + front;
    block.payloadBytes = bytes;
    block.guarded = policy.audit;
    if (block.guarded) {
        fillBytes(block.base, front, kGuardByte);
        fillBytes(block.payload + bytes, back, kGuardByte);
        closeGuards(block);
    }
    return block;
}

void MemoryPool::give(const MemoryBlock& block, const BlockPolicy& policy) {
    if (block.base == nullptr) {
        return;
    }
    if (block.guarded) {
        openGuards(block);
    } else if (!policy.audit) {
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
