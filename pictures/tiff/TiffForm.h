// How the samples of a TIFF page lie in its file and what they mean, checked against what is read.
#pragma once

#include "pictures/Picture.h"
#include "pictures/tiff/TiffCompression.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tiffio.h>
#include <vector>

namespace kovalune::pictures {

enum class TiffColours { kMinIsBlack, kMinIsWhite, kRgb, kPalette };

struct TiffForm {
    uint32_t width = 0;
    uint32_t height = 0;
    unsigned bits = 8;        ///< of a sample in the file
    unsigned samples = 1;     ///< of a pixel, those included that are not read
    bool planes = false;      ///< each sample in a plane of its own
    uint32_t blockWidth = 0;  ///< of a tile, or the picture's
    uint32_t blockHeight = 0; ///< of a tile or a strip; the last strip ends with the picture
    bool tiled = false;
    const TiffCompression* compression = nullptr;
    TiffColours colours = TiffColours::kRgb;
    std::optional<unsigned> alpha; ///< the sample's index
    AlphaKind alphaKind = AlphaKind::kStraight;
    SampleType sampleType = SampleType::kUint8; ///< of the picture, but for palettes of 16 bits
    std::vector<std::string> leftOut;

    unsigned colourSamples() const { return colours == TiffColours::kRgb ? 3 : 1; }
    unsigned samplesOfABlock() const { return planes ? 1 : samples; }
};

/// Reads the tags of an open page. `name` is for the Failure where it is of a kind that is not read.
TiffForm tiffForm(TIFF* tiff, const std::string& name);

} // namespace kovalune::pictures
