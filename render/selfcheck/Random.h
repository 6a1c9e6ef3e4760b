// Random numbers that are the same on every platform.
#pragma once

#include <cstdint>
#include <random>

namespace kovalune::selfcheck {

class Random {
public:
    explicit Random(uint64_t seed) : engine_(seed) {}

    uint32_t next() { return static_cast<uint32_t>(engine_() >> 32); }

    /// 0 to below `count`.
    int below(int count) { return static_cast<int>(next() % static_cast<uint32_t>(count)); }

    /// Both ends inclusive.
    int between(int first, int last) { return first + below(last - first + 1); }

    bool chance(int percent) { return below(100) < percent; }

    /// 0 to below 1.
    double unit() { return static_cast<double>(next()) / 4294967296.0; }

private:
    std::mt19937_64 engine_;
};

} // namespace kovalune::selfcheck
