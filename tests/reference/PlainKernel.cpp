#include "tests/reference/PlainKernel.h"

#include "effect/share/ExactMath.h"

#include <cstddef>

namespace kovalune::test {

int64_t PlainKernel::sum() const {
    int64_t total = static_cast<int64_t>(2 * length - 1) * tail - taps[0];
    for (const int32_t tap : taps) {
        total += 2 * static_cast<int64_t>(tap);
    }
    return total;
}

PlainKernel plainKernel(int32_t length, double variance) {
    PlainKernel kernel;
    if (length < 2) {
        kernel.taps = {32768};
        kernel.length = 1;
        return kernel;
    }
    kernel.length = length;
    const auto n = static_cast<std::size_t>(length);
    std::vector<double> w(n);
    double s = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double square = static_cast<double>(i * i);
        const double exponent = square * -0.5;
        w[i] = exact::exp(exponent / variance);
        s = s + w[i] * 2.0;
    }
    s = s - w[0];
    for (std::size_t i = 0; i < n; ++i) {
        w[i] = w[i] / s;
    }
    double t = 0.0;
    std::size_t entries = n;
    if (n > 300) {
        for (std::size_t i = 300; i < n; ++i) {
            t = t + w[i];
        }
        t = t / static_cast<double>(n - 300);
        kernel.tail = static_cast<int32_t>(t * 32768.0);
        entries = 300;
    }
    kernel.tailWeight = (2 * length - 1) * kernel.tail;
    for (std::size_t i = 0; i < entries; ++i) {
        kernel.taps.push_back(static_cast<int32_t>((w[i] - t) * 32768.0));
    }
    int64_t rest = 32768 - kernel.sum();
    kernel.firstRest = static_cast<int32_t>(rest);
    for (std::size_t i = 0; rest > 1; ++i) {
        const std::size_t j = i % entries;
        kernel.taps[j] += 1;
        rest -= j == 0 ? 1 : 2;
    }
    kernel.taps[0] += static_cast<int32_t>(rest);
    return kernel;
}

} // namespace kovalune::test
