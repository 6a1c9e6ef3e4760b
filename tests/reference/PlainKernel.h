// A Gaussian kernel made step by step with plain arrays, as the measure of the effect's.
#pragma once

#include <cstdint>
#include <vector>

namespace kovalune::test {

/// What a tap of 1 weighs in a float picture: taps count from 0 to 32768.
inline constexpr double kTapUnit32 = 1.0 / 32768.0;

struct PlainKernel {
    std::vector<int32_t> taps;
    int32_t length = 0;
    int32_t tail = 0;
    int32_t tailWeight = 0;
    int32_t firstRest = 0; ///< what the truncations lost, before it is handed back

    /// The weights of the symmetric kernel added up.
    int64_t sum() const;
};

PlainKernel plainKernel(int32_t length, double variance);

} // namespace kovalune::test
