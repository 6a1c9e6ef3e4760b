#include "tests/windows/Screen.h"

#include <fstream>

namespace kovalune::test {
namespace {

BITMAPINFO layoutOf(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height; // from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

template <class Value>
void write(std::ostream& file, const Value& value, std::size_t bytes = sizeof(Value)) {
    file.write(reinterpret_cast<const char*>(&value), static_cast<std::streamsize>(bytes));
}

} // namespace

ScreenPicture pictureOf(HBITMAP bitmap) {
    BITMAP shape = {};
    GetObjectW(bitmap, sizeof shape, &shape);
    ScreenPicture picture{static_cast<int>(shape.bmWidth), static_cast<int>(shape.bmHeight), {}};
    picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));
    BITMAPINFO info = layoutOf(picture.width, picture.height);
    const HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, static_cast<UINT>(picture.height), picture.pixels.data(), &info,
              DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    for (uint32_t& pixel : picture.pixels) {
        pixel &= 0xFFFFFFU;
    }
    return picture;
}

ScreenPicture pictureOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    const int width = static_cast<int>(place.right - place.left);
    const int height = static_cast<int>(place.bottom - place.top);
    const HDC source = GetWindowDC(window);
    const HDC copy = CreateCompatibleDC(source);
    const HBITMAP bitmap = CreateCompatibleBitmap(source, width, height);
    const HGDIOBJ before = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, source, 0, 0, SRCCOPY);
    SelectObject(copy, before);
    const ScreenPicture picture = pictureOf(bitmap);
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(window, source);
    return picture;
}

bool writePicture(const ScreenPicture& picture, const std::string& file) {
    const BITMAPINFO info = layoutOf(picture.width, picture.height);
    BITMAPFILEHEADER header = {};
    header.bfType = 0x4D42; // "BM"
    header.bfOffBits = sizeof header + sizeof info.bmiHeader;
    header.bfSize = static_cast<DWORD>(header.bfOffBits + picture.pixels.size() * sizeof(uint32_t));
    std::ofstream stream(file, std::ios::binary);
    write(stream, header);
    write(stream, info.bmiHeader);
    for (const uint32_t pixel : picture.pixels) {
        write(stream, pixel);
    }
    stream.close();
    return !stream.fail();
}

} // namespace kovalune::test
