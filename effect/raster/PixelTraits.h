// What differs by pixel format: the channel's type, full scale, and the host's name for the format. Channels
// stand in the order alpha, red, green, blue, straight, not premultiplied.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

struct Argb8 {
    using Pixel = PF_Pixel;
    using Channel = uint8_t;
    static constexpr PF_PixelFormat kFormat = PF_PixelFormat_ARGB32;
    static constexpr Channel kFullScale = 255;
};

/// White is 32768, not 65535.
struct Argb16 {
    using Pixel = PF_Pixel16;
    using Channel = uint16_t;
    static constexpr PF_PixelFormat kFormat = PF_PixelFormat_ARGB64;
    static constexpr Channel kFullScale = 32768;
};

struct Argb32 {
    using Pixel = PF_PixelFloat;
    using Channel = float;
    static constexpr PF_PixelFormat kFormat = PF_PixelFormat_ARGB128;
    static constexpr Channel kFullScale = 1.0F;
};

} // namespace kovalune
