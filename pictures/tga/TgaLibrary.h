// The foreign code for TGA files behind two functions. It checks little: its callers have checked what they give
// it.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kovalune::pictures {

/// What its numbers can count: samples of a picture, bytes of a file.
inline constexpr uint64_t kMostTgaBytes = 0x7fffffff;

/// The samples of all rows from the top down, with as many channels as the file has; nothing where the file is
/// refused. Throws std::bad_alloc.
std::vector<uint8_t> loadTga(std::span<const uint8_t> bytes);

/// The bytes of a file without an extension area.
std::vector<uint8_t> saveTga(const Picture& picture);

} // namespace kovalune::pictures
