// TIFF files for tests, made by the TIFF library with nothing of the command's own code.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <tiffio.h>
#include <vector>

namespace kovalune::test {

struct TiffPage {
    uint32_t width = 0;
    uint32_t height = 0;
    uint16_t bits = 8;
    uint16_t samples = 1;
    uint16_t format = SAMPLEFORMAT_UINT;
    uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    uint16_t compression = COMPRESSION_NONE;
    uint16_t planar = PLANARCONFIG_CONTIG;
    uint32_t rowsPerStrip = 3;
    uint32_t tileWidth = 0; ///< 0: strips
    uint32_t tileHeight = 0;
    std::string mode = "w";              // of TIFFOpen: b and l for byte orders, 8 for BigTIFF
    std::vector<uint16_t> extras;        ///< kinds of the extra samples
    std::vector<uint16_t> palette;       ///< all reds, all greens, all blues
    std::function<void(TIFF*)> moreTags; ///< to be set before the samples
    std::vector<uint32_t> values;        ///< the bits of each sample, pixel by pixel
};

/// With random bits in all samples; the same for the same seed.
void fillRandomly(TiffPage& page, uint32_t seed);

/// The bytes of a file with these pages.
std::vector<uint8_t> tiffOf(const std::vector<TiffPage>& pages);
std::vector<uint8_t> tiffOf(const TiffPage& page);

/// Where the bytes of an entry of the first page begin in a little-endian classic file: tag, type, count, value.
/// 0 if there is none.
std::size_t entryPlace(const std::vector<uint8_t>& file, uint16_t tag);

/// Sets the value of such an entry, as a single LONG.
void patchEntry(std::vector<uint8_t>& file, uint16_t tag, uint32_t value);

/// What the library says of a tag of a file's first page.
uint16_t shortTagOf(const std::vector<uint8_t>& file, uint32_t tag);

} // namespace kovalune::test
