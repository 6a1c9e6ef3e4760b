// WebP files in: RGB of 8 bits, with straight alpha or without, lossless or lossy. Animations are not read.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a WebP.
bool beginsAsWebp(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is not a WebP, damaged, cut short or an animation. A plain
/// picture of any size fits into few bytes in this format: 64 MiB of samples are taken always, and above that no more than 256
/// KiB for each byte of the file; else it is refused before memory is taken. The note "ICC", if there is one, is the profile.
Picture decodeWebpWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeWebp(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeWebpWith(bytes, name, {});
}

} // namespace kovalune::pictures
