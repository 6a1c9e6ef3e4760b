// Raw memory for worlds and handles, kept for reuse between frames: a fresh large block costs more in page
// faults than most work done on it. A block remembers its guards and checks them when asked.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>

namespace kovalune::host {

/// How a block is laid out and treated.
struct BlockPolicy {
    bool audit = false;           ///< guards on both sides, no reuse
    std::size_t dataOffset = 0;   ///< bytes by which the payload misses 64-byte alignment
    std::size_t poolCapBytes = 0; ///< bytes the pool may keep
};

/// One piece of memory in use. Plain data; returned through MemoryPool::give.
struct MemoryBlock {
    std::byte* base = nullptr; ///< 64-byte aligned
    std::size_t capacity = 0;  ///< bytes from base
    std::byte* payload = nullptr;
    std::size_t payloadBytes = 0;
    bool guarded = false;

    bool guardsIntact() const; ///< true without guards
};

class MemoryPool {
public:
    MemoryPool() = default;
    ~MemoryPool();
    MemoryPool(const MemoryPool&) = delete;
    MemoryPool& operator=(const MemoryPool&) = delete;

    /// Contents are undefined. A null payload: the memory cannot be had.
    MemoryBlock take(std::size_t bytes, const BlockPolicy& policy);

    /// Keeps the block for reuse if it has no guards and the cap allows it.
    void give(const MemoryBlock& block, const BlockPolicy& policy);

    std::size_t pooledBytes() const;

private:
    std::byte* takePooled(std::size_t needed, std::size_t& capacity);

    mutable std::mutex mutex_;
    std::multimap<std::size_t, std::byte*> free_; ///< by capacity
    std::size_t freeBytes_ = 0;
};

} // namespace kovalune::host
