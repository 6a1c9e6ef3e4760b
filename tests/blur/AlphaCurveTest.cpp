// The curve of "Boundary Bias" on every 16-bit alpha, and on floats all over and around its ends, against the formula with the
// exact cosine. It takes a quicker cosine where that cannot matter.

#include "effect/blur/AlphaCurve.h"
#include "effect/share/ExactMath.h"
#include "effect/share/Integers.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace kovalune::test {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kBiases[] = {0.0, 0.5, 7.25, 33.0, 50.0, 90.0, 99.0, 99.99};

double plainRaised(double distance, double span) {
    return (exact::cos(distance / span * kPi) - 1.0) * -0.5;
}

uint16_t plainCurve16(uint16_t alpha, double bias) {
    const float scaled = static_cast<float>(bias) / 100.0F * 32767.0F;
    const int32_t narrowing = truncToInt32(static_cast<double>(scaled) + 0.5);
    const int32_t low = narrowing / 10;
    if (alpha < low || alpha >= 32768 - narrowing * 9 / 10) {
        return alpha < low ? 0 : 32768;
    }
    return static_cast<uint16_t>(truncToInt32(plainRaised(alpha - low, 32768 - narrowing) * 32768));
}

float plainCurve32(float alpha, double bias) {
    const float narrowing = static_cast<float>(bias) / 100.0F * 0.99999988F;
    const float low = narrowing / 10.0F;
    if (alpha < low || alpha >= 1.0F - narrowing * 9.0F / 10.0F) {
        return alpha < low ? 0.0F : 1.0F;
    }
    return static_cast<float>(
        plainRaised(static_cast<double>(alpha - low), static_cast<double>(1.0F - narrowing)));
}

TEST(AlphaCurve, IsTheFormulasForEvery16BitAlpha) {
    for (const double bias : kBiases) {
        AlphaCurveOf<Argb16> curve(bias);
        for (uint32_t alpha = 0; alpha <= 0xffff; ++alpha) {
            const auto a = static_cast<uint16_t>(alpha);
            ASSERT_EQ(curve(a), plainCurve16(a, bias)) << "alpha " << alpha << " bias " << bias;
        }
    }
}

void expectSame(const AlphaCurveOf<Argb32>& curve, float alpha, double bias) {
    const float expected = plainCurve32(alpha, bias);
    const float actual = curve(alpha);
    if (std::isnan(expected)) {
        ASSERT_TRUE(std::isnan(actual)) << alpha;
    } else {
        ASSERT_EQ(std::bit_cast<uint32_t>(actual), std::bit_cast<uint32_t>(expected))
            << "alpha " << alpha << " bias " << bias;
    }
}

TEST(AlphaCurve, IsTheFormulasForFloats) {
    Random random(91);
    for (const double bias : kBiases) {
        const AlphaCurveOf<Argb32> curve(bias);
        const float low = static_cast<float>(bias) / 100.0F * 0.99999988F / 10.0F;
        float above = low;
        for (int n = 0; n < 300; ++n) {
            expectSame(curve, above, bias);
            above = std::nextafter(above, 2.0F);
        }
        for (int n = 0; n < 20000; ++n) {
            expectSame(curve, static_cast<float>(random.unit()), bias);
            expectSame(curve, low + static_cast<float>(std::ldexp(random.unit(), -random.below(40))), bias);
        }
        for (const float odd : {0.0F, -0.0F, -1.0F, 1.0F, 2.0F, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()}) {
            expectSame(curve, odd, bias);
        }
    }
}

} // namespace
} // namespace kovalune::test
