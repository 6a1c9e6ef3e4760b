#include "host/WideStores.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kovalune::host {

namespace {

void copyPlain(std::byte* to, const std::byte* from, std::size_t count) {
    std::memcpy(to, from, count);
}

void clearPlain(std::byte* bytes, std::size_t count) {
    std::memset(bytes, 0, count);
}

#if defined(__SSE2__)

constexpr std::size_t kLine = 64; ///< of a cache

/// The bytes before the first whole line.
std::size_t headOf(const std::byte* bytes, std::size_t count) {
    return std::min(count, static_cast<std::size_t>(-reinterpret_cast<std::uintptr_t>(bytes) % kLine));
}

__m128i* vectors(std::byte* bytes) {
    return static_cast<__m128i*>(static_cast<void*>(bytes));
}

const __m128i* vectors(const std::byte* bytes) {
    return static_cast<const __m128i*>(static_cast<const void*>(bytes));
}

void copyLine(__m128i* to, const __m128i* from) {
    const __m128i a = _mm_loadu_si128(from);
    const __m128i b = _mm_loadu_si128(from + 1);
    const __m128i c = _mm_loadu_si128(from + 2);
    const __m128i d = _mm_loadu_si128(from + 3);
    _mm_stream_si128(to, a);
    _mm_stream_si128(to + 1, b);
    _mm_stream_si128(to + 2, c);
    _mm_stream_si128(to + 3, d);
}

// Such stores are seen by other threads in any order until the fence.

void copyPastCaches(std::byte* to, const std::byte* from, std::size_t count) {
    const std::size_t head = headOf(to, count);
    std::memcpy(to, from, head);
    std::size_t at = head;
    for (; at + kLine <= count; at += kLine) {
        copyLine(vectors(to + at), vectors(from + at));
    }
    std::memcpy(to + at, from + at, count - at);
    _mm_sfence();
}

void clearPastCaches(std::byte* bytes, std::size_t count) {
    const std::size_t head = headOf(bytes, count);
    std::memset(bytes, 0, head);
    std::size_t at = head;
    const __m128i zeros = _mm_setzero_si128();
    for (; at + kLine <= count; at += kLine) {
        __m128i* const line = vectors(bytes + at);
        _mm_stream_si128(line, zeros);
        _mm_stream_si128(line + 1, zeros);
        _mm_stream_si128(line + 2, zeros);
        _mm_stream_si128(line + 3, zeros);
    }
    std::memset(bytes + at, 0, count - at);
    _mm_sfence();
}

#endif

} // namespace

ByteCopy copyFor([[maybe_unused]] std::size_t wholeBytes) {
#if defined(__SSE2__)
    if (wholeBytes >= kBeyondCaches) {
        return copyPastCaches;
    }
#endif
    return copyPlain;
}

ByteClear clearFor([[maybe_unused]] std::size_t wholeBytes) {
#if defined(__SSE2__)
    if (wholeBytes >= kBeyondCaches) {
        return clearPastCaches;
    }
#endif
    return clearPlain;
}

} // namespace kovalune::host
