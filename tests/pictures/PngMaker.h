// PNG files for tests, made and read with nothing of the command's own code: the bytes of a row are exactly
// those that the format defines, packed and with the high byte first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::test {

enum class PngColor { kGrey = 0, kRgb = 2, kPalette = 3, kGreyAlpha = 4, kRgbAlpha = 6 };

struct PngPicture {
    uint32_t width = 0;
    uint32_t height = 0;
    PngColor color = PngColor::kRgb;
    int depth = 8;
    bool interlaced = false;
    std::vector<uint8_t> rows;                                       ///< without padding between rows
    std::vector<uint8_t> palette;                                    ///< red, green, blue, ...
    std::vector<uint8_t> transparency;                               ///< the tRNS chunk as it stands
    std::vector<std::pair<std::string, std::vector<uint8_t>>> notes; ///< chunks before the samples

    std::size_t channels() const;
    std::size_t rowBytes() const;
    std::size_t samplesARow() const { return width * channels(); }

    /// A sample of any depth; `index` counts in the row.
    uint16_t sample(uint32_t y, std::size_t index) const;
};

/// With rows of zeros.
PngPicture blankPng(PngColor color, int depth, uint32_t width, uint32_t height);

/// With random bytes in all rows; the same for the same seed.
PngPicture randomPng(PngColor color, int depth, uint32_t width, uint32_t height, uint32_t seed);

void writePng(const std::filesystem::path& file, const PngPicture& picture);

/// Without the palette and the transparency; notes are the chunks that a colour-managed picture has.
PngPicture readPngFile(const std::filesystem::path& file);

} // namespace kovalune::test
