#include "bench/CopyTime.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <vector>

namespace kovalune::bench {
namespace {

/// The median of some copies, all between the same two blocks.
double secondsOfACopy(std::size_t bytes) {
    using Clock = std::chrono::steady_clock;
    const std::vector<uint8_t> source(bytes, 1);
    std::vector<uint8_t> target(bytes, 2);
    std::vector<double> seconds;
    const Clock::time_point begin = Clock::now();
    while (seconds.size() < 25 || Clock::now() - begin < std::chrono::milliseconds(10)) {
        const Clock::time_point start = Clock::now();
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
        seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    }
    const auto median = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::nth_element(seconds.begin(), median, seconds.end());
    return *median;
}

} // namespace

void reportCopies(benchmark::State& state, const Traffic& traffic) {
    using benchmark::Counter;
    const double seconds = secondsOfACopy(static_cast<std::size_t>((traffic.read + traffic.written) / 2));
    state.counters["copies"] = Counter(seconds, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void reportCopies(benchmark::State& state, PF_PixelFormat format, int64_t scale) {
    const host::Image& image = picture(kDrawing, format, scale);
    const int64_t bytes = static_cast<int64_t>(image.rowBytes()) * image.height();
    reportCopies(state, {bytes, bytes});
}

} // namespace kovalune::bench
