// Raw memory for worlds and handles, kept for reuse between frames: a fresh large block costs more in page
// faults than most work done on it, even than clearing a used one.
#pragma once

#include <cstddef>
#include <cstdint>
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
    bool zeros = false;        ///< as it came from the system: every byte is 0
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

    /// Contents are undefined but for what the block says of them. A null payload: the memory cannot be had.
    [[nodiscard]] MemoryBlock take(std::size_t bytes, const BlockPolicy& policy);

    /// Keeps the block for reuse if the policy and its cap allow it, in the place of those that have been kept longest.
    void give(const MemoryBlock& block, const BlockPolicy& policy);

    std::size_t pooledBytes() const;

private:
    struct Kept {
        std::byte* base;
        uint64_t since; ///< counts what was given
    };
    using KeptBlocks =
        std::multimap<std::size_t, Kept>; ///< by capacity; of one capacity in the order they came

    std::byte* takePooled(std::size_t needed, std::size_t& capacity);
    [[nodiscard]] bool keep(const MemoryBlock& block, std::size_t mostBytes);
    void dropOldest(); ///< with mutex_ held

    mutable std::mutex mutex_;
    KeptBlocks free_;
    std::size_t freeBytes_ = 0;
    uint64_t given_ = 0;
};

} // namespace kovalune::host
