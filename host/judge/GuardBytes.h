// Guard bytes: a known pattern around memory that an effect writes, so that a stray write is found later.
// Under AddressSanitizer they can be closed altogether, so that a stray read is found at once.
#pragma once

#include <cstddef>

namespace kovalune::host::judge {

inline constexpr std::byte kGuardByte{0xA5};
inline constexpr std::byte kPaddingByte{0x5C};

void fillBytes(std::byte* bytes, std::size_t count, std::byte value);

/// Whether all bytes still hold `value`.
[[nodiscard]] bool bytesIntact(const std::byte* bytes, std::size_t count, std::byte value);

/// Do nothing in builds without AddressSanitizer.
void closeMemory(const void* bytes, std::size_t count);
void openMemory(const void* bytes, std::size_t count);

} // namespace kovalune::host::judge
