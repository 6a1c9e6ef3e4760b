// What this process holds of the system, for tests that nothing is left behind.
#pragma once

#include <windows.h>

#include <cstddef>
#include <ostream>

namespace kovalune::test {

/// Counts, or the growth of counts.
struct ProcessUsage {
    std::ptrdiff_t handles = 0;
    std::ptrdiff_t threadSlots = 0; ///< for thread-local storage, before the first that can be had
    std::ptrdiff_t heapBlocks = 0;  ///< in use in all heaps; unlike bytes, always the same for the same calls

    static ProcessUsage now();

    ProcessUsage operator-(const ProcessUsage& other) const;
    friend bool operator==(const ProcessUsage&, const ProcessUsage&) = default;
};

std::ostream& operator<<(std::ostream& stream, const ProcessUsage& usage);

} // namespace kovalune::test
