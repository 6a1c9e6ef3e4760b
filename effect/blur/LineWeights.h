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

/// The most pixels whose sums are worked on at once: what stays in the nearest cache.
inline constexpr int32_t kBlockPixels = 512;

class LineWeights {
public:
    /// For lines of `lineLength` pixels; in memory of the layout.
    LineWeights(const GaussKernel& kernel, int32_t lineLength, ScratchLayout& layout)
        : reach_(std::min(kMaxTaps - 1, reachOf(kernel, lineLength))) {
        taps_ = layout.take<uint16_t>(kSides + 2);
        sums_ = layout.take<uint32_t>(kSides + 1 + kBlockPixels);
        doubles_ = layout.take<double>(kMaxTaps);
        doubleSums_ = layout.take<double>(kSides + 1 + kBlockPixels);
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
        const int32_t past = kMaxTaps + reach_; // of the places with a tap
        uint32_t sum = 0;
        for (int32_t k = kMaxTaps - reach_; k <= past; ++k) {
            sum += taps_[k];
            sums_[k] = sum;
            doubleSums_[k] = static_cast<double>(sum) * (1.0 / kWeightOne);
        }
        std::fill(sums_, sums_ + kMaxTaps - reach_, 0U);
        std::fill(sums_ + past + 1, sums_ + kSides + 1 + kBlockPixels, sum);
        std::fill(doubleSums_, doubleSums_ + kMaxTaps - reach_, 0.0);
        std::fill(doubleSums_ + past + 1, doubleSums_ + kSides + 1 + kBlockPixels, doubleSums_[past]);
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

    /// Of all taps.
    uint32_t whole() const { return sums_[kSides]; }

    /// running()[i]: the sum of the taps at distances up to i - `reach()`; some kBlockPixels further than there are taps.
    const uint32_t* running() const { return sums_ + kMaxTaps - reach_; }
    /// The same with 1.0 for 32768.
    const double* runningDoubles() const { return doubleSums_ + kMaxTaps - reach_; }

    /// The taps at distances 0 to `reach()`, with 1.0 for 32768.
    const double* doubles() const { return doubles_; }

private:
    static constexpr int32_t kSides = 2 * kMaxTaps;

    int32_t reach_;
    uint16_t* taps_; ///< [kMaxTaps + distance], 0 beyond the reach
    uint32_t* sums_;
    double* doubles_;
    double* doubleSums_;
};

} // namespace kovalune
