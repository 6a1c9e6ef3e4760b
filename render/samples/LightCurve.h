// The curve between linear light and the values that the effect works on, for many samples: drawings repeat theirs, and the
// power takes long.
#pragma once

#include "effect/Kovalune.h"
#include "effect/share/StandardParts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kovalune::samples {

class LightCurve {
public:
    using Curve = double (*)(double);

    explicit LightCurve(Curve curve) : curve_(curve), known_(kKnown) {}

    /// What the curve makes of the value, to the bit.
    double operator()(double value) {
        const auto bits = bitCast<uint64_t>(value);
        Known& known = known_[(bits * 0x9e3779b97f4a7c15U) >> (64 - kKnownBits)];
        if (known.value != bits) {
            known = {bits, curve_(value)};
        }
        return known.result;
    }

private:
    static constexpr int kKnownBits = 16; // as many as 16 bits have
    static constexpr std::size_t kKnown = std::size_t{1} << kKnownBits;

    /// At first the result of 0.
    struct Known {
        uint64_t value = 0;
        double result = 0.0;
    };

    Curve curve_;
    std::vector<Known> known_;
};

} // namespace kovalune::samples
