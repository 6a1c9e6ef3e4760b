// Raw memory for worlds and handles, kept for reuse between frames: a fresh large block costs more in page
// faults than most work done on it.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>

namespace kovalune::host {

/// How a block is laid out and treated.
struct BlockPolicy {
    std::size_t dataOffset = 0;   ///< bytes by which the payload misses 64-byte alignment
    std::size_t tailBytes = 0;    ///< bytes after the payload
    std::size_t poolCapBytes = 0; ///< bytes the pool may keep
    bool fresh = false;           ///< neither taken from what the pool keeps nor put there
};

/// One piece of memory in use. Plain data; returned through the MemoryWatch that it came from.
struct MemoryBlock {
    std::byte* base = nullptr; ///< 64-byte aligned
    std::size_t capacity = 0;  ///< bytes from base
    std::byte* payload = nullptr;
    std::size_t payloadBytes = 0;
    bool guarded = false; ///< a MemoryWatch keeps a pattern around the payload
};

class MemoryPool {
public:
    MemoryPool() = default;
    ~MemoryPool();
    MemoryPool(const MemoryPool&) = delete;
    MemoryPool& operator=(const MemoryPool&) = delete;

    /// Contents are undefined. A null payload: the memory cannot be had.
    [[nodiscard]] MemoryBlock take(std::size_t bytes, const BlockPolicy& policy);

    /// Keeps the block for reuse if the policy and its cap allow it.
    void give(const MemoryBlock& block, const BlockPolicy& policy);

    std::size_t pooledBytes() const;

private:
    std::byte* takePooled(std::size_t needed, std::size_t& capacity);

    mutable std::mutex mutex_;
    std::multimap<std::size_t, std::byte*> free_; ///< by capacity
    std::size_t freeBytes_ = 0;
};

} // namespace kovalune::host
