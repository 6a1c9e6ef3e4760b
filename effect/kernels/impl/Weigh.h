// The weighted sums along lines, in registers: a block of neighbouring sums, of all channels, takes all taps before it is
// stored. `Set` tells what a vector is and what can be done with it; each set has one of its own, in an unnamed namespace.
#pragma once

#include "effect/kernels/Kernels.h"

#include <cstdint>

namespace kovalune {
namespace {

inline uint32_t pairOf(const uint16_t* taps) {
    return static_cast<uint32_t>(taps[0]) | static_cast<uint32_t>(taps[1]) << 16;
}

struct PairTaps {
    const uint16_t* taps;
    int32_t tapPairs;
    uint32_t start;
};

template <class Set, int kChannels, int kVectors>
inline void weighBlock(const WeighedLines<uint32_t>& lines, int32_t i, const PairTaps& with) {
    typename Set::Words sum[kChannels * kVectors + 0UL];
    for (auto& each : sum) {
        each = Set::fill(with.start);
    }
    const uint32_t* at = lines.line + i;
    for (int32_t k = 0; k < with.tapPairs; ++k, at += 2) {
        const typename Set::Words tap = Set::fill(pairOf(with.taps + 2 * k));
        for (int c = 0; c < kChannels; ++c) {
            for (int v = 0; v < kVectors; ++v) {
                auto& each = sum[c * kVectors + v];
                each = Set::addProducts(each, Set::load(at + c * lines.lineStep + v * Set::kWords), tap);
            }
        }
    }
    for (int c = 0; c < kChannels; ++c) {
        for (int v = 0; v < kVectors; ++v) {
            Set::store(lines.sums + c * lines.sumsStep + i + v * Set::kWords, sum[c * kVectors + v]);
        }
    }
}

struct DoubleTaps {
    const double* taps;
    int32_t reach;
};

template <class Set, int kChannels, int kVectors>
inline void weighBlock(const WeighedLines<double>& lines, int32_t i, const DoubleTaps& with) {
    typename Set::Doubles sum[kChannels * kVectors + 0UL];
    for (auto& each : sum) {
        each = Set::fill(0.0);
    }
    const auto add = [&](const double* at, double weight) {
        const typename Set::Doubles tap = Set::fill(weight);
        for (int c = 0; c < kChannels; ++c) {
            for (int v = 0; v < kVectors; ++v) {
                auto& each = sum[c * kVectors + v];
                each = Set::addProduct(each, Set::load(at + c * lines.lineStep + v * Set::kDoubles), tap);
            }
        }
    };
    const double* const centre = lines.line + i;
    for (int32_t k = 1; k <= with.reach; ++k) {
        add(centre - k, with.taps[k]);
    }
    for (int32_t k = 0; k <= with.reach; ++k) {
        add(centre + k, with.taps[k]);
    }
    for (int c = 0; c < kChannels; ++c) {
        for (int v = 0; v < kVectors; ++v) {
            Set::store(lines.sums + c * lines.sumsStep + i + v * Set::kDoubles, sum[c * kVectors + v]);
        }
    }
}

/// All lines in blocks of kVectors vectors of `step` entries, and what is left over in smaller ones.
template <class Set, int kChannels, int kVectors, class Number, class Taps>
inline void weighFrom(const WeighedLines<Number>& lines, int32_t i, int32_t step, const Taps& with) {
    for (; lines.count - i > (kVectors - 1) * step; i += kVectors * step) {
        weighBlock<Set, kChannels, kVectors>(lines, i, with);
    }
    if constexpr (kVectors > 1) {
        if (i < lines.count) {
            weighFrom<Set, kChannels, kVectors - 1>(lines, i, step, with);
        }
    }
}

template <class Set>
void weighPairs(const WeighedLines<uint32_t>& lines, const uint16_t* taps, int32_t tapPairs, uint32_t start) {
    const PairTaps with{taps, tapPairs, start};
    if (lines.channels == 3) {
        weighFrom<Set, 3, Set::kVectorsOfThree>(lines, 0, Set::kWords, with);
    } else {
        weighFrom<Set, 1, Set::kVectorsOfOne>(lines, 0, Set::kWords, with);
    }
}

template <class Set>
void weighDoubles(const WeighedLines<double>& lines, const double* taps, int32_t reach) {
    const DoubleTaps with{taps, reach};
    if (lines.channels == 3) {
        weighFrom<Set, 3, Set::kVectorsOfThree>(lines, 0, Set::kDoubles, with);
    } else {
        weighFrom<Set, 1, Set::kVectorsOfOne>(lines, 0, Set::kDoubles, with);
    }
}

} // namespace
} // namespace kovalune
