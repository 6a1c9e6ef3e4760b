// Scratch memory of one iteration of a pass, taken once at its start. No exception may cross the host's
// iteration call, so a failed allocation shows as null.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace kovalune {

class ScratchBlock {
public:
    explicit ScratchBlock(std::size_t bytes) : memory_(new (std::nothrow) uint8_t[bytes]) {}

    /// Aligned for every fundamental type; null where there was no memory.
    uint8_t* memory() const { return memory_.get(); }

private:
    std::unique_ptr<uint8_t[]> memory_;
};

} // namespace kovalune
