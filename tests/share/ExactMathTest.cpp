#include "effect/share/ExactMath.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace kovalune::test {
using namespace exact;
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

/// Also tells 0 from -0.
bool sameBits(double a, double b) {
    return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

// ---- Known results: found with 700 bits of arithmetic and rounded once, for platforms without quadruple
// precision

struct KnownResult {
    double x;
    double result;
};

struct KnownPower {
    double x;
    double y;
    double result;
};

constexpr KnownResult kKnownExp[] = {
    {-0x1p-1, 0x1.368b2fc6f960ap-1},
    {-0x1p+0, 0x1.78b56362cef38p-2},
    {-0x1p+1, 0x1.152aaa3bf81ccp-3},
    {-0x1p-3, 0x1.c3d6a24ed8222p-1},
    {-0x1.0c6f7a0b5ed8dp-20, 0x1.ffffde7211d81p-1},
    {-0x1.4p+4, 0x1.1b48655f37267p-29},
    {-0x1.47ae147ae147bp-8, 0x1.fd7246927d28bp-1},
    {-0x1.e848p+2, 0x1.fd8f8d4e97abep-12},
    {-0x1.8b0fcd32f707ap+3, 0x1.23d2b69da2f77p-18},
    {-0x1.b6db6db6db6dbp-2, 0x1.4d896b8eddab2p-1},
    {-0x1.2000010c6f7a1p+4, 0x1.05a617a0dc621p-26},
    {-0x1.92p+6, 0x1.01a0e5643644fp-145},
    {-0x1.6226666666666p+9, 0x1.19e98b83de7a3p-1022},
    {-0x1.62cp+9, 0xa9d21933f70fp-1071},
    {-0x1.722p+9, 0x21p-1073},
    {-0x1.7433333333333p+9, 0x1p-1074},
    {-0x1.7490a3d70a3d7p+9, 0x1p-1074},
    {-0x1.7491eb851eb85p+9, 0.0},
    {0x1p-1, 0x1.a61298e1e069cp+0},
    {0x1p+0, 0x1.5bf0a8b145769p+1},
    {0x1.4p+3, 0x1.5829dcf95056p+14},
    {0x1.5e0fbe76c8b44p+9, 0x1.0b9bc66f2e01p+1010},
    {0x1.62e3d70a3d70ap+9, 0x1.fe9ce5c4c52b4p+1023},
    {0x1p-53, 0x1.0000000000001p+0},
    {-0x1.8p-53, 0x1.fffffffffffffp-1},
    {-0x1p-55, 0x1p+0},
    {0x1.8p-52, 0x1.0000000000002p+0},
};

constexpr KnownPower kKnownPow[] = {
    {0x1p+1, 0x1p-1, 0x1.6a09e667f3bcdp+0},
    {0x1p+2, 0x1p-1, 0x1p+1},
    {0x1p+4, 0x1p-2, 0x1p+1},
    {0x1p+1, 0x1.4p+3, 0x1p+10},
    {0x1.8p+1, 0x1.5555555555555p-2, 0x1.7137449123ef6p+0},
    {0x1.4p+3, 0x1.999999999999ap-4, 0x1.4248ef8fc2604p+0},
    {0x1.f48p+9, 0x1.2492492492492p-3, 0x1.576f20e6e6d4ep+1},
    {0x1.0cccccccccccdp+1, 0x1.5555555555555p-2, 0x1.47d409418f6e4p+0},
    {0x1.8f9999999999ap+6, 0x1.5555555555555p-3, 0x1.13b8beb3d3bc4p+1},
    {0x1.f4p+9, 0x1.5555555555555p-2, 0x1.3ffffffffffffp+3},
    {0x1.f5p+9, 0x1.c71c71c71c71cp-4, 0x1.13d430ab0f319p+1},
    {0x1.388p+13, 0x1p-3, 0x1.94c583ada5b53p+1},
    {0x1.0026666666666p+9, 0x1.999999999999ap-3, 0x1.bdc62c0550fcap+1},
    {0x1.6p+2, 0x1.999999999999ap-4, 0x1.2f9507de9629ap+0},
    {0x1.3333333333333p-2, -0x1.4p+1, 0x1.44938a632994cp+4},
    {0x12688b70e62bp-1074, 0x1.ccccccccccccdp-1, 0x1.226ed86db32d4p-927},
    {0x1.7e43c8800759cp+996, 0x1.051eb851eb852p+0, 0x1.6c8e5ca239078p+1016},
    {0x1.b333333333333p+0, -0x1.4f2p+10, 0xdef7009ed275p-1074},
    {0x1.cp+2, -0x1.6d4p+8, 0x187b3da772fbbp-1074},
    {0x1.249ad2594c37dp+332, 0x1.8a3d70a3d70a4p+1, 0x1.1ccf385ebc8f2p+1023},
    {0x1.8p+1, 0x1.70ef54646d497p-57, 0x1p+0},
    {0x1.0000000000001p+0, 0x1p+52, 0x1.5bf0a8b145769p+1},
    {0x1.fffffffffffffp-1, 0x1p-1, 0x1.fffffffffffffp-1},
    {0x1.0000000000001p+0, 0x1.8p+0, 0x1.0000000000002p+0},
    {0x1.0000000000001p+0, 0x1.4p+1, 0x1.0000000000003p+0},
    {0x1p-1074, 0x1p-1, 0x1p-537},
    {0x1p+1, -0x1.0c8p+10, 0x1p-1074},
    {0x1p+1, -0x1.0ccp+10, 0.0},
    {0x1p+1, -0x1.0cap+10, 0x1p-1074},
};

constexpr KnownResult kKnownCos[] = {
    {0x1p-1, 0x1.c1528065b7d5p-1},
    {0x1p+0, 0x1.14a280fb5068cp-1},
    {0x1p-2, 0x1.f01549f7deea1p-1},
    {0x1.12e0be826d695p-30, 0x1p+0},
    {0x1.8p-27, 0x1.fffffffffffffp-1},
    {0x1.921fb54442d18p-1, 0x1.6a09e667f3bcdp-1},
    {0x1.921fb54442d19p-1, 0x1.6a09e667f3bccp-1},
    {0x1.8p+0, 0x1.21bd54fc5f9a7p-4},
    {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54},
    {0x1.921fb54442d19p+0, -0x1.72cece675d1fdp-53},
    {0x1.91eb851eb851fp+0, 0x1.a181296fadbfbp-11},
    {0x1p+1, -0x1.aa22657537205p-2},
    {0x1.2d97c7f3321d2p+1, -0x1.6a09e667f3bccp-1},
    {0x1.8p+1, -0x1.fae04be85e5d2p-1},
    {0x1.921fb54442d18p+1, -0x1p+0},
    {0x1.921fb54442d18p-14, 0x1.ffffffd885867p-1},
    {0x1.3b6429c71b4fp+0, 0x1.5454d109bc2fcp-2},
    {0x1.2d97c7f3321d2p+2, -0x1.a79394c9e8a0ap-53},
    {0x1.6c6cbc45dc8dep+5, -0x1.6d61b58c99c43p-61},
    {0x1.4p+3, -0x1.ad9ac890c6b1fp-1},
    {0x1.63p+8, -0x1.fffffffc18e4cp-1},
    {0x1.86ap+16, -0x1.ffac3841b3da7p-1},
    {0x1.fffffcccccccdp+19, 0x1.f1b57557c0355p-1},
};

TEST(ExactExp, GivesTheKnownBits) {
    for (const auto& [x, result] : kKnownExp) {
        EXPECT_TRUE(sameBits(exp(x), result)) << std::hexfloat << x << ": " << exp(x) << ", not " << result;
    }
}

TEST(ExactPow, GivesTheKnownBits) {
    for (const auto& [x, y, result] : kKnownPow) {
        EXPECT_TRUE(sameBits(pow(x, y), result))
            << std::hexfloat << x << ", " << y << ": " << pow(x, y) << ", not " << result;
    }
}

TEST(ExactCos, GivesTheKnownBits) {
    for (const auto& [x, result] : kKnownCos) {
        EXPECT_TRUE(sameBits(cos(x), result)) << std::hexfloat << x << ": " << cos(x) << ", not " << result;
        EXPECT_TRUE(sameBits(cos(-x), result)) << std::hexfloat << -x;
    }
}

/// Some 2^-89 of their size away from the middle between two doubles.
TEST(ExactPow, GivesTheReciprocalsThatAreHardestToRound) {
    for (const double x : {0x1.9a7bd7bb87411p+52, 0x1.9d140dc70fd79p+52, 0x1.d4ad3d1b4026dp+52,
                           0x1.8ace762a96cf5p+52, 0x1.92a4c16c02813p+52}) {
        EXPECT_TRUE(sameBits(pow(x, -1.0), 1.0 / x)) << std::hexfloat << x;
    }
}

// ---- Special values

TEST(ExactExp, TreatsSpecialValues) {
    EXPECT_TRUE(sameBits(exp(0.0), 1.0));
    EXPECT_TRUE(sameBits(exp(-0.0), 1.0));
    EXPECT_TRUE(sameBits(exp(kSmallest), 1.0));
    EXPECT_TRUE(sameBits(exp(-kSmallest), 1.0));
    EXPECT_EQ(exp(kInfinity), kInfinity);
    EXPECT_TRUE(sameBits(exp(-kInfinity), 0.0));
    EXPECT_TRUE(std::isnan(exp(kNan)));
}

TEST(ExactExp, TurnsToInfinityAndZeroAtTheRightArguments) {
    const double largest = 0x1.62e42fefa39efp+9;
    EXPECT_EQ(exp(largest), 0x1.fffffffffff2ap+1023);
    EXPECT_EQ(exp(std::nextafter(largest, kInfinity)), kInfinity);
    EXPECT_EQ(exp(std::numeric_limits<double>::max()), kInfinity);
    const double lowest = -0x1.74910d52d3051p+9;
    EXPECT_EQ(exp(lowest), kSmallest);
    EXPECT_TRUE(sameBits(exp(std::nextafter(lowest, -kInfinity)), 0.0));
    EXPECT_TRUE(sameBits(exp(-std::numeric_limits<double>::max()), 0.0));
}

TEST(ExactPow, IsOneForExponentZeroAndBaseOne) {
    for (double other : {0.0, -0.0, 1.0, -3.5, kSmallest, kInfinity, -kInfinity, kNan}) {
        EXPECT_EQ(pow(other, 0.0), 1.0) << other;
        EXPECT_EQ(pow(other, -0.0), 1.0) << other;
        EXPECT_EQ(pow(1.0, other), 1.0) << other;
    }
}

TEST(ExactPow, TreatsZeroBases) {
    EXPECT_TRUE(sameBits(pow(0.0, 2.5), 0.0));
    EXPECT_TRUE(sameBits(pow(-0.0, 2.0), 0.0));
    EXPECT_TRUE(sameBits(pow(-0.0, 3.0), -0.0));
    EXPECT_TRUE(sameBits(pow(-0.0, 0.5), 0.0));
    EXPECT_EQ(pow(0.0, -2.5), kInfinity);
    EXPECT_EQ(pow(-0.0, -3.0), -kInfinity);
    EXPECT_EQ(pow(-0.0, -4.0), kInfinity);
    EXPECT_TRUE(sameBits(pow(0.0, kInfinity), 0.0));
    EXPECT_EQ(pow(-0.0, -kInfinity), kInfinity);
}

TEST(ExactPow, TreatsInfinities) {
    EXPECT_EQ(pow(kInfinity, 0.5), kInfinity);
    EXPECT_TRUE(sameBits(pow(kInfinity, -0.5), 0.0));
    EXPECT_EQ(pow(-kInfinity, 3.0), -kInfinity);
    EXPECT_EQ(pow(-kInfinity, 2.0), kInfinity);
    EXPECT_EQ(pow(-kInfinity, 0.5), kInfinity);
    EXPECT_TRUE(sameBits(pow(-kInfinity, -3.0), -0.0));
    EXPECT_TRUE(sameBits(pow(-kInfinity, -2.0), 0.0));
    EXPECT_EQ(pow(2.0, kInfinity), kInfinity);
    EXPECT_TRUE(sameBits(pow(2.0, -kInfinity), 0.0));
    EXPECT_TRUE(sameBits(pow(-0.5, kInfinity), 0.0));
    EXPECT_EQ(pow(0.5, -kInfinity), kInfinity);
    EXPECT_EQ(pow(-1.0, kInfinity), 1.0);
    EXPECT_EQ(pow(-1.0, -kInfinity), 1.0);
}

TEST(ExactPow, TakesNegativeBasesToIntegersOnly) {
    EXPECT_EQ(pow(-2.0, 3.0), -8.0);
    EXPECT_EQ(pow(-2.0, 4.0), 16.0);
    EXPECT_EQ(pow(-2.0, -3.0), -0.125);
    EXPECT_EQ(pow(-1.0, 0x1p+53), 1.0);
    EXPECT_EQ(pow(-1.0, 0x1.fffffffffffffp+52), -1.0);
    EXPECT_EQ(pow(-3.0, -1e300), 0.0);
    EXPECT_TRUE(sameBits(pow(-2.0, -1077.0), -0.0));
    EXPECT_TRUE(std::isnan(pow(-2.0, 0.5)));
    EXPECT_TRUE(std::isnan(pow(-1.0, 1.5)));
}

TEST(ExactPow, PassesNanOn) {
    EXPECT_TRUE(std::isnan(pow(kNan, 2.0)));
    EXPECT_TRUE(std::isnan(pow(2.0, kNan)));
    EXPECT_TRUE(std::isnan(pow(kNan, kNan)));
}

TEST(ExactPow, TreatsExtremeExponents) {
    const double aboveOne = std::nextafter(1.0, 2.0);
    EXPECT_EQ(pow(aboveOne, 1e300), kInfinity);
    EXPECT_TRUE(sameBits(pow(aboveOne, -1e300), 0.0));
    EXPECT_TRUE(sameBits(pow(std::nextafter(1.0, 0.0), 1e300), 0.0));
    EXPECT_EQ(pow(std::numeric_limits<double>::max(), kSmallest), 1.0);
    EXPECT_EQ(pow(std::numeric_limits<double>::max(), 1.0), std::numeric_limits<double>::max());
    EXPECT_EQ(pow(kSmallest, 1.0), kSmallest);
    EXPECT_EQ(pow(kSmallest, -1.0), kInfinity);
}

TEST(ExactCos, IsNanWhereItIsNotDefined) {
    EXPECT_TRUE(std::isnan(cos(kNan)));
    EXPECT_TRUE(std::isnan(cos(kInfinity)));
    EXPECT_TRUE(std::isnan(cos(-kInfinity)));
    EXPECT_FALSE(std::isnan(cos(0x1p+20)));
    EXPECT_TRUE(std::isnan(cos(std::nextafter(0x1p+20, kInfinity))));
}

TEST(ExactCos, ReducesAnglesNextToQuarterTurnsAccurately) {
    // The doubles nearest to multiples of pi / 2, 29 of them being the nearest miss; found with 400 bits of
    // arithmetic.
    struct KnownRest {
        double x;
        int quarters;
        double hi;
        double lo;
    };
    constexpr KnownRest kKnown[] = {
        {0x1.921fb54442d18p+0, 1, -0x1.1a62633145c07p-54, 0x1.f1976b7ed8fbcp-110},
        {0x1.921fb54442d18p+1, 2, -0x1.1a62633145c07p-53, 0x1.f1976b7ed8fbcp-109},
        {0x1.6c6cbc45dc8dep+5, 29, 0x1.6d61b58c99c43p-61, -0x1.d8d2a16b7bd6ep-118},
        {0x1.6c6cbc45dc8dep+18, 237568, 0x1.6d61b58c99c43p-48, -0x1.d8d2a16b7bd6ep-105},
        {0x1.ffffc2f4c1f6ep+19, 667543, -0x1.a07b4015a3b16p-37, -0x1.51695fffb520ap-92},
    };
    for (const auto& [x, quarters, hi, lo] : kKnown) {
        const detail::ReducedAngle angle = detail::reduceAngle(x);
        EXPECT_EQ(angle.quarters, quarters);
        EXPECT_EQ(angle.rest.hi, hi) << quarters;
        EXPECT_LT(std::fabs(angle.rest.lo - lo), std::fabs(hi) * 0x1p-104) << quarters;
    }
}

TEST(ExactCos, IsOneAtZero) {
    EXPECT_EQ(cos(0.0), 1.0);
    EXPECT_EQ(cos(-0.0), 1.0);
    EXPECT_EQ(cos(kSmallest), 1.0);
}

// ---- Powers that integers give exactly

TEST(ExactPow, GivesExactRootsAndPowersExactly) {
    for (int64_t n = 2; n < 5000; ++n) {
        const auto root = static_cast<double>(n);
        const auto square = static_cast<double>(n * n);
        const auto fourth = static_cast<double>(n * n * n * n);
        ASSERT_EQ(pow(square, 0.5), root);
        ASSERT_EQ(pow(fourth, 0.25), root);
        ASSERT_EQ(pow(fourth, 0.75), static_cast<double>(n * n * n));
        ASSERT_EQ(pow(root, 4.0), fourth);
        ASSERT_EQ(pow(root, 1.0), root);
    }
    for (int exponent = -1074; exponent < 1024; ++exponent) {
        ASSERT_EQ(pow(2.0, exponent), std::ldexp(1.0, exponent));
        ASSERT_EQ(pow(0.25, exponent * -0.5), std::ldexp(1.0, exponent));
    }
}

TEST(ExactPow, RoundsExactMiddlesToEven) {
    // Odd numbers of 54 bits lie in the middle between two doubles; the conversion of integers rounds them to
    // even.
    for (uint64_t n = (uint64_t{1} << 27) - 1; n > (uint64_t{1} << 27) - 20000; n -= 2) {
        ASSERT_EQ(pow(static_cast<double>(n), 2.0), static_cast<double>(n * n)) << n;
        ASSERT_EQ(pow(static_cast<double>(n) * 0x1p-27, 2.0), static_cast<double>(n * n) * 0x1p-54) << n;
    }
    for (uint64_t n = (uint64_t{1} << 18) - 1; n > 208065; n -= 2) {
        const auto base = static_cast<double>(n);
        ASSERT_EQ(pow(base, 3.0), static_cast<double>(n * n * n)) << n;
        ASSERT_EQ(pow(base * base, 1.5), static_cast<double>(n * n * n)) << n;
    }
    // Half of the smallest double, and one and a half of it.
    EXPECT_TRUE(sameBits(pow(0.5, 1075.0), 0.0));
    EXPECT_TRUE(sameBits(pow(4.0, -537.5), 0.0));
    EXPECT_EQ(pow(3.0 * 0x1p-215, 5.0), 122.0 * kSmallest);  // not 243 / 2
    EXPECT_EQ(pow(5.0 * 0x1p-215, 5.0), 1562.0 * kSmallest); // not 3125 / 2
}

// ---- Comparison with quadruple precision

#ifdef KOVALUNE_HAS_QUADMATH

__extension__ typedef __float128 Quad;

extern "C" {
Quad expq(Quad x);
Quad powq(Quad x, Quad y);
Quad cosq(Quad x);
Quad sinq(Quad x);
Quad logq(Quad x);
}

/// Compares results with values of 113 bits. Where such a value, give or take 2^-105 of itself, does not
/// settle which double is nearest, it is counted as undecided.
class Comparison {
public:
    void add(double result, Quad exact, double x, double y = 0.0) {
        const Quad margin = exact * static_cast<Quad>(0x1p-105);
        const auto below = static_cast<double>(exact - margin);
        const auto above = static_cast<double>(exact + margin);
        ++compared_;
        if (!sameBits(below, above)) {
            ++undecided_;
        } else if (!sameBits(below, result)) {
            if (wrong_ == 0) {
                ADD_FAILURE() << std::hexfloat << x << ", " << y << ": " << result << ", not " << below;
            }
            ++wrong_;
        }
    }

    void expectAllRight(int atLeast) const {
        EXPECT_GE(compared_, atLeast);
        EXPECT_EQ(wrong_, 0);
        EXPECT_EQ(undecided_, 0);
    }

private:
    int compared_ = 0;
    int undecided_ = 0;
    int wrong_ = 0;
};

void compareExp(Comparison& comparison, double x) {
    comparison.add(exp(x), expq(static_cast<Quad>(x)), x);
}

void comparePow(Comparison& comparison, double x, double y) {
    comparison.add(pow(x, y), powq(static_cast<Quad>(x), static_cast<Quad>(y)), x, y);
}

void compareCos(Comparison& comparison, double x) {
    comparison.add(cos(x), cosq(static_cast<Quad>(x)), x);
}

/// Evenly spread between two bounds; the same numbers in every run and with every library.
class Uniform {
public:
    double operator()(double from, double to) {
        return from + (to - from) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }

private:
    std::mt19937_64 engine_{20240607};
};

/// How far a pair is from a value, relative to that.
double relativeError(detail::DoubleDouble pair, Quad exact) {
    const Quad sum = static_cast<Quad>(pair.hi) + static_cast<Quad>(pair.lo);
    return std::fabs(static_cast<double>((sum - exact) / exact));
}

TEST(ExactMathPairs, KeepTheirErrorBounds) {
    Uniform uniform;
    double worstExp = 0.0;
    double worstLog = 0.0;
    double worstCos = 0.0;
    double worstSin = 0.0;
    for (int i = 0; i < 20000; ++i) {
        const double x = uniform(-700.0, 700.0);
        const auto [power, exponent] = detail::expOfPair({x, 0.0});
        const auto scale = static_cast<Quad>(std::ldexp(1.0, -exponent));
        worstExp = std::fmax(worstExp, relativeError(power, expq(static_cast<Quad>(x)) * scale));

        const double positive = uniform(1.0, 2.0) * std::ldexp(1.0, i % 3 == 0 ? 0 : i % 2098 - 1074);
        worstLog = std::fmax(worstLog,
                             relativeError(detail::logOfDouble(positive), logq(static_cast<Quad>(positive))));

        const double angle = uniform(-0.786, 0.786);
        worstCos = std::fmax(worstCos,
                             relativeError(detail::cosOfPair({angle, 0.0}), cosq(static_cast<Quad>(angle))));
        worstSin = std::fmax(worstSin,
                             relativeError(detail::sinOfPair({angle, 0.0}), sinq(static_cast<Quad>(angle))));
    }
    EXPECT_LT(worstExp, 0x1p-102);
    EXPECT_LT(worstLog, 0x1p-102);
    EXPECT_LT(worstCos, 0x1p-102);
    EXPECT_LT(worstSin, 0x1p-102);
}

TEST(ExactMathTables, HoldRootsOfTwo) {
    for (int j = 0; j < 32; ++j) {
        const auto& [hi, lo] = detail::kRootsOfTwo[j];
        const Quad root = powq(static_cast<Quad>(2.0), static_cast<Quad>(j) / static_cast<Quad>(32.0));
        const auto error = static_cast<double>(static_cast<Quad>(hi) + static_cast<Quad>(lo) - root);
        EXPECT_LT(std::fabs(error), 0x1p-105) << j;
    }
}

TEST(ExactExp, IsCorrectlyRoundedForGaussianWeights) {
    Comparison comparison;
    Uniform uniform;
    for (int step = 0; step < 150; ++step) {
        const double wide = 2.0 + 6.66 * step;
        for (const double amount : {std::floor(wide * 10.0) / 10.0, uniform(2.0, 1001.0)}) {
            for (const double variance : {amount * amount * 0.125, amount * amount}) {
                for (int i = 0; i <= static_cast<int>(std::ceil(amount)); ++i) {
                    compareExp(comparison, (static_cast<double>(i) * i) * -0.5 / variance);
                }
            }
        }
    }
    comparison.expectAllRight(200000);
}

TEST(ExactExp, IsCorrectlyRoundedForRandomArguments) {
    Comparison comparison;
    Uniform uniform;
    for (int i = 0; i < 100000; ++i) {
        compareExp(comparison, uniform(-20.0, 0.0));
    }
    for (int i = 0; i < 50000; ++i) {
        compareExp(comparison, uniform(-746.0, -708.0)); // subnormal results
        compareExp(comparison, uniform(-708.0, 709.7));
        compareExp(comparison, uniform(-1.0, 1.0) * std::ldexp(1.0, -(i % 50)));
    }
    comparison.expectAllRight(250000);
}

TEST(ExactPow, IsCorrectlyRoundedForRootsOfAmounts) {
    Comparison comparison;
    Uniform uniform;
    for (int repeat = 2; repeat <= 10; ++repeat) {
        const double exponent = 1.0 / repeat;
        for (int tenths = 20; tenths <= 10020; ++tenths) {
            comparePow(comparison, tenths / 10.0, exponent);
            comparePow(comparison, uniform(2.0, 1e4), exponent);
        }
        for (int i = 0; i < 1000; ++i) {
            comparePow(comparison, static_cast<double>(static_cast<float>(uniform(2.0, 1002.0))), exponent);
        }
    }
    comparison.expectAllRight(180000);
}

TEST(ExactPow, IsCorrectlyRoundedForRandomArguments) {
    Comparison comparison;
    Uniform uniform;
    for (int i = 0; i < 50000; ++i) {
        comparePow(comparison, uniform(0.0, 10.0), uniform(-50.0, 50.0));
        comparePow(comparison, uniform(1.0, 2.0) * std::ldexp(1.0, i % 2098 - 1074), uniform(-1.5, 1.5));
        comparePow(comparison, uniform(1.0, 1e4), std::floor(uniform(-16.0, 17.0)) / 2.0);
        comparePow(comparison, 0.5 + uniform(-0.2, 0.2),
                   uniform(1022.0, 1075.0)); // many results are subnormal
    }
    comparison.expectAllRight(200000);
}

TEST(ExactCos, IsCorrectlyRoundedForRaisedCosines) {
    Comparison comparison;
    for (const int span : {1, 2, 3, 7, 100, 128, 255, 1000, 4097, 16384, 25000, 32767, 32768}) {
        for (int value = 0; value <= span; ++value) {
            compareCos(comparison,
                       static_cast<double>(value) / static_cast<double>(span) * 3.141592653589793);
        }
    }
    comparison.expectAllRight(110000);
}

TEST(ExactCos, IsCorrectlyRoundedForRandomArguments) {
    Comparison comparison;
    Uniform uniform;
    for (int i = 0; i < 50000; ++i) {
        compareCos(comparison, uniform(0.0, 3.141592653589793));
        compareCos(comparison,
                   static_cast<double>(static_cast<float>(uniform(0.0, 1.0))) * 3.141592653589793);
        compareCos(comparison, uniform(-0x1p+20, 0x1p+20));
        compareCos(comparison, (2 * i + 1) * 1.5707963267948966); // next to the zeros
        compareCos(comparison, uniform(0.0, 1.0) * 0x1p-20);      // next to 1
        compareCos(comparison, 1.5707963267948966 + i * 0x1p-52); // doubles in a row at the first zero
    }
    comparison.expectAllRight(300000);
}

#endif

} // namespace
} // namespace kovalune::test
