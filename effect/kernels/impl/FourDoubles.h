// A vector of four doubles with fused products, for the sets that have one.
#pragma once

#include <cstdint>
#include <immintrin.h>

namespace kovalune {
namespace {

struct FourDoubles {
    using Doubles = __m256d;
    static constexpr int32_t kDoubles = 4;
    static Doubles fill(double value) { return _mm256_set1_pd(value); }
    static Doubles load(const double* from) { return _mm256_loadu_pd(from); }
    static void store(double* to, Doubles value) { _mm256_storeu_pd(to, value); }
    static Doubles plus(Doubles a, Doubles b) { return _mm256_add_pd(a, b); }
    static Doubles add(Doubles sum, Doubles value, Doubles tap) { return _mm256_fmadd_pd(value, tap, sum); }
};

} // namespace
} // namespace kovalune
