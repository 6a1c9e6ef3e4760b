// The rectangle that a frame's passes work on, in world coordinates. It is the effect's own type: the host's
// rectangle changes width and member order between its eras, this one does not.
#pragma once

#include <cstdint>

namespace kovalune {

/// Half-open: `right` and `bottom` lie one beyond the last column and row.
struct FrameRect {
    int16_t top = 0;
    int16_t left = 0;
    int16_t bottom = 0;
    int16_t right = 0;

    int32_t width() const { return right - left; }
    int32_t height() const { return bottom - top; }
};

} // namespace kovalune
