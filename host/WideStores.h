// Copies and clears of many bytes. What is far larger than the processor's caches is stored past them where there is an
// instruction for it: the old bytes are then not fetched only to be overwritten, and what the caches hold stays there.
#pragma once

#include <cstddef>

namespace kovalune::host {

/// A whole of so many bytes will have left the caches before it is looked at again.
inline constexpr std::size_t kBeyondCaches = std::size_t{4} << 20;

/// Of ranges that have no byte in common.
using ByteCopy = void (*)(std::byte* to, const std::byte* from, std::size_t count);
using ByteClear = void (*)(std::byte* bytes, std::size_t count);

/// What does it best for parts of a whole of so many bytes.
[[nodiscard]] ByteCopy copyFor(std::size_t wholeBytes);
[[nodiscard]] ByteClear clearFor(std::size_t wholeBytes);

} // namespace kovalune::host
