// The part of a picture that the effect may work in.
#pragma once

#include "host/Image.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kovalune::render {

/// In pixels from the top left.
struct Region {
    int64_t x = 0;
    int64_t y = 0;
    int64_t width = 0;
    int64_t height = 0;
};

class FrameArea {
public:
    /// All of a picture of this size.
    FrameArea(int32_t width, int32_t height);

    int32_t width() const { return width_; }
    int32_t height() const { return height_; }

    bool isInside(int32_t x, int32_t y) const { return row(y)[x] != 0; }
    /// A byte a pixel, 0 outside.
    uint8_t* row(int32_t y) {
        return inside_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }
    const uint8_t* row(int32_t y) const {
        return inside_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

    /// What is inside of both; a region may reach beyond the picture.
    void intersect(const Region& region);
    /// Of the same size.
    void intersect(const FrameArea& other);

    bool isEmpty() const;
    bool isWhole() const;

private:
    int32_t width_;
    int32_t height_;
    std::vector<uint8_t> inside_;
};

/// The picture with every sample outside set to 0, alpha too. The area has the picture's size.
host::Image cutTo(const host::Image& image, const FrameArea& area);

/// Puts what is outside in `from` into `image`, bit for bit. All of one size, the images of one format.
void restoreOutside(host::Image& image, const host::Image& from, const FrameArea& area);

/// Makes all that is outside transparent black.
void clearOutside(host::Image& image, const FrameArea& area);

} // namespace kovalune::render
