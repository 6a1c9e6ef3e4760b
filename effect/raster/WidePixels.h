// Sixteen pixels of a row looked at together, some of them in each vector of the processor: a drawing's pixels are like their
// neighbours, in alpha, in colour or in both.
#pragma once

#include "effect/raster/PixelTraits.h"
#include "effect/share/StandardParts.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kovalune {

/// A channel as a vector's lane, and which of its bits tell whether it is 0; undefined for formats that have none.
template <class Format>
struct ChannelLane;

template <>
struct ChannelLane<Argb8> {
    using Lane = uint8_t;
    using Vector = uint8_t __attribute__((vector_size(16)));
    static constexpr Lane kMagnitude = 0xFF;
};

template <>
struct ChannelLane<Argb16> {
    using Lane = uint16_t;
    using Vector = uint16_t __attribute__((vector_size(16)));
    static constexpr Lane kMagnitude = 0xFFFF;
};

/// The bits of a float. -0 is 0.
template <>
struct ChannelLane<Argb32> {
    using Lane = uint32_t;
    using Vector = uint32_t __attribute__((vector_size(16)));
    static constexpr Lane kMagnitude = 0x7FFFFFFF;
};

template <class Format>
class WidePixels {
public:
    using Pixel = typename Format::Pixel;
    static constexpr int32_t kCount = 16;

    /// The pixels stay where they are; there are kCount of them.
    explicit WidePixels(const Pixel* pixels) : pixels_(pixels) {}

    /// Whether all are this pixel, in all bits.
    bool areLike(const Pixel& like) const { return !any(difference(like), ~Vector{}); }

    /// Whether all have this alpha, in all bits.
    bool haveAlpha(const Pixel& like) const { return !any(difference(like), alphaLanes()); }

    /// Whether all have this colour, in all bits.
    bool haveColor(const Pixel& like) const { return !any(difference(like), ~alphaLanes()); }

    /// Whether all are transparent.
    bool areTransparent() const {
        Vector some{};
        forEach([&](const Vector& pixels) { some |= pixels; });
        return !any(some, alphaLanes() & magnitudes());
    }

    /// Whether none is transparent.
    bool areVisible() const { return !any(zeros(), alphaLanes()); }

private:
    using Lane = typename ChannelLane<Format>::Lane;
    using Vector = typename ChannelLane<Format>::Vector;
    static constexpr std::size_t kLanes = sizeof(Vector) / sizeof(Lane);

    /// Calls `each` for all pixels, as many as a vector holds at a time.
    template <class Each>
    void forEach(const Each& each) const {
        constexpr std::size_t kWhole = sizeof(Pixel) * kCount;
        const void* const all = pixels_;
        for (std::size_t at = 0; at < kWhole; at += sizeof(Vector)) {
            Vector pixels;
            std::memcpy(&pixels, static_cast<const uint8_t*>(all) + at, sizeof pixels);
            each(pixels);
        }
    }

    Vector difference(const Pixel& like) const {
        const Vector all = repeated(like);
        Vector different{};
        forEach([&](const Vector& pixels) { different |= pixels ^ all; });
        return different;
    }

    /// A pixel in all its places. Its bytes go through no memory, where a wide load would wait for narrow stores.
    static Vector repeated(const Pixel& pixel) {
        if constexpr (sizeof(Pixel) == sizeof(Vector)) {
            Vector whole;
            std::memcpy(&whole, &pixel, sizeof whole);
            return whole;
        } else {
            uint64_t word = 0;
            std::memcpy(&word, &pixel, sizeof pixel);
            if constexpr (sizeof pixel < sizeof word) {
                word |= word << 32;
            }
            using Words = uint64_t __attribute__((vector_size(16)));
            return reinterpret_cast<Vector>(Words{word, word});
        }
    }

    /// All bits of a lane where one of the pixels has a 0 there.
    Vector zeros() const {
        Vector found{};
        forEach([&](const Vector& pixels) {
            found |= reinterpret_cast<Vector>((pixels & magnitudes()) == Vector{});
        });
        return found;
    }

    static Vector magnitudes() { return Vector{} + ChannelLane<Format>::kMagnitude; }

    /// Alpha is the first of a pixel's four channels.
    static Vector alphaLanes() {
        Vector lanes{};
        for (std::size_t lane = 0; lane < kLanes; lane += 4) {
            lanes[lane] = static_cast<Lane>(~Lane{0});
        }
        return lanes;
    }

    static bool any(const Vector& vector, const Vector& lanes) {
        const Vector left = vector & lanes;
        uint64_t words[2];
        std::memcpy(words, &left, sizeof left);
        return (words[0] | words[1]) != 0;
    }

    const Pixel* pixels_;
};

/// The first place after `x`, or `end`, whose alpha is not that of `x` in all bits.
template <class Format>
int32_t endOfSameAlpha(const typename Format::Pixel* pixels, int32_t x, int32_t end) {
    constexpr int32_t kMany = WidePixels<Format>::kCount;
    const auto like = pixels[x];
    const auto isSame = [&](int32_t at) {
        return bitCast<typename ChannelLane<Format>::Lane>(pixels[at].alpha) ==
               bitCast<typename ChannelLane<Format>::Lane>(like.alpha);
    };
    ++x;
    // Short runs are found first.
    for (const int32_t few = end - x < 4 ? end : x + 4; x < few; ++x) {
        if (!isSame(x)) {
            return x;
        }
    }
    while (end - x >= kMany && WidePixels<Format>(pixels + x).haveAlpha(like)) {
        x += kMany;
    }
    while (x < end && isSame(x)) {
        ++x;
    }
    return x;
}

/// Calls `each(first, end)` for the parts of `count` pixels that have one alpha, in all bits.
template <class Format, class Each>
void forEachAlpha(const typename Format::Pixel* pixels, int32_t count, const Each& each) {
    for (int32_t first = 0; first < count;) {
        const int32_t end = endOfSameAlpha<Format>(pixels, first, count);
        each(first, end);
        first = end;
    }
}

template <class Format>
void setAlpha(typename Format::Pixel* pixels, int32_t count, typename Format::Channel alpha) {
    for (int32_t i = 0; i < count; ++i) {
        pixels[i].alpha = alpha;
    }
}

} // namespace kovalune
