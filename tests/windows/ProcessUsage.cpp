#include "tests/windows/ProcessUsage.h"

#include <array>
#include <cstdint>

namespace kovalune::test {
namespace {

std::ptrdiff_t blocksInUse(HANDLE heap) {
    std::ptrdiff_t blocks = 0;
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
            ++blocks;
        }
    }
    HeapUnlock(heap);
    return blocks;
}

/// Asks after every handle there may be: not every system tells their number.
std::ptrdiff_t handlesInUse() {
    constexpr uintptr_t kStep = 4;
    constexpr uintptr_t kEnd = 0x4000;
    std::ptrdiff_t count = 0;
    for (uintptr_t number = kStep; number < kEnd; number += kStep) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) != FALSE) {
            ++count;
        }
    }
    return count;
}

} // namespace

ProcessUsage ProcessUsage::now() {
    ProcessUsage usage;
    usage.handles = handlesInUse();
    const DWORD slot = TlsAlloc();
    TlsFree(slot);
    usage.threadSlots = static_cast<std::ptrdiff_t>(slot);
    std::array<HANDLE, 64> heaps = {};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
        usage.heapBlocks += blocksInUse(heaps[i]);
    }
    return usage;
}

ProcessUsage ProcessUsage::operator-(const ProcessUsage& other) const {
    return {handles - other.handles, threadSlots - other.threadSlots, heapBlocks - other.heapBlocks};
}

std::ostream& operator<<(std::ostream& stream, const ProcessUsage& usage) {
    return stream << usage.handles << " handles, " << usage.threadSlots << " slots of threads, "
                  << usage.heapBlocks << " blocks in heaps";
}

} // namespace kovalune::test
