// Comparison of memory in wide steps: pixels of one colour stand side by side in most of a drawing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kovalune {

/// Whether memory from `a` and from `b` on is the same in all bits, for at least 16 bytes.
template <std::size_t bytes>
bool areSameBytes(const void* a, const void* b) {
    static_assert(bytes >= 16);
#if defined(__SSE2__)
    const auto apartAt = [a, b](std::size_t at) {
        const auto load = [at](const void* memory) {
            const void* const from = static_cast<const uint8_t*>(memory) + at;
            return _mm_loadu_si128(static_cast<const __m128i*>(from));
        };
        return _mm_xor_si128(load(a), load(b));
    };
    __m128i apart = apartAt(bytes - 16);
    for (std::size_t at = 0; at + 16 < bytes; at += 16) {
        apart = _mm_or_si128(apart, apartAt(at));
    }
    return _mm_movemask_epi8(_mm_cmpeq_epi8(apart, _mm_setzero_si128())) == 0xffff;
#else
    return std::memcmp(a, b, bytes) == 0;
#endif
}

/// The first place after `x`, or `end`, whose pixel is not that of `x` in all bits.
template <class Pixel>
int32_t endOfSamePixels(const Pixel* pixels, int32_t x, int32_t end) {
    constexpr int32_t kFew = 16 / static_cast<int32_t>(sizeof(Pixel));
    constexpr int32_t kMany = 8 * kFew;
    ++x;
    while (end - x >= kMany && areSameBytes<kMany * sizeof(Pixel)>(pixels + x - 1, pixels + x)) {
        x += kMany;
    }
    while (end - x >= kFew && areSameBytes<kFew * sizeof(Pixel)>(pixels + x - 1, pixels + x)) {
        x += kFew;
    }
    const auto isSame = [pixels](int32_t at) {
        const void* const before = pixels + at - 1;
        const void* const here = pixels + at;
        return std::memcmp(before, here, sizeof(Pixel)) == 0;
    };
    while (x < end && isSame(x)) {
        ++x;
    }
    return x;
}

} // namespace kovalune
