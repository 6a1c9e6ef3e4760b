// The weighted sums along a line, in registers: a block of neighbouring sums takes all taps before it is stored. `Set` tells
// what a vector is and what can be done with it; each set has one of its own, in an unnamed namespace.
#pragma once

#include <cstdint>

namespace kovalune {
namespace {

inline uint32_t pairOf(const uint16_t* taps) {
    return static_cast<uint32_t>(taps[0]) | static_cast<uint32_t>(taps[1]) << 16;
}

template <class Set, int kVectors>
inline void weighPairsBlock(const uint32_t* pairs, const uint16_t* taps, int32_t tapPairs, uint32_t start,
                            uint32_t* sums) {
    typename Set::Words sum[static_cast<decltype(sizeof 0)>(kVectors)];
    for (int v = 0; v < kVectors; ++v) {
        sum[v] = Set::fill(start);
    }
    for (int32_t k = 0; k < tapPairs; ++k) {
        const typename Set::Words tap = Set::fill(pairOf(taps + 2 * k));
        const uint32_t* const at = pairs + 2 * k;
        for (int v = 0; v < kVectors; ++v) {
            sum[v] = Set::addProducts(sum[v], Set::load(at + v * Set::kWords), tap);
        }
    }
    for (int v = 0; v < kVectors; ++v) {
        Set::store(sums + v * Set::kWords, sum[v]);
    }
}

template <class Set>
void weighPairs(const uint32_t* pairs, const uint16_t* taps, int32_t tapPairs, uint32_t start, uint32_t* sums,
                int32_t count) {
    constexpr int32_t kBlock = Set::kBlockVectors * Set::kWords;
    int32_t i = 0;
    for (; count - i > kBlock - Set::kWords; i += kBlock) {
        weighPairsBlock<Set, Set::kBlockVectors>(pairs + i, taps, tapPairs, start, sums + i);
    }
    for (; count - i > 3 * Set::kWords; i += 4 * Set::kWords) {
        weighPairsBlock<Set, 4>(pairs + i, taps, tapPairs, start, sums + i);
    }
    for (; i < count; i += Set::kWords) {
        weighPairsBlock<Set, 1>(pairs + i, taps, tapPairs, start, sums + i);
    }
}

template <class Set, int kVectors>
inline void weighDoublesBlock(const double* line, const double* taps, int32_t reach, double* sums) {
    typename Set::Doubles sum[static_cast<decltype(sizeof 0)>(kVectors)];
    for (int v = 0; v < kVectors; ++v) {
        sum[v] = Set::fill(0.0);
    }
    for (int32_t k = 1; k <= reach; ++k) {
        const typename Set::Doubles tap = Set::fill(taps[k]);
        for (int v = 0; v < kVectors; ++v) {
            sum[v] = Set::addProduct(sum[v], Set::load(line + v * Set::kDoubles - k), tap);
        }
    }
    for (int32_t k = 0; k <= reach; ++k) {
        const typename Set::Doubles tap = Set::fill(taps[k]);
        for (int v = 0; v < kVectors; ++v) {
            sum[v] = Set::addProduct(sum[v], Set::load(line + v * Set::kDoubles + k), tap);
        }
    }
    for (int v = 0; v < kVectors; ++v) {
        Set::store(sums + v * Set::kDoubles, sum[v]);
    }
}

template <class Set>
void weighDoubles(const double* line, const double* taps, int32_t reach, double* sums, int32_t count) {
    constexpr int32_t kBlock = Set::kBlockVectors * Set::kDoubles;
    int32_t i = 0;
    for (; count - i > kBlock - Set::kDoubles; i += kBlock) {
        weighDoublesBlock<Set, Set::kBlockVectors>(line + i, taps, reach, sums + i);
    }
    for (; count - i > 3 * Set::kDoubles; i += 4 * Set::kDoubles) {
        weighDoublesBlock<Set, 4>(line + i, taps, reach, sums + i);
    }
    for (; i < count; i += Set::kDoubles) {
        weighDoublesBlock<Set, 1>(line + i, taps, reach, sums + i);
    }
}

} // namespace
} // namespace kovalune
