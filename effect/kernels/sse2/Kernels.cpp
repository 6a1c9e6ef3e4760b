// The baseline of 64-bit x86, and of every machine that the hosts run on.
#include "effect/kernels/Sets.h"
#include "effect/kernels/impl/Table.h"

#include <immintrin.h>

namespace kovalune {
namespace {

struct Sse2 {
    // Vectors of sums at once, of one line or of each of three: in the stated order, in any, and mirrored.
    static constexpr int kVectorsOfOne = kHasManyRegisters ? 8 : 4;
    static constexpr int kVectorsOfThree = 4;
    static constexpr int kSharedByOne = kHasManyRegisters ? 6 : 4;
    static constexpr int kSharedByThree = 3;
    static constexpr int kMirrored = kHasManyRegisters ? 5 : 2;
    using ShortMirror = Sse2;
    static constexpr int32_t kShortReach = 0;
    static constexpr bool kStoresMasked = false;
    using Words = __m128i;
    static constexpr int32_t kWords = 4;
    static Words fill(uint32_t value) { return _mm_set1_epi32(static_cast<int>(value)); }
    static Words load(const uint32_t* from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    }
    static void store(uint32_t* to, Words value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value); }
    static Words add(Words sum, Words pair, Words tap) {
        sum = _mm_add_epi32(sum, _mm_madd_epi16(pair, tap));
        keepInOrder(sum);
        return sum;
    }

    /// Sums added up in another order would not fit the registers.
    static void keepInOrder(Words& sum) { asm("" : "+x"(sum)); }

    using Doubles = __m128d;
    static constexpr int32_t kDoubles = 2;
    static Doubles fill(double value) { return _mm_set1_pd(value); }
    static Doubles load(const double* from) { return _mm_loadu_pd(from); }
    static void store(double* to, Doubles value) { _mm_storeu_pd(to, value); }
    static Doubles plus(Doubles a, Doubles b) { return _mm_add_pd(a, b); }
    static Doubles add(Doubles sum, Doubles value, Doubles tap) {
        return _mm_add_pd(sum, _mm_mul_pd(value, tap));
    }
};

} // namespace

constinit const Kernels kSse2Kernels = tableOf<Sse2>(InstructionSet::kSse2);

} // namespace kovalune
