#include "host/PixelBytes.h"

#include <cstring>
#include <new>

namespace kovalune::host {

namespace {

/// Of no bytes none.
SystemMemory taken(std::size_t count) {
    if (count == 0) {
        return {};
    }
    const SystemMemory memory = takeFromSystem(count);
    if (memory.base == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

PixelBytes::PixelBytes(std::size_t count) : memory_(taken(count)), count_(count) {
    if (count_ != 0 && !memory_.zeros) {
        std::memset(memory_.base, 0, count_);
    }
}

PixelBytes::PixelBytes(const PixelBytes& other) : memory_(taken(other.count_)), count_(other.count_) {
    if (count_ != 0) {
        std::memcpy(memory_.base, other.memory_.base, count_);
    }
}

PixelBytes::~PixelBytes() {
    if (count_ != 0) {
        giveToSystem(memory_);
    }
}

bool operator==(const PixelBytes& a, const PixelBytes& b) {
    return a.count_ == b.count_ &&
           (a.count_ == 0 || std::memcmp(a.memory_.base, b.memory_.base, a.count_) == 0);
}

} // namespace kovalune::host
