// Rows of pixels from alpha last to alpha first and back, the bits of their samples as they are.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kovalune::openfx {

enum class SampleOrder : uint8_t { kAlphaFirst, kAlphaLast };

/// Turns `count` pixels of four samples, at any address, from the other order; the two ranges have no byte in common.
using RowTurn = void (*)(std::byte* to, const std::byte* from, std::size_t count);

/// What turns rows of a picture of so many bytes best, samples of one byte or of four. Pictures far larger than the caches are
/// stored past them where there is an instruction for it.
[[nodiscard]] RowTurn turnTo(SampleOrder order, std::size_t sampleBytes, std::size_t pictureBytes);

} // namespace kovalune::openfx
