#include "effect/blur/GaussKernel.h"

#include "effect/share/ExactMath.h"
#include "effect/share/Integers.h"

#include <cstddef>
#include <vector>

namespace kovalune {
namespace {

uint16_t toWeight(int32_t value) {
    return static_cast<uint16_t>(static_cast<uint32_t>(value));
}

uint16_t truncateWeight(double weight) {
    return toWeight(truncToInt32(weight * kWeightOne));
}

/// Samples of the Gaussian at 0 to n - 1, scaled so that the symmetric sum is 1.
std::vector<double> normalisedGaussian(int32_t n, double variance) {
    std::vector<double> weights(static_cast<std::size_t>(n));
    double sum = 0.0;
    int64_t i = 0;
    for (double& weight : weights) {
        weight = exact::exp(static_cast<double>(i * i) * -0.5 / variance);
        sum += weight * 2.0;
        ++i;
    }
    sum -= weights[0];
    for (double& weight : weights) {
        weight /= sum;
    }
    return weights;
}

/// Mean of the weights beyond the core.
double meanOfTail(const std::vector<double>& weights) {
    double sum = 0.0;
    for (std::size_t i = kMaxTaps; i < weights.size(); ++i) {
        sum += weights[i];
    }
    return sum / static_cast<double>(weights.size() - kMaxTaps);
}

/// All truncations lose weight. Hands the loss back from the centre outwards, sweep after sweep; a side tap
/// counts twice, and what is left over goes to the centre.
void correctRounding(uint16_t* taps, int32_t tapCount, int32_t tailWeight) {
    int32_t sum = 0;
    for (int32_t i = 0; i < tapCount; ++i) {
        sum += taps[i];
    }
    int32_t rest = kWeightOne - (tailWeight + 2 * sum - taps[0]);
    int32_t j = 0;
    while (rest > 1) {
        ++taps[j];
        rest -= j == 0 ? 1 : 2;
        j = j + 1 == tapCount ? 0 : j + 1;
    }
    taps[0] = toWeight(taps[0] + rest);
}

} // namespace

GaussKernel makeGaussKernel(int32_t n, double variance) {
    GaussKernel kernel;
    if (n < 2) {
        kernel.table = AEUtil::SharedArray(1);
        kernel.table.address()[0] = static_cast<uint16_t>(kWeightOne);
        kernel.tapCount = 1;
        kernel.length = 1;
        return kernel;
    }
    const std::vector<double> weights = normalisedGaussian(n, variance);
    double excessOver = 0.0;
    if (n > kMaxTaps) {
        excessOver = meanOfTail(weights);
        kernel.tail = truncateWeight(excessOver);
    }
    kernel.length = n;
    kernel.tapCount = n > kMaxTaps ? kMaxTaps : n;
    kernel.table = AEUtil::SharedArray(static_cast<std::size_t>(kernel.tapCount));
    uint16_t* const taps = kernel.table.address();
    for (int32_t i = 0; i < kernel.tapCount; ++i) {
        taps[i] = truncateWeight(weights[static_cast<std::size_t>(i)] - excessOver);
    }
    const auto tailWeight = static_cast<int32_t>((2 * static_cast<int64_t>(n) - 1) * kernel.tail);
    correctRounding(taps, kernel.tapCount, tailWeight);
    kernel.tailWeight = toWeight(tailWeight);
    return kernel;
}

} // namespace kovalune
