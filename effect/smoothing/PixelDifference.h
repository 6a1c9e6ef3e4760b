// Whether two pixels count as different: by more than a limit, a transparent pixel counting as all zeros. The plain function
// is the definition; four pairs at once give the same, and that is what a flag map is made with.
#pragma once

#include "effect/smoothing/SmoothOf.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kovalune {

/// Pixels that are the same in all bits are settled first.
template <class Format>
bool pixelsDiffer(const typename Format::Pixel& a, const typename Format::Pixel& b,
                  typename SmoothOf<Format>::Limit limit) {
    const void* const bitsOfA = &a;
    const void* const bitsOfB = &b;
    if (std::memcmp(bitsOfA, bitsOfB, sizeof a) == 0) {
        return false;
    }
    const bool clearA = a.alpha == 0;
    const bool clearB = b.alpha == 0;
    if (clearA || clearB) {
        return !(clearA && clearB) && SmoothOf<Format>::exceeds(clearA ? b : a, limit);
    }
    return SmoothOf<Format>::differBy(a, b, limit);
}

#if defined(__SSE2__)

// For limits from 0 on, where pixels of the same bits, and two transparent ones, come out as not different by themselves.
// Channels stand in memory as alpha, red, green, blue.

namespace sse2 {

inline __m128i load(const void* memory) {
    return _mm_loadu_si128(static_cast<const __m128i*>(memory));
}

inline uint32_t whichExceed(__m128i sums, int32_t limit) {
    return static_cast<uint32_t>(
        _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpgt_epi32(sums, _mm_set1_epi32(limit)))));
}

/// The first and the third of each four-byte lanes of two vectors, or the second and the fourth.
template <int32_t odd>
__m128i lanesOf(__m128i low, __m128i high) {
    constexpr int kLanes = odd == 0 ? 0x88 : 0xdd;
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(low), _mm_castsi128_ps(high), kLanes));
}

/// Four pixels, the transparent ones all zeros.
inline __m128i shown8(const PF_Pixel* pixels) {
    const __m128i all = load(pixels);
    const __m128i alpha = _mm_and_si128(all, _mm_set1_epi32(0xff));
    return _mm_andnot_si128(_mm_cmpeq_epi32(alpha, _mm_setzero_si128()), all);
}

inline uint32_t fourDiffer(const PF_Pixel* a, const PF_Pixel* b, int32_t limit) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i pa = shown8(a);
    const __m128i pb = shown8(b);
    const __m128i low = _mm_sad_epu8(_mm_unpacklo_epi32(pa, zero), _mm_unpacklo_epi32(pb, zero));
    const __m128i high = _mm_sad_epu8(_mm_unpackhi_epi32(pa, zero), _mm_unpackhi_epi32(pb, zero));
    return whichExceed(lanesOf<0>(low, high), limit);
}

/// Two pixels likewise.
inline __m128i shown16(const PF_Pixel16* pixels) {
    const __m128i all = load(pixels);
    const __m128i zeros = _mm_cmpeq_epi16(all, _mm_setzero_si128());
    return _mm_andnot_si128(_mm_shufflehi_epi16(_mm_shufflelo_epi16(zeros, 0), 0), all);
}

/// Two sums of two channels' differences for each of two pixels.
inline __m128i pairSums16(const PF_Pixel16* a, const PF_Pixel16* b) {
    const __m128i pa = shown16(a);
    const __m128i pb = shown16(b);
    const __m128i apart = _mm_or_si128(_mm_subs_epu16(pa, pb), _mm_subs_epu16(pb, pa));
    return _mm_add_epi32(_mm_and_si128(apart, _mm_set1_epi32(0xffff)), _mm_srli_epi32(apart, 16));
}

inline uint32_t fourDiffer(const PF_Pixel16* a, const PF_Pixel16* b, int32_t limit) {
    const __m128i low = pairSums16(a, b);
    const __m128i high = pairSums16(a + 2, b + 2);
    return whichExceed(_mm_add_epi32(lanesOf<0>(low, high), lanesOf<1>(low, high)), limit);
}

/// Four pixels, channel by channel.
struct Planes {
    __m128 alpha, red, green, blue;

    explicit Planes(const PF_PixelFloat* pixels)
        : alpha(_mm_castsi128_ps(load(pixels))), red(_mm_castsi128_ps(load(pixels + 1))),
          green(_mm_castsi128_ps(load(pixels + 2))), blue(_mm_castsi128_ps(load(pixels + 3))) {
        _MM_TRANSPOSE4_PS(alpha, red, green, blue);
    }

    __m128 isClear() const { return _mm_cmpeq_ps(alpha, _mm_setzero_ps()); }
    __m128 exceeds(__m128 limit) const {
        return _mm_cmpgt_ps(_mm_add_ps(_mm_add_ps(_mm_add_ps(green, red), blue), alpha), limit);
    }
};

inline __m128 chosen(__m128 mask, __m128 whereSet, __m128 ifNot) {
    return _mm_or_ps(_mm_and_ps(mask, whereSet), _mm_andnot_ps(mask, ifNot));
}

inline __m128 lessDistance(__m128 left, __m128 a, __m128 b) {
    const __m128 sign = _mm_set1_ps(-0.0F);
    return _mm_sub_ps(left, _mm_andnot_ps(sign, _mm_sub_ps(a, b)));
}

inline uint32_t fourDiffer(const PF_PixelFloat* a, const PF_PixelFloat* b, float limit) {
    const Planes pa(a);
    const Planes pb(b);
    const __m128 most = _mm_set1_ps(limit);
    __m128 left = lessDistance(most, pa.red, pb.red);
    left = lessDistance(left, pa.green, pb.green);
    left = lessDistance(left, pa.blue, pb.blue);
    left = lessDistance(left, pa.alpha, pb.alpha);
    const __m128 clearA = pa.isClear();
    const __m128 clearB = pb.isClear();
    const __m128 shownExceeds =
        _mm_andnot_ps(_mm_and_ps(clearA, clearB), chosen(clearA, pb.exceeds(most), pa.exceeds(most)));
    const __m128 differ =
        chosen(_mm_or_ps(clearA, clearB), shownExceeds, _mm_cmplt_ps(left, _mm_setzero_ps()));
    return static_cast<uint32_t>(_mm_movemask_ps(differ));
}

} // namespace sse2

#endif

/// Bit `i` is set where `a[i]` and `b[i]` differ, for `i` from 0 to 3.
template <class Format>
uint32_t fourPixelsDiffer(const typename Format::Pixel* a, const typename Format::Pixel* b,
                          typename SmoothOf<Format>::Limit limit) {
#if defined(__SSE2__)
    if (limit >= 0) {
        return sse2::fourDiffer(a, b, limit);
    }
#endif
    uint32_t differing = 0;
    for (uint32_t i = 0; i < 4; ++i) {
        differing |= uint32_t{pixelsDiffer<Format>(a[i], b[i], limit)} << i;
    }
    return differing;
}

} // namespace kovalune
