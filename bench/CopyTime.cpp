#include "bench/CopyTime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>

namespace kovalune::bench {
namespace {

/// The median of some copies, all between the same two pictures. The first one, which may find the target's memory new,
/// does not count.
double secondsOfACopy(PF_PixelFormat format, int64_t scale) {
    using Clock = std::chrono::steady_clock;
    const host::Image& source = picture(kDrawing, format, scale);
    host::Image target = source;
    const std::size_t bytes = source.rowBytes() * static_cast<std::size_t>(source.height());
    std::array<double, 25> seconds{};
    for (double& each : seconds) {
        const Clock::time_point start = Clock::now();
        std::memcpy(target.row(0), source.row(0), bytes);
        benchmark::ClobberMemory();
        each = std::chrono::duration<double>(Clock::now() - start).count();
    }
    auto* const median = seconds.begin() + seconds.size() / 2;
    std::nth_element(seconds.begin() + 1, median, seconds.end());
    return *median;
}

} // namespace

void reportCopies(benchmark::State& state, PF_PixelFormat format, int64_t scale) {
    using benchmark::Counter;
    state.counters["copies"] =
        Counter(secondsOfACopy(format, scale), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

} // namespace kovalune::bench
