#include "host/Image.h"

#include "host/HostError.h"

#include <cstdint>
#include <limits>

namespace kovalune::host {

std::size_t bytesPerPixel(PF_PixelFormat format) {
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return sizeof(PF_Pixel);
    case PF_PixelFormat_ARGB64:
        return sizeof(PF_Pixel16);
    case PF_PixelFormat_ARGB128:
        return sizeof(PF_PixelFloat);
    default:
        throw HostError("not a pixel format of a picture");
    }
}

short bitsPerChannel(PF_PixelFormat format) {
    return static_cast<short>(bytesPerPixel(format) * 2);
}

Image::Image(PF_PixelFormat format, A_long width, A_long height)
    : format_(format), width_(width), height_(height) {
    const std::size_t pixelBytes = bytesPerPixel(format);
    if (width < 0 || height < 0) {
        throw HostError("a picture cannot have a negative side");
    }
    const auto bytes = static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * pixelBytes;
    if (bytes > std::numeric_limits<std::size_t>::max() / 2) {
        throw HostError("a picture of this size does not fit in memory");
    }
    rowBytes_ = static_cast<std::size_t>(width) * pixelBytes;
    bytes_ = PixelBytes(rowBytes_ * static_cast<std::size_t>(height));
}

} // namespace kovalune::host
