// The two orders of a pixel's bytes: R G B A of the interface, A R G B of the effect.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace kovalune::frei0r {

inline constexpr int kAlphaFirst = std::endian::native == std::endian::little ? 8 : -8;

/// `to` may be `from`.
inline void alphaToFront(const uint32_t* from, uint32_t* to, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        to[i] = std::rotl(from[i], kAlphaFirst);
    }
}

inline void alphaToEnd(const uint32_t* from, uint32_t* to, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        to[i] = std::rotr(from[i], kAlphaFirst);
    }
}

} // namespace kovalune::frei0r
