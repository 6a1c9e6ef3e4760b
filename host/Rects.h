// Small rectangle arithmetic on the host's long rectangles, which are half open.
#pragma once

#include "hostapi/Types.h"

#include <algorithm>

namespace kovalune::host {

inline bool isEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

/// All zero if nothing is common.
inline PF_LRect intersection(const PF_LRect& a, const PF_LRect& b) {
    const PF_LRect common{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                          std::min(a.bottom, b.bottom)};
    return isEmpty(common) ? PF_LRect{} : common;
}

/// An empty rectangle is inside any other.
inline bool isInside(const PF_LRect& inner, const PF_LRect& outer) {
    return isEmpty(inner) || (inner.left >= outer.left && inner.top >= outer.top &&
                              inner.right <= outer.right && inner.bottom <= outer.bottom);
}

inline PF_LRect wholeLongRect(A_long width, A_long height) {
    return {0, 0, width, height};
}

/// In the rectangle type of the interface, which may be too narrow for sides that only tests ask for; they
/// then wrap as the host's own do.
inline PF_Rect wholeRect(A_long width, A_long height) {
    PF_Rect rect{};
    rect.right = static_cast<decltype(rect.right)>(width);
    rect.bottom = static_cast<decltype(rect.bottom)>(height);
    return rect;
}

/// Coordinates beyond this are cut, so that sums and differences of two stay in range.
inline constexpr A_long kFarthest = 1 << 28;

inline PF_LRect longRect(const PF_Rect& rect) {
    const auto cut = [](auto coordinate) {
        return std::clamp(static_cast<A_long>(coordinate), -kFarthest, kFarthest);
    };
    return {cut(rect.left), cut(rect.top), cut(rect.right), cut(rect.bottom)};
}

} // namespace kovalune::host
