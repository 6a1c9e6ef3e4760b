#include "adapters/openfx/SampleOrder.h"

#include "host/WideStores.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kovalune::openfx {

namespace {

template <SampleOrder order>
void turnBytes(std::byte* to, const std::byte* from, std::size_t count) {
    constexpr bool kUpwards =
        (order == SampleOrder::kAlphaFirst) == (std::endian::native == std::endian::little);
    for (std::size_t at = 0; at < count * 4; at += 4) {
        uint32_t word = 0;
        std::memcpy(&word, from + at, sizeof word);
        word = std::rotl(word, kUpwards ? 8 : -8);
        std::memcpy(to + at, &word, sizeof word);
    }
}

using Words = uint32_t __attribute__((vector_size(16))); // one instruction each

template <SampleOrder order>
Words turnedWords(const std::byte* from) {
    Words words;
    std::memcpy(&words, from, sizeof words);
    if constexpr (order == SampleOrder::kAlphaFirst) {
        return __builtin_shufflevector(words, words, 3, 0, 1, 2);
    } else {
        return __builtin_shufflevector(words, words, 1, 2, 3, 0);
    }
}

template <SampleOrder order>
void turnWords(std::byte* to, const std::byte* from, std::size_t count) {
    for (std::size_t at = 0; at < count * sizeof(Words); at += sizeof(Words)) {
        const Words words = turnedWords<order>(from + at);
        std::memcpy(to + at, &words, sizeof words);
    }
}

#if defined(__SSE2__)

/// Such stores want whole vectors, and are seen by other threads in any order until the fence.
template <SampleOrder order>
void turnWordsPastCaches(std::byte* to, const std::byte* from, std::size_t count) {
    if (reinterpret_cast<std::uintptr_t>(to) % sizeof(Words) != 0) {
        turnWords<order>(to, from, count);
        return;
    }
    for (std::size_t at = 0; at < count * sizeof(Words); at += sizeof(Words)) {
        _mm_stream_si128(static_cast<__m128i*>(static_cast<void*>(to + at)),
                         reinterpret_cast<__m128i>(turnedWords<order>(from + at)));
    }
    _mm_sfence();
}

#endif

template <SampleOrder order>
RowTurn turnFor(std::size_t sampleBytes, [[maybe_unused]] std::size_t pictureBytes) {
    if (sampleBytes == 1) {
        return turnBytes<order>;
    }
#if defined(__SSE2__)
    if (pictureBytes >= host::kBeyondCaches) {
        return turnWordsPastCaches<order>;
    }
#endif
    return turnWords<order>;
}

} // namespace

RowTurn turnTo(SampleOrder order, std::size_t sampleBytes, std::size_t pictureBytes) {
    return order == SampleOrder::kAlphaFirst ? turnFor<SampleOrder::kAlphaFirst>(sampleBytes, pictureBytes)
                                             : turnFor<SampleOrder::kAlphaLast>(sampleBytes, pictureBytes);
}

} // namespace kovalune::openfx
