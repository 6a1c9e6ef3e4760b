// BMP files in, bit for bit in samples of 8 bits: palettes of 1, 4 and 8 bits, 16, 24 and 32 bits a pixel, from either end.
// Run lengths are not read. An alpha that is full or 0 in every pixel is none, since most programs do not mean it.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a BMP.
bool beginsAsBmp(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is no BMP that is read, is cut short, or is more than
/// kMostPixelsASide wide or high. All bytes that the picture needs are known to be there before memory is taken for it.
Picture decodeBmpWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeBmp(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeBmpWith(bytes, name, {});
}

} // namespace kovalune::pictures
