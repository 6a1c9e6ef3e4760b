// Memory between two pages that nobody may touch, as close to one of them as its alignment allows.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <new>

namespace kovalune::test {

enum class Fence : uint8_t { kBefore, kAfter };

class FencedMemory {
public:
    /// The first byte stands right after the page before, or the last one right before the page after.
    FencedMemory(std::size_t bytes, Fence fence)
        : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          whole_((bytes + page_ - 1) / page_ * page_ + 2 * page_) {
        void* const mapped =
            mmap(nullptr, whole_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) {
            throw std::bad_alloc();
        }
        mapped_ = static_cast<uint8_t*>(mapped);
        if (mprotect(mapped_, page_, PROT_NONE) != 0 ||
            mprotect(mapped_ + whole_ - page_, page_, PROT_NONE) != 0) {
            munmap(mapped_, whole_);
            throw std::bad_alloc();
        }
        data_ = fence == Fence::kBefore ? mapped_ + page_ : mapped_ + whole_ - page_ - bytes;
    }
    ~FencedMemory() { munmap(mapped_, whole_); }
    FencedMemory(const FencedMemory&) = delete;
    FencedMemory& operator=(const FencedMemory&) = delete;

    uint8_t* data() const { return data_; }

private:
    std::size_t page_;
    std::size_t whole_;
    uint8_t* mapped_ = nullptr;
    uint8_t* data_ = nullptr;
};

} // namespace kovalune::test
