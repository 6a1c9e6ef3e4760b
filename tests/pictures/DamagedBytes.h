// Files cut short and files with wrong bytes: a decoder must fail in its one way or give a whole picture.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kovalune::test {

using Decode = std::function<pictures::Picture(std::span<const uint8_t>, const std::string&)>;

/// The text of the Failure that decoding ends in, "" if it does not.
std::string refusalOf(const Decode& decode, std::span<const uint8_t> bytes);

/// The same while the memory of the process may grow by `mostGrowth` bytes only (where no sanitizer needs its address space for
/// itself).
std::string refusalInLittleMemory(const Decode& decode, std::span<const uint8_t> bytes,
                                  std::size_t mostGrowth);

/// Expects a Failure for each beginning of the file that ends before `last`, and no crash past that.
void expectBeginningsRefused(const Decode& decode, const std::vector<uint8_t>& file, std::size_t last);

/// Decodes the file with each byte changed to a few other values, while the memory of the process may grow by
/// `mostGrowth` bytes only (where no sanitizer needs its address space for itself).
void expectWrongBytesBorne(const Decode& decode, const std::vector<uint8_t>& file, std::size_t mostGrowth);

} // namespace kovalune::test
