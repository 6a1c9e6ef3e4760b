// A kernel made ready for the weighted sums of one pass: its taps spread to both sides, and their running sums.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/ScratchBlock.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// A window never reaches further than the line is long.
inline int32_t reachOf(const GaussKernel& kernel, int32_t lineLength) {
    return std::min(kernel.length - 1, lineLength);
}

class LineWeights {
public:
    /// For lines of `lineLength` pixels; in memory of the layout.
    LineWeights(const GaussKernel& kernel, int32_t lineLength, ScratchLayout& layout)
        : reach_(std::min(kMaxTaps - 1, reachOf(kernel, lineLength))) {
        const auto entries = static_cast<std::size_t>(kSides + 1);
        taps_ = layout.take<uint16_t>(entries + 1);
        sums_ = layout.take<uint32_t>(entries);
        doubles_ = layout.take<double>(kMaxTaps);
    }

    /// Called once there is memory.
    void fill(const GaussKernel& kernel) {
        std::fill_n(taps_, kSides + 2, uint16_t{0});
        std::fill_n(doubles_, kMaxTaps, 0.0);
        for (int32_t k = 0; k <= reach_; ++k) {
            const uint16_t tap = kernel.taps()[k];
            taps_[kMaxTaps + k] = tap;
            taps_[kMaxTaps - k] = tap;
            doubles_[k] = static_cast<double>(tap) * (1.0 / kWeightOne);
        }
        uint32_t sum = 0;
        for (int32_t k = 0; k <= kSides; ++k) {
            sum += taps_[k];
            sums_[k] = sum;
        }
    }

    /// How far a core reaches to either side.
    int32_t reach() const { return reach_; }

    /// Whether every tap fits a signed 16-bit number; those of narrow kernels may not.
    bool fitPairs() const { return taps_[kMaxTaps] <= 32767; }

    /// The taps from distance -`reach` on, towards the right.
    const uint16_t* from(int32_t reach) const { return taps_ + kMaxTaps - reach; }

    /// The sum of the taps at distances from `first` to `last`, of which negative ones lie on the left; -300 to 300.
    uint32_t sum(int32_t first, int32_t last) const {
        return sums_[kMaxTaps + last] - sums_[kMaxTaps + first - 1];
    }

    /// running()[i]: the sum of the taps at distances from -`reach()` to i - `reach()`.
    const uint32_t* running() const { return sums_ + kMaxTaps - reach_; }

    /// The taps at distances 0 to `reach()`, with 1.0 for 32768.
    const double* doubles() const { return doubles_; }

private:
    static constexpr int32_t kSides = 2 * kMaxTaps;

    int32_t reach_;
    uint16_t* taps_; ///< [kMaxTaps + distance], 0 beyond the reach
    uint32_t* sums_;
    double* doubles_;
};

} // namespace kovalune
