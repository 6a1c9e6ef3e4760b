// TGA files for tests, byte by byte, with nothing of the command's own code.
#pragma once

#include <cstdint>
#include <vector>

namespace kovalune::test {

struct TgaParts {
    int type = 2; ///< 1 palette, 2 colour, 3 grey; 8 more with run lengths
    int width = 0;
    int height = 0;
    int depth = 24;
    int descriptor = 0x20; ///< bits of alpha; 0x10 from the right, 0x20 from the top
    std::vector<uint8_t> text;
    std::vector<uint8_t> palette; ///< as it stands
    int paletteDepth = 24;
    int paletteStart = 0;
    std::vector<uint8_t> pixels; ///< as they stand
    std::vector<uint8_t> extension;
};

std::vector<uint8_t> tgaFile(const TgaParts& parts);

/// An extension area that says this of alpha: 3 straight, 4 multiplied.
std::vector<uint8_t> tgaExtensionArea(uint8_t alphaType);

} // namespace kovalune::test
