// Products of sizes: bytes, cells or lines that are counted by two numbers. A world of 32767 by 32767 has more of them than 32 bits
// hold.
#pragma once

#include <cassert>

namespace kovalune {

/// a * b as a Size. Debug builds end the process where a number without bounds says that a Size does not hold it.
template <class Size, class A, class B>
constexpr Size sizeProduct(A a, B b) {
#ifndef NDEBUG
    Size product = 0;
    const bool overflows = __builtin_mul_overflow(a, b, &product);
    assert(!overflows && "a product of sizes does not fit");
    return product;
#else
    return static_cast<Size>(a) * static_cast<Size>(b);
#endif
}

} // namespace kovalune
