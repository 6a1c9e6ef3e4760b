#include "render/FrameArea.h"

#include <algorithm>
#include <cstring>

namespace kovalune::render {

namespace {

std::size_t bytesAPixel(const host::Image& image) {
    return image.format() == PF_PixelFormat_ARGB128  ? sizeof(PF_PixelFloat)
           : image.format() == PF_PixelFormat_ARGB64 ? sizeof(PF_Pixel16)
                                                     : sizeof(PF_Pixel);
}

/// Calls body(y, x, count) for each run of pixels outside.
template <class Body>
void forRunsOutside(const FrameArea& area, const Body& body) {
    for (int32_t y = 0; y < area.height(); ++y) {
        const uint8_t* const row = area.row(y);
        const uint8_t* const end = row + area.width();
        for (const uint8_t* from = std::find(row, end, uint8_t{0}); from != end;) {
            const uint8_t* const to = std::find_if(from, end, [](uint8_t inside) { return inside != 0; });
            body(y, static_cast<std::size_t>(from - row), static_cast<std::size_t>(to - from));
            from = std::find(to, end, uint8_t{0});
        }
    }
}

} // namespace

FrameArea::FrameArea(int32_t width, int32_t height)
    : width_(width), height_(height),
      inside_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), uint8_t{1}) {}

void FrameArea::intersect(const Region& region) {
    const auto within = [](int64_t place, int64_t size) { return std::clamp<int64_t>(place, 0, size); };
    const int64_t left = within(region.x, width_);
    const int64_t right = within(region.x + region.width, width_);
    const int64_t top = within(region.y, height_);
    const int64_t bottom = within(region.y + region.height, height_);
    for (int32_t y = 0; y < height_; ++y) {
        const bool crosses = y >= top && y < bottom && left < right;
        uint8_t* const pixels = row(y);
        std::fill(pixels, pixels + (crosses ? left : width_), uint8_t{0});
        std::fill(pixels + (crosses ? right : width_), pixels + width_, uint8_t{0});
    }
}

void FrameArea::intersect(const FrameArea& other) {
    std::transform(inside_.begin(), inside_.end(), other.inside_.begin(), inside_.begin(),
                   [](uint8_t a, uint8_t b) { return static_cast<uint8_t>(a != 0 && b != 0); });
}

bool FrameArea::isEmpty() const {
    return std::all_of(inside_.begin(), inside_.end(), [](uint8_t inside) { return inside == 0; });
}

bool FrameArea::isWhole() const {
    return std::all_of(inside_.begin(), inside_.end(), [](uint8_t inside) { return inside != 0; });
}

host::Image cutTo(const host::Image& image, const FrameArea& area) {
    host::Image cut = image;
    clearOutside(cut, area);
    return cut;
}

void restoreOutside(host::Image& image, const host::Image& from, const FrameArea& area) {
    const std::size_t size = bytesAPixel(image);
    forRunsOutside(area, [&](int32_t y, std::size_t x, std::size_t count) {
        std::memcpy(image.row(y) + x * size, from.row(y) + x * size, count * size);
    });
}

void clearOutside(host::Image& image, const FrameArea& area) {
    const std::size_t size = bytesAPixel(image);
    forRunsOutside(area, [&](int32_t y, std::size_t x, std::size_t count) {
        std::memset(image.row(y) + x * size, 0, count * size);
    });
}

} // namespace kovalune::render
