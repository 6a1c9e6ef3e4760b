#include "bench/CopyTime.h"

#include "effect/kernels/Kernels.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
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

/// The shortest of at least three turns and 50 ms.
double secondsOf(const std::function<void()>& once) {
    using Clock = std::chrono::steady_clock;
    double shortest = std::numeric_limits<double>::infinity();
    const Clock::time_point begin = Clock::now();
    for (int turn = 0; turn < 3 || Clock::now() - begin < std::chrono::milliseconds(50); ++turn) {
        const Clock::time_point start = Clock::now();
        once();
        benchmark::ClobberMemory();
        shortest = std::min(shortest, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return shortest;
}

void reportIterations(benchmark::State& state, const char* name, double seconds) {
    state.counters[name] = benchmark::Counter(seconds, benchmark::Counter::kIsIterationInvariantRate);
}

} // namespace

void reportPlain(benchmark::State& state, const std::function<void()>& once) {
    const InstructionSet chosen = kernels().set;
    if (useInstructionSet(InstructionSet::kPlain)) {
        reportIterations(state, "plain", secondsOf(once));
    }
    static_cast<void>(useInstructionSet(chosen));
}

void reportOneThread(benchmark::State& state, const std::function<void()>& once) {
    reportIterations(state, "one thread", secondsOf(once));
}

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
