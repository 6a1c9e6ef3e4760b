// AVX-512 with its instructions for bytes and words. A fused product may stand only where the product is exact by itself.
#include "effect/kernels/Sets.h"
#include "effect/kernels/impl/FourDoubles.h"
#include "effect/kernels/impl/Table.h"

#include <immintrin.h>

namespace kovalune {
namespace {

/// Vectors of half the width, in as many registers.
struct Avx512Narrow : FourDoubles {
    static constexpr int kMirrored = kHasManyRegisters ? 8 : 2;
};

struct Avx512 {
    // Vectors of sums at once, of one line or of each of three: in the stated order, in any, and mirrored.
    static constexpr int kVectorsOfOne = kHasManyRegisters ? 12 : 4;
    static constexpr int kVectorsOfThree = 8;
    static constexpr int kSharedByOne = kHasManyRegisters ? 12 : 4;
    static constexpr int kSharedByThree = 6;
    static constexpr int kMirrored = kHasManyRegisters ? 8 : 2;
    // Loads of whole vectors cross the ends of cache lines, which a few taps do not make up for.
    using ShortMirror = Avx512Narrow;
    static constexpr int32_t kShortReach = 22;
    static constexpr bool kStoresMasked = true;
    using Words = __m512i;
    static constexpr int32_t kWords = 16;
    static Words fill(uint32_t value) { return _mm512_set1_epi32(static_cast<int>(value)); }
    static Words load(const uint32_t* from) { return _mm512_loadu_si512(from); }
    static void store(uint32_t* to, Words value) { _mm512_storeu_si512(to, value); }
    static Words add(Words sum, Words pair, Words tap) {
        sum = _mm512_add_epi32(sum, _mm512_madd_epi16(pair, tap));
        keepInOrder(sum);
        return sum;
    }

    /// Sums added up in another order would not fit the registers.
    static void keepInOrder(Words& sum) { asm("" : "+v"(sum)); }

    using Doubles = __m512d;
    static constexpr int32_t kDoubles = 8;
    static Doubles fill(double value) { return _mm512_set1_pd(value); }
    static Doubles load(const double* from) { return _mm512_loadu_pd(from); }
    static void store(double* to, Doubles value) { _mm512_storeu_pd(to, value); }
    static Doubles plus(Doubles a, Doubles b) { return _mm512_add_pd(a, b); }
    static Doubles add(Doubles sum, Doubles value, Doubles tap) { return _mm512_fmadd_pd(value, tap, sum); }
};

} // namespace

constinit const Kernels kAvx512Kernels = tableOf<Avx512>(InstructionSet::kAvx512);

} // namespace kovalune
