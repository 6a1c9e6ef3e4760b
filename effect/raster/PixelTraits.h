// What differs by pixel format: the pixel, the channel's type and its full scale. Channels
// stand in the order alpha, red, green, blue, straight, not premultiplied.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

struct Argb8 {
    using Pixel = PF_Pixel;
    using Channel = uint8_t;
    static constexpr Channel kFullScale = 255;
};

/// White is 32768, not 65535.
struct Argb16 {
    using Pixel = PF_Pixel16;
    using Channel = uint16_t;
    static constexpr int kScaleBits = 15;
    static constexpr Channel kFullScale = 1 << kScaleBits;
};

struct Argb32 {
    using Pixel = PF_PixelFloat;
    using Channel = float;
    static constexpr Channel kFullScale = 1.0F;
};

} // namespace kovalune
