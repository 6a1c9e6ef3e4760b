// Loops that every compiler turns into vectors by itself, compiled anew with each set's flags. What is in here stands in an
// unnamed namespace: two sets' objects share no function, of which the linker would keep the wider one for both.
#pragma once

#include <cstdint>

namespace kovalune {
namespace {

// White's two nearest powers of two bound what `pairUp` can hold: a number less kPairBias is a signed 16-bit number.
inline constexpr uint32_t kPairLimit = 49151;

inline uint64_t pixel16At(const void* pixels, int32_t i) {
    uint64_t pixel;
    __builtin_memcpy(&pixel, static_cast<const uint8_t*>(pixels) + static_cast<int64_t>(i) * 8, 8);
    return pixel;
}

inline uint64_t wholeIf(uint8_t mask) {
    return mask != 0 ? ~uint64_t{0} : uint64_t{0};
}

inline bool splitColors16(const void* pixels, const uint8_t* mask, int32_t count, uint32_t* __restrict red,
                          uint32_t* __restrict green, uint32_t* __restrict blue) {
    uint32_t above = 0;
    for (int32_t i = 0; i < count; ++i) {
        const uint64_t pixel = pixel16At(pixels, i) & wholeIf(mask[i]);
        const uint32_t r = static_cast<uint32_t>(pixel >> 16) & 0xFFFF;
        const uint32_t g = static_cast<uint32_t>(pixel >> 32) & 0xFFFF;
        const uint32_t b = static_cast<uint32_t>(pixel >> 48);
        red[i] = r;
        green[i] = g;
        blue[i] = b;
        above |= (r + (0xFFFF - kPairLimit)) | (g + (0xFFFF - kPairLimit)) | (b + (0xFFFF - kPairLimit));
    }
    return above > 0xFFFF;
}

inline bool splitAlpha16(const void* pixels, const uint8_t* mask, int32_t count, uint32_t* __restrict alpha) {
    uint32_t above = 0;
    for (int32_t i = 0; i < count; ++i) {
        const uint64_t pixel = pixel16At(pixels, i) & wholeIf(mask[i]);
        const uint32_t a = static_cast<uint32_t>(pixel) & 0xFFFF;
        alpha[i] = a;
        above |= a + (0xFFFF - kPairLimit);
    }
    return above > 0xFFFF;
}

inline void splitMask(const uint8_t* mask, int32_t count, uint32_t* __restrict counted) {
    for (int32_t i = 0; i < count; ++i) {
        counted[i] = mask[i] != 0 ? 1 : 0;
    }
}

inline void pairUp(uint32_t* numbers, uint32_t bias, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        numbers[i] = ((numbers[i] - bias) & 0xFFFF) | ((numbers[i + 1] - bias) << 16);
    }
}

inline void addScaled(const uint32_t* table, uint32_t factor, uint32_t* __restrict sums, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        sums[i] += factor * table[i];
    }
}

inline void addScaledDoubles(const double* table, double factor, double* __restrict sums, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        sums[i] += factor * table[i];
    }
}

/// Only where no pixel counts is there no weight: any quotient does.
inline uint32_t atLeastOne(uint32_t divisor) {
    return divisor != 0 ? divisor : 1;
}

inline void reciprocals(const uint32_t* weights, double* __restrict reciprocal, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        reciprocal[i] = 1.0 / static_cast<double>(static_cast<int32_t>(atLeastOne(weights[i])));
    }
}

/// The quotient of whole numbers, sum below 2^31. The half keeps it so far from the next whole number that no rounding of
/// double reaches one.
inline uint32_t quotient(uint32_t sum, double reciprocal) {
    return static_cast<uint32_t>(
        static_cast<int32_t>((static_cast<double>(static_cast<int32_t>(sum)) + 0.5) * reciprocal));
}

inline uint32_t quotient(uint32_t sum, uint32_t divisor) {
    return quotient(sum, 1.0 / static_cast<double>(static_cast<int32_t>(divisor)));
}

inline void coreMeans16(const uint32_t* sums, const uint32_t* weights, const double* reciprocal,
                        uint32_t* __restrict means, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        means[i] = quotient(sums[i] + (weights[i] >> 1), reciprocal[i]);
    }
}

