// TGA files in and out, bit for bit in samples of 8 bits: grey, grey with alpha, RGB, RGBA and palettes, plain or
// run-length coded, from any corner. Palettes and colours of 15 or 16 bits come out as RGB of 8 (without the
// bit that some take for alpha). Files are written run-length coded, from the bottom up.
//
// Pixels of 32 bits have alpha, as have grey ones of 16, even where the header says that no bits are for it, as
// many programs wrongly do; only if it says so and they are 0 in every pixel are they no alpha. It is straight unless
// the file's extension area says that it was multiplied. That area is kept as a note.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a TGA. The format has no signature: only a header of a kind that is
/// read counts.
bool beginsAsTga(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is no TGA that is read, is damaged or cut short,
/// or is more than kMostPixelsASide wide or high, or 2 GiB of samples. All bytes that the picture needs are known to
/// be there before memory is taken for it.
Picture decodeTgaWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeTga(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeTgaWith(bytes, name, {});
}

/// The bytes of a whole file. The picture has samples of Uint8; notes of other formats are left out. Throws
/// Failure if it has 2 GiB of samples.
std::vector<uint8_t> encodeTga(const Picture& picture);

} // namespace kovalune::pictures
