// Memory straight from the system. Large blocks are pages of their own, which the system gives as zeros, so that nobody
// need clear them, and where it can as large pages: a fault for every two megabytes, and fewer to look up in passes that
// go down columns.
#pragma once

#include <cstddef>

namespace kovalune::host {

inline constexpr std::size_t kSystemAlignment = 64;

struct SystemMemory {
    std::byte* base = nullptr; ///< aligned to kSystemAlignment
    std::size_t bytes = 0;     ///< as many as were asked for, or up to an eighth more
    bool zeros = false;        ///< every byte is known to be 0
};

/// A null base: the memory cannot be had.
[[nodiscard]] SystemMemory takeFromSystem(std::size_t bytes);

/// By the base and the bytes that were told when it was taken.
void giveToSystem(const SystemMemory& memory);

} // namespace kovalune::host
