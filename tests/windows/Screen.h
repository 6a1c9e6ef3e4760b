// What a window looks like, as pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <windows.h>

namespace kovalune::test {

/// Rows from the top, without padding; a pixel is 0x00RRGGBB.
struct ScreenPicture {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;

    uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

/// The window with its frame.
ScreenPicture pictureOf(HWND window);

ScreenPicture pictureOf(HBITMAP bitmap);

/// As a BMP file of 32 bits. False if it cannot be written.
bool writePicture(const ScreenPicture& picture, const std::string& file);

} // namespace kovalune::test
