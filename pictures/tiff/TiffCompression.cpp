#include "pictures/tiff/TiffCompression.h"

#include "pictures/tiff/TiffFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tiffio.h>

namespace kovalune::pictures {

namespace {

/// LZW strings grow by a byte a code, and a code has 9 bits or more; at most 5119 codes make strings. An RLE block of
/// zstd holds 128 KiB in four bytes; LZMA matches hold 273 in a third of a bit. A JPEG block takes two bits or
/// more, and four by four of luminance may share one of chrominance. WebP and LERC have no limit, and the
/// library does not read back what it writes as RLE in words.
constexpr std::array kCompressions = {
    TiffCompression{COMPRESSION_NONE, "none", true, true, false, false, 1},
    TiffCompression{COMPRESSION_LZW, "LZW", true, true, true, false, 5120},
    TiffCompression{COMPRESSION_ADOBE_DEFLATE, "deflate", true, true, true, false, 1032},
    TiffCompression{COMPRESSION_DEFLATE, "deflate", true, false, true, false, 1032},
    TiffCompression{COMPRESSION_PACKBITS, "PackBits", true, true, false, false, 64},
    TiffCompression{COMPRESSION_LZMA, "LZMA", true, true, true, false, 8192},
    TiffCompression{COMPRESSION_ZSTD, "Zstandard", true, true, true, false, 65536},
    TiffCompression{COMPRESSION_CCITTRLE, "CCITT RLE", true, false, false, true, 0},
    TiffCompression{COMPRESSION_CCITTFAX3, "CCITT Group 3", true, false, false, true, 0},
    TiffCompression{COMPRESSION_CCITTFAX4, "CCITT Group 4", true, false, false, true, 0},
    TiffCompression{COMPRESSION_JPEG, "JPEG", true, false, false, true, 1024},
    TiffCompression{COMPRESSION_CCITTRLEW, "CCITT RLE in words", false, false, false, false, 1},
    TiffCompression{COMPRESSION_OJPEG, "old-style JPEG", false, false, false, false, 1},
    TiffCompression{COMPRESSION_WEBP, "WebP", false, false, false, false, 1},
    TiffCompression{COMPRESSION_LERC, "LERC", false, false, false, false, 1},
    TiffCompression{COMPRESSION_JBIG, "JBIG", false, false, false, false, 1},
    TiffCompression{COMPRESSION_JP2000, "JPEG 2000", false, false, false, false, 1},
    TiffCompression{COMPRESSION_SGILOG, "SGI LogL", false, false, false, false, 1},
    TiffCompression{COMPRESSION_SGILOG24, "SGI LogL 24", false, false, false, false, 1},
    TiffCompression{COMPRESSION_PIXARLOG, "PixarLog", false, false, false, false, 1},
    TiffCompression{COMPRESSION_PIXARFILM, "PixarFilm", false, false, false, false, 1},
    TiffCompression{COMPRESSION_NEXT, "NeXT", false, false, false, false, 1},
    TiffCompression{COMPRESSION_THUNDERSCAN, "ThunderScan", false, false, false, false, 1},
};

/// As users write it.
struct ChosenName {
    const char* name;
    uint16_t tag;
};
constexpr std::array kChosenNames = {ChosenName{"none", COMPRESSION_NONE},
                                     ChosenName{"lzw", COMPRESSION_LZW},
                                     ChosenName{"deflate", COMPRESSION_ADOBE_DEFLATE},
                                     ChosenName{"packbits", COMPRESSION_PACKBITS},
                                     ChosenName{"lzma", COMPRESSION_LZMA},
                                     ChosenName{"zstd", COMPRESSION_ZSTD}};

} // namespace

static_assert(kUsualTiffCompression == COMPRESSION_ADOBE_DEFLATE);

const TiffCompression* tiffCompression(uint16_t tag) {
    const auto found = std::find_if(kCompressions.begin(), kCompressions.end(),
                                    [tag](const TiffCompression& each) { return each.tag == tag; });
    return found == kCompressions.end() ? nullptr : &*found;
}

PictureNote tiffCompressionNote(uint16_t tag) {
    PictureNote note{std::to_string(TIFFTAG_COMPRESSION), std::to_string(TIFF_SHORT), {}};
    note.bytes.resize(sizeof tag);
    std::memcpy(note.bytes.data(), &tag, sizeof tag);
    return note;
}

uint16_t tiffCompressionOf(const std::vector<PictureNote>& notes) {
    const auto kept =
        std::find_if(kCompressions.begin(), kCompressions.end(), [&](const TiffCompression& each) {
            return each.isKept &&
                   std::find(notes.begin(), notes.end(), tiffCompressionNote(each.tag)) != notes.end();
        });
    return kept == kCompressions.end() ? kUsualTiffCompression : kept->tag;
}

std::vector<std::string> tiffCompressionNames() {
    std::vector<std::string> names;
    for (const ChosenName& each : kChosenNames) {
        if (TIFFIsCODECConfigured(each.tag) != 0) {
            names.emplace_back(each.name);
        }
    }
    return names;
}

uint16_t tiffCompressionNamed(const std::string& name) {
    return std::find_if(kChosenNames.begin(), kChosenNames.end(),
                        [&name](const ChosenName& each) { return each.name == name; })
        ->tag;
}

std::string tiffCompressionName(uint16_t tag) {
    const TiffCompression* const known = tiffCompression(tag);
    return known != nullptr ? known->name : "compression " + std::to_string(tag);
}

} // namespace kovalune::pictures
