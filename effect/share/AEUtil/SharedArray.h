// Reference-counted arrays. The count is a plain integer: a shared array belongs to one thread at a time, as
// a frame's buffers do, and copies are made and dropped only between passes.
#pragma once

#include "effect/share/AEUtil/AEMemory.h"

#include <cstdint>
#include <exception>
#include <new>
#include <utility>

namespace AEUtil {

/// A count block: how many handles share an array, and how to free it.
class SharedCountBase {
public:
    SharedCountBase() = default;
    virtual ~SharedCountBase() = default;
    SharedCountBase(const SharedCountBase&) = delete;
    SharedCountBase& operator=(const SharedCountBase&) = delete;

    /// Deletes the array, then this block. The block goes also where the array's release throws.
    virtual void dispose() = 0;

    int32_t count = 1;
};

/// Deletes an array of the runtime's heap.
template <class T>
struct array_deleter {
    void operator()(T* array) const { delete[] array; }
};

/// Gives an array back to the host's memory.
template <class T>
struct array_deleterAE {
    const SPBasicSuite* basic = nullptr;
    void operator()(T* array) const { AEMemory::release(array, basic); }
};

template <class T, class Deleter>
class SharedCountImpl_PD final : public SharedCountBase {
public:
    SharedCountImpl_PD(T* array, Deleter deleter) : array_(array), deleter_(std::move(deleter)) {}

    void dispose() override {
        struct BlockEnd {
            SharedCountBase* block;
            ~BlockEnd() { delete block; }
        } const end{this};
        if (array_ != nullptr) {
            deleter_(array_);
        }
    }

private:
    T* array_;
    Deleter deleter_;
};

/// A handle on a count block. Its end may throw what the array's release throws, but never during unwinding,
/// where the array then stays with the host rather than ending the process.
class SharedCount {
public:
    SharedCount() = default;

    /// A new block for `array`, which is deleted if there is no memory for the block.
    template <class T, class Deleter>
    static SharedCount adopt(T* array, Deleter deleter) {
        SharedCount handle;
        try {
            handle.block_ = new SharedCountImpl_PD<T, Deleter>(array, deleter);
        } catch (const std::bad_alloc&) {
            if (array != nullptr) {
                deleter(array);
            }
            throw;
        }
        return handle;
    }

    SharedCount(const SharedCount& other) : block_(other.block_) { addUse(); }
    SharedCount(SharedCount&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    SharedCount& operator=(SharedCount other) {
        std::swap(block_, other.block_);
        other.release();
        return *this;
    }
    ~SharedCount() noexcept(false) {
        if (std::uncaught_exceptions() == 0) {
            release();
            return;
        }
        try {
            release();
        } catch (...) { // NOLINT(bugprone-empty-catch): a second exception would end the process
        }
    }

    /// Gives up the block; the last user's release disposes of it.
    void release() {
        SharedCountBase* const block = std::exchange(block_, nullptr);
        if (block != nullptr && block->count-- == 1) {
            block->dispose();
        }
    }

    /// How many handles share the block, 0 for a handle without one.
    int32_t useCount() const { return block_ != nullptr ? block_->count : 0; }

private:
    void addUse() {
        if (block_ != nullptr) {
            ++block_->count;
        }
    }

    SharedCountBase* block_ = nullptr;
};

/// An array of unsigned 16-bit numbers on the runtime's heap, shared by its copies.
class SharedArray {
public:
    /// No array, but a block of its own; without memory for one, no block either.
    SharedArray() noexcept {
        try {
            owner_ = SharedCount::adopt<uint16_t>(nullptr, array_deleter<uint16_t>());
        } catch (const std::bad_alloc&) {
            owner_ = SharedCount();
        }
    }

    /// `size` elements of value 0. Throws std::bad_alloc.
    explicit SharedArray(std::size_t size)
        : address_(new uint16_t[size]()), owner_(SharedCount::adopt(address_, array_deleter<uint16_t>())) {}

    uint16_t* address() const { return address_; }
    int32_t useCount() const { return owner_.useCount(); }

private:
    uint16_t* address_ = nullptr;
    SharedCount owner_;
};

} // namespace AEUtil
