// PNG files in and out, bit for bit: no gamma, no change of depth but the widening of 1, 2 and 4 bits to 8.
// Palettes come out as RGB, transparent colours as alpha; interlaced files are read and never written.
#pragma once

#include "cli/Picture.h"
#include "hostapi/Constants.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace kovalune {

inline constexpr std::uint32_t kMostPixelsASide = PF_MAX_WORLD_WIDTH;

// Throws Failure with the file's name if it is missing, cannot be read, is not a PNG, is damaged or cut
// short, or is more than kMostPixelsASide wide or high. A size that so short a file cannot hold is refused
// before memory is taken for it.
Picture readPng(const std::filesystem::path& file);

// `name` is for messages only.
Picture decodePng(std::span<const std::uint8_t> bytes, const std::string& name);

// The bytes of a whole file. Throws Failure if the picture cannot be written as a PNG.
std::vector<std::uint8_t> encodePng(const Picture& picture);

} // namespace kovalune
