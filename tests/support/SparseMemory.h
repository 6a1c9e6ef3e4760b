// Addresses for more than there is memory: for arithmetic with sizes that no picture of a test could have.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace kovalune::test {

/// Zeros; only pages that are written take memory.
class SparseMemory {
public:
    explicit SparseMemory(std::size_t bytes) : bytes_(bytes) {
        mapped_ =
            mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    }
    ~SparseMemory() {
        if (isThere()) {
            munmap(mapped_, bytes_);
        }
    }
    SparseMemory(const SparseMemory&) = delete;
    SparseMemory& operator=(const SparseMemory&) = delete;

    /// False where the system has not so many addresses to give.
    bool isThere() const { return mapped_ != MAP_FAILED; }
    uint8_t* data() const { return static_cast<uint8_t*>(mapped_); }

private:
    std::size_t bytes_;
    void* mapped_;
};

/// Two megabytes that stand at every two megabytes of the addresses: what is written all over takes no more.
class RepeatedMemory {
public:
    explicit RepeatedMemory(std::size_t bytes)
        : whole_((bytes + kPiece - 1) / kPiece * kPiece), addresses_(whole_) {
        const int file = memfd_create("repeated", MFD_CLOEXEC);
        isThere_ = addresses_.isThere() && file >= 0 && ftruncate(file, kPiece) == 0;
        for (std::size_t at = 0; isThere_ && at < whole_; at += kPiece) {
            isThere_ = mmap(addresses_.data() + at, kPiece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED,
                            file, 0) != MAP_FAILED;
        }
        if (file >= 0) {
            close(file);
        }
    }

    bool isThere() const { return isThere_; }
    uint8_t* data() const { return addresses_.data(); }

private:
    static constexpr std::size_t kPiece = std::size_t{1} << 21;

    std::size_t whole_;
    SparseMemory addresses_;
    bool isThere_ = false;
};

} // namespace kovalune::test
