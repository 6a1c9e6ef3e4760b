// exp, pow and cos that give the same bits with every compiler and C library: pixels depend on the last of
// them. Results are those of the real functions, computed to some 100 bits and rounded once, to the nearest
// double. Only +, -, * and / on doubles and integer work on their bits are used, so IEEE 754 settles every
// result, provided that the compiler neither fuses nor reorders operations and that the processor rounds to
// nearest.
//
// Errors: a result can miss the nearest double only where the exact value lies, relative to its size, within
// 2^-90 (pow) or 2^-100 (exp and cos) of the middle between two doubles without lying on it. It is then the
// double on the other side of that middle, hence less than one unit in the last place off.
//
// Sources of the methods: T. J. Dekker, "A floating-point technique for extending the available precision"
// (1971), with G. W. Veltkamp's splitting; D. E. Knuth, "The Art of Computer Programming", volume 2,
// section 4.2.2; J. R. Shewchuk, "Adaptive precision floating-point arithmetic" (1997); T. Ogita, S. M. Rump
// and S. Oishi, "Accurate sum and dot product" (2005); S. Boldo and G. Melquiond, "Emulation of FMA and
// correctly rounded sums: proved algorithms using rounding to odd" (2008).
#pragma once

#include "effect/share/ExactMathTables.h"
#include "effect/share/StandardParts.h"

