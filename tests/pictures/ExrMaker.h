// OpenEXR files for tests, made by the OpenEXR library with nothing of the command's own code.
#pragma once

#include <ImfCompression.h>
#include <ImfHeader.h>
#include <ImfLineOrder.h>
#include <ImfPixelType.h>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kovalune::test {

struct ExrLayer {
    std::string name;
    Imf::PixelType type = Imf::HALF;
    std::vector<uint32_t> values; ///< the bits of each sample; none of a subsampled layer
    int sampling = 1;
};

struct ExrSheet {
    int x = 0, y = 0; ///< of the data window
    int width = 0, height = 0;
    Imf::Compression compression = Imf::ZIP_COMPRESSION;
    Imf::LineOrder lineOrder = Imf::INCREASING_Y;
    int tileWidth = 0; ///< 0: scan lines
    int tileHeight = 0;
    std::vector<ExrLayer> layers;
    std::string name;                                 ///< of a part among several
    bool deep = false;                                ///< of a part among several, without samples
    std::function<void(Imf::Header&)> moreAttributes; ///< the display window is the data window without
};

/// A layer with random bits, NaN among them; the same for the same seed.
ExrLayer randomLayer(const std::string& name, Imf::PixelType type, const ExrSheet& sheet, uint32_t seed);

/// The bits of plain numbers.
std::vector<uint32_t> halves(const std::vector<float>& values);
std::vector<uint32_t> floats(const std::vector<float>& values);

/// The bytes of a file of one part, or of several.
std::vector<uint8_t> exrOf(const ExrSheet& sheet);
std::vector<uint8_t> exrOf(const std::vector<ExrSheet>& parts);

/// Of a deep picture with a single channel Z and no samples.
std::vector<uint8_t> deepExr(int width, int height);

/// Where the value of an attribute begins in the first header, by its name and type.
std::size_t valuePlace(const std::vector<uint8_t>& file, const std::string& name, const std::string& type);

/// The bits of a channel that is not subsampled, as the library reads it; `part` counts from 0.
std::vector<uint32_t> valuesIn(const std::vector<uint8_t>& file, int part, const std::string& channel);

/// The headers of a file's parts, as the library reads them.
std::vector<Imf::Header> headersOf(const std::vector<uint8_t>& file);

/// The header of a file of one part.
Imf::Header headerOf(const std::vector<uint8_t>& file);

} // namespace kovalune::test
