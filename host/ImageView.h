// A picture in the memory of the host's caller, in one of the effect's own formats: a render reads and writes it where
// it lies, without a copy. Channels stand in the order alpha, red, green, blue; white is 255, 32768 or 1.0. Plain data:
// the caller keeps the memory alive and leaves it alone for as long as a render uses it.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <type_traits>

namespace kovalune::host {

template <class Byte>
struct BasicImageView {
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    A_long width = 0;
    A_long height = 0;
    Byte* data = nullptr; ///< the first pixel of the top row; aligned for the format's channels
    std::ptrdiff_t rowBytes =
        0; ///< from a row to the one below it; negative where the bottom row comes first in memory

    Byte* row(A_long y) const { return data + y * rowBytes; }

    operator BasicImageView<const Byte>() const requires(!std::is_const_v<Byte>) {
        return {format, width, height, data, rowBytes};
    }
};

using ImageView = BasicImageView<std::byte>;
using ConstImageView = BasicImageView<const std::byte>;

/// Throws HostError, with `name` in the text, for a view that no render can work on: of an unknown format, with a
/// negative side, without memory, with rows that are shorter than their pixels or further apart than a world's may be,
/// or with pixels that are not aligned.
void checkView(const ConstImageView& view, const char* name);

/// Whether a byte of a pixel of one is also one of the other. The views must have passed checkView.
[[nodiscard]] bool overlap(const ConstImageView& a, const ConstImageView& b);

} // namespace kovalune::host
