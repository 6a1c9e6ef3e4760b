// The compressions of TIFF files: which are read, which are written again, and how much they can hold.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::pictures {

struct TiffCompression {
    uint16_t tag;
    const char* name;
    bool isRead;
    bool isKept;            ///< lossless for all that is read: written as it was read
    bool hasPredictor;      ///< stores differences of samples, which compress better
    bool goesOn;            ///< its decoder only warns of damage
    uint32_t mostExpansion; ///< bytes that one compressed byte may stand for; 0: up to eight rows
};

/// Deflate.
inline constexpr uint16_t kUsualTiffCompression = 8;

/// Null for a number that nothing is known of.
const TiffCompression* tiffCompression(uint16_t tag);

/// The note of a picture that was compressed so.
PictureNote tiffCompressionNote(uint16_t tag);

/// The compression to write with: what the notes say where that is kept, or kUsualTiffCompression.
uint16_t tiffCompressionOf(const std::vector<PictureNote>& notes);

/// Of one of tiffCompressionNames.
uint16_t tiffCompressionNamed(const std::string& name);

/// The name, or "compression 12345".
std::string tiffCompressionName(uint16_t tag);

} // namespace kovalune::pictures