inline void wholeMeans16(const uint32_t* sums, uint32_t* __restrict means, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        means[i] = (sums[i] + 16384) >> 15;
    }
}

inline void mixedMeans16(const uint32_t* boxes, const uint32_t* counts, const uint32_t* sums,
                         const uint32_t* weights, uint32_t tailWeight, uint32_t* __restrict means,
                         int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        // Without weight the sum is 0, and so is its quotient by 1.
        const uint32_t box = quotient(boxes[i], atLeastOne(counts[i])) * tailWeight;
        const uint32_t core = quotient(sums[i], atLeastOne(weights[i])) * (32768 - tailWeight);
        means[i] = (box + core + 16384) >> 15;
    }
}

inline void flatMeans16(const uint32_t* sums, const uint32_t* counts, uint32_t* __restrict means,
                        int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        const int32_t sum = static_cast<int32_t>(sums[i] + (counts[i] >> 1));
        const double exact =
            static_cast<double>(sum) / static_cast<double>(static_cast<int32_t>(atLeastOne(counts[i])));
        means[i] = static_cast<uint32_t>(static_cast<int32_t>(exact));
    }
}

inline uint64_t coloredPixel16(const uint32_t* red, const uint32_t* green, const uint32_t* blue,
                               const void* pixels, int32_t i) {
    uint64_t pixel = pixel16At(pixels, i) & 0xFFFF;
    pixel |= static_cast<uint64_t>(red[i] & 0xFFFF) << 16;
    pixel |= static_cast<uint64_t>(green[i] & 0xFFFF) << 32;
    pixel |= static_cast<uint64_t>(blue[i]) << 48;
    return pixel;
}

inline void mergeColors16(const uint32_t* red, const uint32_t* green, const uint32_t* blue, void* pixels,
                          int32_t count) {
    auto* const bytes = static_cast<uint8_t*>(pixels);
    for (int32_t i = 0; i < count; ++i) {
        const uint64_t pixel = coloredPixel16(red, green, blue, pixels, i);
        __builtin_memcpy(bytes + static_cast<int64_t>(i) * 8, &pixel, 8);
    }
}

/// Calls `each(i)` where the mask is not 0. A list first: a mask may be as hard to foresee as a coin's fall.
template <class Each>
inline void forEachMaskedIn(const uint8_t* mask, int32_t count, const Each& each) {
    constexpr int32_t kAtOnce = 128;
    int32_t places[kAtOnce + 0UL];
    for (int32_t from = 0; from < count; from += kAtOnce) {
        const int32_t past = count - from < kAtOnce ? count : from + kAtOnce;
        int32_t listed = 0;
        for (int32_t i = from; i < past; ++i) {
            places[listed] = i;
            listed += mask[i] != 0 ? 1 : 0;
        }
        for (int32_t k = 0; k < listed; ++k) {
            each(places[k]);
        }
    }
}

/// Pixels that are masked out are not written: somebody else may have them. `storesMasked`: the set has stores under a mask, which
/// the loop becomes.
template <bool storesMasked>
inline void layColors16(const uint32_t* __restrict red, const uint32_t* __restrict green,
                        const uint32_t* __restrict blue, const uint8_t* __restrict mask,
                        void* __restrict pixels, int32_t count) {
    auto* const bytes = static_cast<uint8_t*>(pixels);
    const auto lay = [&](int32_t i) {
        const uint64_t pixel = coloredPixel16(red, green, blue, pixels, i);
        __builtin_memcpy(bytes + static_cast<int64_t>(i) * 8, &pixel, 8);
    };
    if constexpr (storesMasked) {
        for (int32_t i = 0; i < count; ++i) {
            if (mask[i] != 0) {
                lay(i);
            }
        }
    } else {
        forEachMaskedIn(mask, count, lay);
    }
}

struct FloatPixel {
    float alpha, red, green, blue;
};

/// Not multiplied by the mask: what is masked out may be infinite.
inline uint32_t bitsIf(uint8_t mask, const float& channel) {
    uint32_t bits;
    __builtin_memcpy(&bits, &channel, 4);
    return bits & (mask != 0 ? ~uint32_t{0} : uint32_t{0});
}

inline double numberOf(uint32_t bits) {
    float number;
    __builtin_memcpy(&number, &bits, 4);
    return static_cast<double>(number);
}