#include <array>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace kovalune::exact {
namespace detail {

#ifdef __FAST_MATH__
#error "The error terms below vanish if the compiler may reorder sums"
#endif
static_assert(FLT_EVAL_METHOD == 0, "doubles must be computed as doubles; on 32-bit x86 use SSE2");
static_assert(std::numeric_limits<double>::is_iec559);

// ---- Sums and products without error

/// a + b exactly, given |a| >= |b| or a == 0.
constexpr DoubleDouble fastTwoSum(double a, double b) noexcept {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// a + b exactly.
constexpr DoubleDouble twoSum(double a, double b) noexcept {
    const double sum = a + b;
    const double bPart = sum - a;
    return {sum, (a - (sum - bPart)) + (b - bPart)};
}

/// a as a sum of two doubles of 26 bits each. Needs |a| < 2^996.
constexpr DoubleDouble split(double a) noexcept {
    const double scaled = 0x1.0000002p+27 * a;
    const double hi = scaled - (scaled - a);
    return {hi, a - hi};
}

/// a * b exactly, unless the product is below 2^-968: then the error is some 2^-1074.
constexpr DoubleDouble twoProduct(double a, double b) noexcept {
    const double product = a * b;
    const DoubleDouble x = split(a);
    const DoubleDouble y = split(b);
    return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

// ---- Arithmetic on pairs, relative error below 2^-102

/// Needs |a| >= 2 |b|, which rules out cancellation.
constexpr DoubleDouble addSmaller(DoubleDouble a, DoubleDouble b) noexcept {
    const DoubleDouble sum = fastTwoSum(a.hi, b.hi);
    return fastTwoSum(sum.hi, sum.lo + (a.lo + b.lo));
}

constexpr DoubleDouble multiply(DoubleDouble a, DoubleDouble b) noexcept {
    const DoubleDouble product = twoProduct(a.hi, b.hi);
    return fastTwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

constexpr DoubleDouble divide(double a, DoubleDouble b) noexcept {
    const double quotient = a / b.hi;
    const DoubleDouble product = twoProduct(quotient, b.hi);
    const double remainder = ((a - product.hi) - product.lo) - quotient * b.lo;
    return fastTwoSum(quotient, remainder / b.hi);
}

// ---- Series

/// 1 / n!. From 23! on a factorial has more than 53 bits, and its inverse here only the accuracy of a double.
inline constexpr std::array<DoubleDouble, 30> kInverseFactorials = [] {
    std::array<DoubleDouble, 30> inverses{};
    double factorial = 1.0;
    inverses[0] = {1.0, 0.0};
    for (std::size_t n = 1; n < inverses.size(); ++n) {
        factorial *= static_cast<double>(n);
        inverses[n] = divide(1.0, {factorial, 0.0});
    }
    return inverses;
}();

/// 1 / n, for n > 0.
inline constexpr std::array<DoubleDouble, 42> kInverses = [] {
    std::array<DoubleDouble, 42> inverses{};
    for (std::size_t n = 1; n < inverses.size(); ++n) {
        inverses[n] = divide(1.0, {static_cast<double>(n), 0.0});
    }
    return inverses;
}();

/// Which coefficients a power series takes from a table: first, first + step, ... last. The terms after
/// lastPair are below 2^-54 of the sum, so that doubles are accurate enough for them.
struct SeriesTerms {
    std::size_t first;
    std::size_t step;
    std::size_t lastPair;
    std::size_t last;
};

/// The sum of coefficients[first + n * step] * x^n.
template <SeriesTerms kTerms, std::size_t kSize>
constexpr DoubleDouble sumSeries(const std::array<DoubleDouble, kSize>& coefficients,
                                 DoubleDouble x) noexcept {
    static_assert(kTerms.last < kSize);
    double tail = coefficients[kTerms.last].hi;
    std::size_t n = kTerms.last - kTerms.step;
    for (; n > kTerms.lastPair; n -= kTerms.step) {
        tail = coefficients[n].hi + x.hi * tail;
    }
    DoubleDouble sum{tail, 0.0};
    for (; n >= kTerms.first; n -= kTerms.step) {
        sum = addSmaller(coefficients[n], multiply(x, sum));
    }
    return sum;
}

// ---- Rounding

/// 2^exponent, for the exponents of normal doubles.
constexpr double powerOfTwo(int exponent) noexcept {
    return bitCast<double>(static_cast<uint64_t>(exponent + 1023) << 52);
}

/// a + b rounded to odd: of the two doubles around an inexact sum, the one whose last bit is set. The bit
/// stands for whatever was cut off, so that a later rounding to nearest comes out as if of the exact sum.
constexpr double addToOdd(double a, double b) noexcept {
    const DoubleDouble sum = twoSum(a, b);
    const auto bits = bitCast<uint64_t>(sum.hi);
    if (sum.lo == 0.0 || (bits & 1U) != 0U) {
        return sum.hi;
    }
    return bitCast<double>((sum.lo > 0.0) == (sum.hi > 0.0) ? bits + 1 : bits - 1);
}

/// base + increment as an exact sum of two doubles, but for a rounding of base.lo + increment.lo and one to
/// odd. Keeps more than 106 bits if base is 1 and the increment tiny. Needs |base| >= |increment|.
constexpr DoubleDouble addForRounding(DoubleDouble base, DoubleDouble increment) noexcept {
    const DoubleDouble sum = fastTwoSum(base.hi, increment.hi);
    return {sum.hi, addToOdd(sum.lo, base.lo + increment.lo)};
}

/// The double nearest to value * 2^exponent, infinity and subnormal numbers included.
/// value comes from addForRounding and lies between 0.9 and 2.1; exponent is -1077 ... 1024.
constexpr double roundScaled(DoubleDouble value, int exponent) noexcept {
    double rounded = value.hi + value.lo;
    if (exponent <= -1022) {
        // In units of 2^exponent this is the smallest normal number. Added to anything smaller it moves the
        // last bit of the sum to where the last bit of the subnormal result is, so that the sum is rounded
        // there, once.
        const double smallestNormal = powerOfTwo(-1022 - exponent);
        if ((value.hi - smallestNormal) + value.lo < 0.0) {
            const DoubleDouble sum = twoSum(smallestNormal, value.hi);
            rounded = (sum.hi + addToOdd(sum.lo, value.lo)) - smallestNormal;
        }
    }
    // Two factors, since 2^exponent itself may be no normal double.
    const int half = exponent / 2;
    return rounded * powerOfTwo(half) * powerOfTwo(exponent - half);
}

/// To an integer at most a rounding error farther away than the nearest.
constexpr int nearestInteger(double value) noexcept {
    return static_cast<int>(value + (value < 0.0 ? -0.5 : 0.5));
}

// ---- The functions on pairs

/// Beyond these the exponential function overflows, or is less than half of the smallest double.
inline constexpr double kExpOverflow = 710.0;
inline constexpr double kExpUnderflow = -746.0;

/// A number times 2^exponent.
struct Scaled {
    DoubleDouble value;
    int exponent;
};

/// e^x for kExpUnderflow <= x <= kExpOverflow, relative error below 2^-102 over the error of x; the value is
/// fit for roundScaled.
constexpr Scaled expOfPair(DoubleDouble x) noexcept {
    // e^x = 2^(steps / 32) * e^r, where |r| < 0.011.
    const int steps = nearestInteger(x.hi * kStepsPerUnit);
    const double count = steps;
    const DoubleDouble r1 = twoSum(x.hi, -count * kStepOfExp[0]);
    const DoubleDouble r2 = twoSum(r1.hi, -count * kStepOfExp[1]);
    const DoubleDouble r = twoSum(r2.hi, ((r1.lo + x.lo) + r2.lo) - count * kStepOfExp[2]);

    // e^r - 1 = r + r^2 (1/2! + r/3! + ... + r^10/12!); the next term is below 2^-116.
    constexpr SeriesTerms kTerms{.first = 2, .step = 1, .lastPair = 7, .last = 12};
    const DoubleDouble series = sumSeries<kTerms>(kInverseFactorials, r);
    const DoubleDouble increment = addSmaller(r, multiply(multiply(r, r), series));

    const int root = steps & 31;
    const DoubleDouble base = kRootsOfTwo[root];
    return {addForRounding(base, multiply(base, increment)), (steps - root) / 32};
}

/// ln(x) for finite x > 0, relative error below 2^-102, near x = 1 too.
constexpr DoubleDouble logOfDouble(double x) noexcept {
    constexpr uint64_t kMantissaMask = (uint64_t{1} << 52) - 1;
    int exponent = -1023;
    if (x < std::numeric_limits<double>::min()) {
        x *= 0x1p+54;
        exponent -= 54;
    }
    const auto bits = bitCast<uint64_t>(x);
    exponent += static_cast<int>(bits >> 52);
    auto mantissa = bitCast<double>((bits & kMantissaMask) | bitCast<uint64_t>(1.0));
    if (mantissa > 1.4142135) {
        mantissa *= 0.5;
        ++exponent;
    }

    // ln(m) = 2 artanh(s) = 2s + 2s t (1/3 + t/5 + ... + t^19/41), where s = (m - 1) / (m + 1) and t = s^2 <
    // 0.0295; the next term is below 2^-111. m - 1 is exact.
    const DoubleDouble s = divide(mantissa - 1.0, twoSum(mantissa, 1.0));
    const DoubleDouble t = multiply(s, s);
    const DoubleDouble twice{2.0 * s.hi, 2.0 * s.lo};
    constexpr SeriesTerms kTerms{.first = 3, .step = 2, .lastPair = 19, .last = 41};
    const DoubleDouble series = sumSeries<kTerms>(kInverses, t);
    const DoubleDouble logOfMantissa = addSmaller(twice, multiply(multiply(twice, t), series));
    if (exponent == 0) {
        return logOfMantissa;
    }

    // |exponent * ln(2)| is at least twice the logarithm of the mantissa: nothing cancels.
    const double steps = 32.0 * exponent;
    const DoubleDouble sum1 = fastTwoSum(steps * kStepOfExp[0], steps * kStepOfExp[1]);
    const DoubleDouble sum2 = fastTwoSum(sum1.hi, logOfMantissa.hi);
    return fastTwoSum(sum2.hi, (sum1.lo + sum2.lo) + (logOfMantissa.lo + steps * kStepOfExp[2]));
}

/// The double nearest to x^y for finite x > 0, x != 1, and finite y.
constexpr double powOfPositive(double x, double y) noexcept {
    const double magnitude = y < 0.0 ? -y : y;
    // ln(x) is between 2^-54 and 2^10 in size. Thus x^y is within 2^-54 of 1 here ...
    if (magnitude < 0x1p-64) {
        return 1.0;
    }
    // ... and far beyond every double here.
    if (magnitude > 0x1p+64) {
        return (x > 1.0) == (y > 0.0) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    const DoubleDouble exponent = multiply(logOfDouble(x), {y, 0.0});
    if (exponent.hi > kExpOverflow) {
        return std::numeric_limits<double>::infinity();
    }
    if (exponent.hi < kExpUnderflow) {
        return 0.0;
    }
    Scaled power = expOfPair(exponent);

    // x^y can be the exact middle between two doubles, as 134217727^2 or 2^-1075 is. That takes y > 1 in
    // size, y * 2^10 an integer, and x no nearer to 1 than 2^-27. A middle, like a double, is a multiple of
    // 2^-54 here, so that rounding to multiples of 2^-88 takes away the error, which is below 2^-91, and no
    // more than that.
    const double distance = x < 1.0 ? 1.0 - x : x - 1.0;
    if (magnitude > 1.0 && magnitude < 2048.0 && distance >= 0x1p-28) {
        const double scaledExponent = y * 1024.0;
        if (scaledExponent == static_cast<double>(static_cast<int>(scaledExponent))) {
            constexpr double kRounder = 0x1.8p-36; // its last bit is worth 2^-88
            power.value.lo = (power.value.lo + kRounder) - kRounder;
        }
    }
    return roundScaled(power.value, power.exponent);
}

/// An angle less a multiple of pi / 2, at most pi / 4 in size but for rounding; quarters is that multiple.
struct ReducedAngle {
    DoubleDouble rest;
    int quarters;
};

/// For 0 <= x <= 2^20. The error of the rest is below 2^-172, and below 2^-104 of the rest: no double in this
/// range is nearer to a multiple of pi / 2 than 2^-61.
constexpr ReducedAngle reduceAngle(double x) noexcept {
    const int quarters = nearestInteger(x * kQuartersPerRadian);
    if (quarters == 0) {
        return {{x, 0.0}, 0};
    }
    const double count = quarters;
    // From small to large. Each pass of exact sums carries the total upward; after three of them the last two
    // elements hold it to about 106 bits even if the large terms have cancelled.
    std::array<double, 6> terms{-count * kHalfPi[4], -count * kHalfPi[3], -count * kHalfPi[2],
                                -count * kHalfPi[1], -count * kHalfPi[0], x};
    for (int pass = 0; pass < 3; ++pass) {
        for (std::size_t i = 1; i < terms.size(); ++i) {
            const DoubleDouble sum = twoSum(terms[i], terms[i - 1]);
            terms[i] = sum.hi;
            terms[i - 1] = sum.lo;
        }
    }
    return {fastTwoSum(terms[5], terms[4] + (terms[3] + (terms[2] + (terms[1] + terms[0])))), quarters};
}

/// cos(r) for |r| < 0.79, relative error below 2^-102 over the error of r; to be rounded by adding hi and lo.
constexpr DoubleDouble cosOfPair(DoubleDouble r) noexcept {
    // cos(r) = 1 + u (1/2! + u/4! + ... + u^13/28!), where u = -r^2; the next term is below 2^-117.
    constexpr SeriesTerms kTerms{.first = 2, .step = 2, .lastPair = 16, .last = 28};
    const DoubleDouble u = multiply({-r.hi, -r.lo}, r);
    const DoubleDouble series = sumSeries<kTerms>(kInverseFactorials, u);
    return addForRounding({1.0, 0.0}, multiply(u, series));
}

/// sin(r), as cosOfPair has its result.
constexpr DoubleDouble sinOfPair(DoubleDouble r) noexcept {
    // sin(r) = r + r u (1/3! + u/5! + ... + u^13/29!), where u = -r^2; the next term is below 2^-122.
    constexpr SeriesTerms kTerms{.first = 3, .step = 2, .lastPair = 17, .last = 29};
    const DoubleDouble u = multiply({-r.hi, -r.lo}, r);
    const DoubleDouble series = sumSeries<kTerms>(kInverseFactorials, u);
    return addForRounding(r, multiply(multiply(r, u), series));
}

constexpr bool isNan(double x) noexcept {
    return x != x;
}

constexpr bool isInfinite(double x) noexcept {
    return x == std::numeric_limits<double>::infinity() || x == -std::numeric_limits<double>::infinity();
}

enum class Parity { kNoInteger, kEven, kOdd };

/// For finite y.
constexpr Parity parityOf(double y) noexcept {
    if (y >= 0x1p+53 || y <= -0x1p+53) {
        return Parity::kEven;
    }
    const auto integer = static_cast<int64_t>(y);
    if (static_cast<double>(integer) != y) {
        return Parity::kNoInteger;
    }
    return (integer & 1) != 0 ? Parity::kOdd : Parity::kEven;
}

/// x^y where x is zero, negative or infinite, or y is infinite; neither is NaN.
constexpr double powOfSpecial(double x, double y) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const bool negative = (bitCast<uint64_t>(x) >> 63) != 0;
    const double size = negative ? -x : x;
    if (isInfinite(y)) {
        if (size == 1.0) {
            return 1.0;
        }
        return (size > 1.0) == (y > 0.0) ? kInfinity : 0.0;
    }
    const Parity parity = parityOf(y);
    double power = 1.0;
    if (size == 0.0 || isInfinite(size)) {
        power = (size == 0.0) == (y > 0.0) ? 0.0 : kInfinity;
    } else if (parity == Parity::kNoInteger) {
        return std::numeric_limits<double>::quiet_NaN();
    } else if (size != 1.0) {
        power = powOfPositive(size, y);
    }
    return negative && parity == Parity::kOdd ? -power : power;
}

} // namespace detail

// ---- The functions themselves

/// e^x, for every x.
constexpr double exp(double x) noexcept {
    if (detail::isNan(x)) {
        return x;
    }
    if (x > detail::kExpOverflow) {
        return std::numeric_limits<double>::infinity();
    }
    if (x < detail::kExpUnderflow) {
        return 0.0;
    }
    const detail::Scaled power = detail::expOfPair({x, 0.0});
    return detail::roundScaled(power.value, power.exponent);
}

/// x^y, for every x and y; what is zero, negative, infinite or NaN is treated as IEEE 754 has it for its pow.
constexpr double pow(double x, double y) noexcept {
    if (y == 0.0 || x == 1.0) {
        return 1.0;
    }
    if (detail::isNan(x) || detail::isNan(y)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (x <= 0.0 || detail::isInfinite(x) || detail::isInfinite(y)) {
        return detail::powOfSpecial(x, y);
    }
    return detail::powOfPositive(x, y);
}

/// The cosine of x radians for |x| <= 2^20, and NaN for every other x: larger angles have no use here.
constexpr double cos(double x) noexcept {
    const double size = x < 0.0 ? -x : x;
    if (!(size <= 0x1p+20)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const detail::ReducedAngle angle = detail::reduceAngle(size);
    // cos(r + pi / 2) = -sin(r), and each half turn changes the sign.
    const bool odd = (angle.quarters & 1) != 0;
    const detail::DoubleDouble value = odd ? detail::sinOfPair(angle.rest) : detail::cosOfPair(angle.rest);
    const double rounded = value.hi + value.lo;
    return ((angle.quarters + 1) & 2) != 0 ? -rounded : rounded;
}

} // namespace kovalune::exact
