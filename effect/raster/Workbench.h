// Scratch memory that the passes of a frame share: a slot for each iteration, which keeps what its iteration first asked for
// until the frame ends, so that a pass asks the system for nothing that an earlier one had.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace kovalune {

/// An iteration may use its own slot alone; two with different numbers may run at once.
class Workbench {
public:
    static constexpr int32_t kSlots = 64;

    /// At least `bytes` bytes of slot `number`, below kSlots, of any content; null where there was no memory, and what the
    /// slot held is gone then.
    uint8_t* take(int32_t number, std::size_t bytes) {
        Slot& slot = slots_[static_cast<std::size_t>(number)];
        if (slot.bytes < bytes) {
            slot.memory.reset();
            slot.memory.reset(new (std::nothrow) uint8_t[bytes]);
            slot.bytes = slot.memory != nullptr ? bytes : 0;
        }
        return slot.memory.get();
    }

private:
    struct Slot {
        std::unique_ptr<uint8_t[]> memory;
        std::size_t bytes = 0;
    };
    std::array<Slot, kSlots> slots_;
};

} // namespace kovalune
