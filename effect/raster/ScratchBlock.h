// Scratch memory of one iteration of a pass, taken once at its start. No exception may cross the host's
// iteration call, so a failed allocation shows as null.
#pragma once

#include "effect/raster/Workbench.h"
#include "effect/share/SizeProduct.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace kovalune {

class ScratchBlock {
public:
    explicit ScratchBlock(std::size_t bytes) : own_(new (std::nothrow) uint8_t[bytes]), memory_(own_.get()) {}

    /// Of the bench's slot for iteration `i`; memory of its own without a bench, or where the bench has no such slot.
    ScratchBlock(Workbench* bench, int32_t i, std::size_t bytes) {
        if (bench != nullptr && i < Workbench::kSlots) {
            memory_ = bench->take(i, bytes);
        } else {
            own_.reset(new (std::nothrow) uint8_t[bytes]);
            memory_ = own_.get();
        }
    }

    /// Aligned for every fundamental type; null where there was no memory.
    uint8_t* memory() const { return memory_; }

private:
    std::unique_ptr<uint8_t[]> own_;
    uint8_t* memory_ = nullptr;
};

/// Deals out a block of memory. Run once on no memory it tells how many bytes it takes.
class ScratchLayout {
public:
    explicit ScratchLayout(uint8_t* memory = nullptr) : memory_(memory) {}

    /// Room for `count` objects, on a cache line of its own.
    template <class T>
    T* take(std::size_t count) {
        const std::size_t at = bytes_;
        bytes_ += (sizeProduct<std::size_t>(count, sizeof(T)) + 63) / 64 * 64;
        return memory_ != nullptr ? static_cast<T*>(static_cast<void*>(memory_ + at)) : nullptr;
    }

    std::size_t bytes() const { return bytes_; }

private:
    uint8_t* memory_;
    std::size_t bytes_ = 0;
};

} // namespace kovalune