/// The sizes of numbers: of all but zeros the least, less 1, and the greatest, as bits without a sign.
struct Sizes {
    static constexpr uint32_t kLargestFinite = 254;
    static constexpr uint32_t kSpareBits = 14;
    static constexpr uint32_t kNone = ~uint32_t{0};

    uint32_t least = kNone;
    uint32_t greatest = 0;

    void add(uint32_t bits) {
        const uint32_t size = bits & 0x7FFFFFFF;
        least = size - 1 < least ? size - 1 : least; // of 0 more than of any other
        greatest = size > greatest ? size : greatest;
    }
    bool sumsAreExact() const {
        const uint32_t largest = greatest >> 23;
        const uint32_t exponent = least != kNone ? (least + 1) >> 23 : kLargestFinite;
        // Below the smallest exponent numbers lose bits and not size.
        const uint32_t smallest = exponent != 0 ? exponent : 1;
        return largest <= kLargestFinite && (largest <= smallest || largest - smallest <= kSpareBits);
    }
};

inline bool splitColors32(const void* pixels, const uint8_t* mask, int32_t count, double* __restrict red,
                          double* __restrict green, double* __restrict blue) {
    const auto* const from = static_cast<const FloatPixel*>(pixels);
    Sizes sizes;
    for (int32_t i = 0; i < count; ++i) {
        const uint32_t r = bitsIf(mask[i], from[i].red);
        const uint32_t g = bitsIf(mask[i], from[i].green);
        const uint32_t b = bitsIf(mask[i], from[i].blue);
        red[i] = numberOf(r);
        green[i] = numberOf(g);
        blue[i] = numberOf(b);
        sizes.add(r);
        sizes.add(g);
        sizes.add(b);
    }
    return sizes.sumsAreExact();
}

inline bool splitAlpha32(const void* pixels, const uint8_t* mask, int32_t count, double* __restrict alpha) {
    const auto* const from = static_cast<const FloatPixel*>(pixels);
    Sizes sizes;
    for (int32_t i = 0; i < count; ++i) {
        const uint32_t a = bitsIf(mask[i], from[i].alpha);
        alpha[i] = numberOf(a);
        sizes.add(a);
    }
    return sizes.sumsAreExact();
}

/// A power of two times a rounded quotient is the rounded quotient of that power.
inline void coreMeans32(const double* sums, const double* reciprocal, float* __restrict means,
                        int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        means[i] = static_cast<float>(sums[i] * (32768.0 * reciprocal[i]));
    }
}

inline void wholeMeans32(const double* sums, float* __restrict means, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        means[i] = static_cast<float>(sums[i]);
    }
}

inline void mixedMeans32(const double* boxes, const uint32_t* counts, const double* sums,
                         const uint32_t* weights, double tailShare, float* __restrict means, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        const double box = boxes[i] / static_cast<double>(static_cast<int32_t>(counts[i])) * tailShare;
        const double weight = static_cast<double>(static_cast<int32_t>(weights[i]));
        const double mixed = sums[i] * (32768.0 / weight * (1.0 - tailShare)) + box;
        means[i] = static_cast<float>(weights[i] != 0 ? mixed : box);
    }
}

inline void flatMeans32(const double* sums, const uint32_t* counts, float* __restrict means, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        means[i] = static_cast<float>(sums[i] / static_cast<double>(static_cast<int32_t>(counts[i])));
    }
}

// One store a pixel.
using WholeFloatPixel = float __attribute__((vector_size(16)));

inline void mergeColors32(const float* red, const float* green, const float* blue, void* pixels,
                          int32_t count) {
    auto* const to = static_cast<FloatPixel*>(pixels);
    for (int32_t i = 0; i < count; ++i) {
        const WholeFloatPixel pixel = {to[i].alpha, red[i], green[i], blue[i]};
        __builtin_memcpy(to + i, &pixel, sizeof pixel);
    }
}

inline void layColors32(const float* red, const float* green, const float* blue, const uint8_t* mask,
                        void* pixels, int32_t count) {
    auto* const to = static_cast<FloatPixel*>(pixels);
    forEachMaskedIn(mask, count, [&](int32_t i) {
        to[i].red = red[i];
        to[i].green = green[i];
        to[i].blue = blue[i];
    });
}

} // namespace
} // namespace kovalune
