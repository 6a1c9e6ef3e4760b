// PNG files for tests, made and read with nothing of the command's own code: the bytes of a row are exactly
// those that the format defines, packed and with the high byte first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::tests {

enum class PngColor { Grey = 0, Rgb = 2, Palette = 3, GreyAlpha = 4, RgbAlpha = 6 };

struct PngPicture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    PngColor color = PngColor::Rgb;
    int depth = 8;
    bool interlaced = false;
    std::vector<std::uint8_t> rows;                                       // without padding between rows
    std::vector<std::uint8_t> palette;                                    // red, green, blue, ...
    std::vector<std::uint8_t> transparency;                               // the tRNS chunk as it stands
    std::vector<std::pair<std::string, std::vector<std::uint8_t>>> notes; // chunks before the samples

    std::size_t channels() const;
    std::size_t rowBytes() const;
    std::size_t samplesARow() const { return width * channels(); }

    // A sample of any depth; `index` counts in the row.
    std::uint16_t sample(std::uint32_t y, std::size_t index) const;
};

// With rows of zeros.
PngPicture blankPng(PngColor color, int depth, std::uint32_t width, std::uint32_t height);

// With random bytes in all rows; the same for the same seed.
PngPicture randomPng(PngColor color, int depth, std::uint32_t width, std::uint32_t height,
                     std::uint32_t seed);

void writePng(const std::filesystem::path& file, const PngPicture& picture);

// Without the palette and the transparency; notes are the chunks that a colour-managed picture has.
PngPicture readPngFile(const std::filesystem::path& file);

} // namespace kovalune::tests
