// Smooths a step through the installed library, and ends with 0 if it became a ramp.
#include <effect/Kovalune.h>

#include <array>
#include <cstdio>

int main() {
    constexpr int kWidth = 16;
    constexpr int kHeight = 6;
    std::array<PF_Pixel, kWidth* kHeight> source = {};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool isLight = y < (x < kWidth / 2 ? 2 : 3);
            const A_u_char level = isLight ? 240 : 40;
            source[y * kWidth + x] = {255, level, level, level};
        }
    }
    std::array<PF_Pixel, kWidth* kHeight> smoothed = {};
    const auto rowBytes = static_cast<int32_t>(kWidth * sizeof(PF_Pixel));
    const kovalune::PictureView from = {PF_PixelFormat_ARGB32, kWidth, kHeight, rowBytes, source.data()};
    const kovalune::WritablePictureView to = {PF_PixelFormat_ARGB32, kWidth, kHeight, rowBytes,
                                              smoothed.data()};
    if (const PF_Err code = kovalune::smoothPicture(from, to, kovalune::SmoothOptions());
        code != PF_Err_NONE) {
        std::fprintf(stderr, "smoothPicture returned %d\n", static_cast<int>(code));
        return 1;
    }
    for (const PF_Pixel& pixel : smoothed) {
        if (pixel.red > 40 && pixel.red < 240) {
            return 0;
        }
    }
    std::fprintf(stderr, "no pixel lies between the two colours\n");
    return 1;
}
