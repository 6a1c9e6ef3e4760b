// A picture owned by a caller of the reference host: the input or the output of a render. Rows are tight,
// channels stand in the order alpha, red, green, blue; white is 255, 32768 or 1.0.
#pragma once

#include "host/ImageView.h"
#include "host/PixelBytes.h"
#include "hostapi/HostApi.h"

#include <cstddef>

namespace kovalune::host {

/// 4, 8 or 16; throws HostError for anything but the three formats.
std::size_t bytesPerPixel(PF_PixelFormat format);

/// 8, 16 or 32; throws HostError like bytesPerPixel.
short bitsPerChannel(PF_PixelFormat format);

class Image {
public:
    Image() = default;

    /// Transparent black. Throws HostError for a negative side or an unknown format.
    Image(PF_PixelFormat format, A_long width, A_long height);

    PF_PixelFormat format() const { return format_; }
    A_long width() const { return width_; }
    A_long height() const { return height_; }
    bool empty() const { return bytes_.empty(); }
    std::size_t rowBytes() const { return rowBytes_; }

    std::byte* row(A_long y) { return bytes_.data() + rowOffset(y); }
    const std::byte* row(A_long y) const { return bytes_.data() + rowOffset(y); }

    /// Pixel is PF_Pixel, PF_Pixel16 or PF_PixelFloat, as the format says.
    template <class Pixel>
    Pixel& at(A_long x, A_long y) {
        return static_cast<Pixel*>(static_cast<void*>(row(y)))[x];
    }
    template <class Pixel>
    const Pixel& at(A_long x, A_long y) const {
        return static_cast<const Pixel*>(static_cast<const void*>(row(y)))[x];
    }

    /// The same pixels, for as long as the image keeps its size.
    ImageView view() {
        return {format_, width_, height_, bytes_.data(), static_cast<std::ptrdiff_t>(rowBytes_)};
    }
    ConstImageView view() const {
        return {format_, width_, height_, bytes_.data(), static_cast<std::ptrdiff_t>(rowBytes_)};
    }

    /// Same format, size and bytes; a float NaN thus equals itself.
    friend bool operator==(const Image& a, const Image& b) = default;

private:
    std::size_t rowOffset(A_long y) const { return static_cast<std::size_t>(y) * rowBytes_; }

    PF_PixelFormat format_ = PF_PixelFormat_ARGB32;
    A_long width_ = 0;
    A_long height_ = 0;
    std::size_t rowBytes_ = 0;
    PixelBytes bytes_;
};

} // namespace kovalune::host
