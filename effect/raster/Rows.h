// The way to a world's pixels: rows stand `rowbytes` apart, whatever the width is.
#pragma once

#include "effect/share/FrameRect.h"
#include "effect/share/SizeProduct.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

/// The object that stands `bytes` after the start of host memory, which is aligned for it.
template <class T>
T* objectAt(void* start, std::ptrdiff_t bytes) {
    return static_cast<T*>(static_cast<void*>(static_cast<uint8_t*>(start) + bytes));
}

/// The pixel of a rectangle's row `y` that stands in its column 0; both count from the rectangle's top left.
template <class Format>
typename Format::Pixel* rowOf(const PF_EffectWorld& world, const FrameRect& rect, int32_t y) {
    const std::ptrdiff_t bytes = sizeProduct<std::ptrdiff_t>(rect.top + y, world.rowbytes);
    return objectAt<typename Format::Pixel>(world.data, bytes) + rect.left;
}

/// Asks for a part of a row that is read or written soon: rows lie far apart, so that no processor sees the next one coming.
template <class T>
void prefetchPart(const T* part, int32_t count) {
    constexpr int32_t kCacheLine = 64 / sizeof(T);
    for (int32_t x = 0; x < count - 1; x += kCacheLine) {
        __builtin_prefetch(part + x);
    }
    __builtin_prefetch(part + count - 1);
}

} // namespace kovalune
