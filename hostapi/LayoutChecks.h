// Compile-time checks of the interface's binary layout, one column for each host the project builds for:
//   w32     32-bit Windows, 16-bit rectangles
//   x64     64-bit, 32-bit rectangles (KOVALUNE_HOST_LONG_RECTS): 64-bit Windows, and native builds on request
//   x64r16  64-bit, 16-bit rectangles: the other native builds
// Included by the check files alone.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>

#if defined(KOVALUNE_HOST_LONG_RECTS) && UINTPTR_MAX <= 0xffffffffU
#error "32-bit hosts pass 16-bit rectangles: KOVALUNE_HOST_LONG_RECTS is for 64-bit builds"
#endif

namespace kovalune::layout {

constexpr std::size_t column(std::size_t w32, std::size_t x64, std::size_t x64r16) {
    if (sizeof(void*) == 4) {
        return w32;
    }
    return sizeof(PF_Rect) == sizeof(PF_LRect) ? x64 : x64r16;
}

/// Elsewhere on 32 bits a double may sit on a multiple of 4. No offset moves by that, but some sizes do.
#ifdef _WIN32
inline constexpr bool kSizesAreFixed = true;
#else
inline constexpr bool kSizesAreFixed = sizeof(void*) == 8;
#endif

} // namespace kovalune::layout

// Macros, because offsetof takes names. A table of functions has the same 64-bit column with either
// rectangle.
#define CHECK_OFFSET(type, member, w32, x64, x64r16)                                                         \
    static_assert(offsetof(type, member) == kovalune::layout::column(w32, x64, x64r16))
#define CHECK_SIZE(type, w32, x64, x64r16)                                                                   \
    static_assert(!kovalune::layout::kSizesAreFixed ||                                                       \
                  sizeof(type) == kovalune::layout::column(w32, x64, x64r16))
#define CHECK_ALIGN(type, w32, x64, x64r16)                                                                  \
    static_assert(!kovalune::layout::kSizesAreFixed ||                                                       \
                  alignof(type) == kovalune::layout::column(w32, x64, x64r16))
#define CHECK_SLOT(type, member, w32, x64) CHECK_OFFSET(type, member, w32, x64, x64)
#define CHECK_TABLE_SIZE(type, w32, x64) CHECK_SIZE(type, w32, x64, x64)
