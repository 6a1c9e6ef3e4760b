#include "effect/Kovalune.h"

#include "effect/share/ExactMath.h"

namespace kovalune {
namespace {

// The straight piece by black and the power above it, as the curve's definition has them.
constexpr double kSlope = 12.92;
constexpr double kLastStraightLight = 0.0031308;
constexpr double kLastStraightValue = 0.04045;
constexpr double kOffset = 0.055;
constexpr double kExponent = 2.4;

} // namespace

double srgbOfLinear(double light) {
    if (light < 0.0) {
        return -srgbOfLinear(-light);
    }
    return light <= kLastStraightLight ? kSlope * light
                                       : (1.0 + kOffset) * exact::pow(light, 1.0 / kExponent) - kOffset;
}

double linearOfSrgb(double value) {
    if (value < 0.0) {
        return -linearOfSrgb(-value);
    }
    return value <= kLastStraightValue ? value / kSlope
                                       : exact::pow((value + kOffset) / (1.0 + kOffset), kExponent);
}

} // namespace kovalune
