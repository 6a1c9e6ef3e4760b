// A picture to draw on: opaque RGB of any size and sample type, with rectangles, a checkerboard and other
// pictures. What falls outside of it is cut off. Half samples are not drawn: work in Float and convert.
#pragma once

#include "pictures/Picture.h"

#include <cstddef>
#include <cstdint>

namespace kovalune::pictures {

/// Of 8 bits a channel whatever the canvas has; white is white.
struct DrawnColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

/// May lie outside of the canvas, wholly or in part.
struct Area {
    int64_t left = 0;
    int64_t top = 0;
    int64_t width = 0;
    int64_t height = 0;
};

class Canvas {
public:
    /// Throws std::bad_alloc where there is no memory for it.
    Canvas(uint32_t width, uint32_t height, DrawnColor background, SampleType type = SampleType::kUint8);

    uint32_t width() const { return picture_.width; }
    uint32_t height() const { return picture_.height; }

    void fill(const Area& area, DrawnColor color);

    /// Squares of `side` pixels, the first one at the area's left top; `side` is at least 1.
    void checker(const Area& area, int64_t side, DrawnColor first, DrawnColor second);

    /// Its left top goes to this place. The picture has the canvas's sample type and straight alpha; opaque
    /// pixels come out exactly, others are laid over what is there.
    void draw(const Picture& picture, int64_t left, int64_t top);

    const Picture& picture() const& { return picture_; }
    Picture picture() && { return static_cast<Picture&&>(picture_); }

private:
    template <class Sample>
    void fillOf(const Area& inside, DrawnColor color);
    template <class Sample>
    void drawOf(const Picture& picture, int64_t left, int64_t top);
    Area cut(const Area& area) const;
    std::size_t indexOf(int64_t x, int64_t y) const;

    Picture picture_;
};

} // namespace kovalune::pictures
