// Where a layer over the host has a say in its memory: how blocks are taken and given back, and what is done to the
// bytes of handles and worlds. The host's own takes them from its pool and does nothing else.
#pragma once

#include "host/MemoryPool.h"
#include "host/WorldMemory.h"

#include <cstddef>
#include <memory>

namespace kovalune::host {

/// May be called by several threads at once.
class MemoryWatch {
public:
    MemoryWatch() = default;
    virtual ~MemoryWatch() = default;
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;

    /// As MemoryPool has it.
    [[nodiscard]] virtual MemoryBlock take(MemoryPool& pool, std::size_t bytes, const BlockPolicy& policy) {
        return pool.take(bytes, policy);
    }
    virtual void give(MemoryPool& pool, const MemoryBlock& block, const BlockPolicy& policy) {
        pool.give(block, policy);
    }

    /// Bytes of a handle that the effect has not written yet.
    virtual void handleGrown(std::byte* /*bytes*/, std::size_t /*count*/) {}

    /// Before the bytes of a handle are given back.
    virtual void handleGoes(const MemoryBlock& /*block*/) {}

    /// What the effect knew a handle by. Once this has gone, a new handle may have the same address.
    virtual void handleGone(std::unique_ptr<void*> /*place*/) {}

    /// Further bytes after the padding of each row of a world.
    virtual std::size_t rowGuardBytes() const { return 0; }

    /// Of the host's own memory, not of a caller's. Cleared ones are transparent black by now.
    virtual void worldMade(const WorldMemory& /*world*/, bool /*cleared*/) {}
    virtual void worldGoes(const WorldMemory& /*world*/) {}

    /// A world with the input's pixels, from when the effect gets it to when it is taken back; `tag` stands for it.
    virtual void inputLent(const void* /*tag*/, const WorldInfo& /*world*/) {}
    virtual void inputBack(const void* /*tag*/, const WorldInfo& /*world*/) {}
};

} // namespace kovalune::host
