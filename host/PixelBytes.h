// The bytes of a picture: zeros from the start, by the system's own doing where they are many.
#pragma once

#include "host/SystemMemory.h"

#include <cstddef>
#include <utility>

namespace kovalune::host {

class PixelBytes {
public:
    PixelBytes() = default;

    /// Throws std::bad_alloc without memory.
    explicit PixelBytes(std::size_t count);
    PixelBytes(const PixelBytes& other);
    PixelBytes(PixelBytes&& other) noexcept
        : memory_(std::exchange(other.memory_, {})), count_(std::exchange(other.count_, 0)) {}
    PixelBytes& operator=(PixelBytes other) noexcept {
        std::swap(memory_, other.memory_);
        std::swap(count_, other.count_);
        return *this;
    }
    ~PixelBytes();

    std::byte* data() { return memory_.base; }
    const std::byte* data() const { return memory_.base; }
    bool empty() const { return count_ == 0; }

    friend bool operator==(const PixelBytes& a, const PixelBytes& b);

private:
    SystemMemory memory_;
    std::size_t count_ = 0;
};

} // namespace kovalune::host
