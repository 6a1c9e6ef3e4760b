// AVX2 with FMA. A fused product may stand only where the product is exact by itself.
#include "effect/kernels/Sets.h"
#include "effect/kernels/impl/FourDoubles.h"
#include "effect/kernels/impl/Table.h"

#include <immintrin.h>

namespace kovalune {
namespace {

struct Avx2 : FourDoubles {
    // Vectors of sums at once, of one line or of each of three: in the stated order, in any, and mirrored.
    static constexpr int kVectorsOfOne = kHasManyRegisters ? 8 : 4;
    static constexpr int kVectorsOfThree = 4;
    static constexpr int kSharedByOne = kHasManyRegisters ? 6 : 4;
    static constexpr int kSharedByThree = 3;
    static constexpr int kMirrored = kHasManyRegisters ? 5 : 2;
    using ShortMirror = Avx2;
    static constexpr int32_t kShortReach = 0;
    static constexpr bool kStoresMasked = true;
    using Words = __m256i;
    static constexpr int32_t kWords = 8;
    using FourDoubles::add;
    using FourDoubles::fill;
    using FourDoubles::load;
    using FourDoubles::store;
    static Words fill(uint32_t value) { return _mm256_set1_epi32(static_cast<int>(value)); }
    static Words load(const uint32_t* from) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
    }
    static void store(uint32_t* to, Words value) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
    }
    static Words add(Words sum, Words pair, Words tap) {
        sum = _mm256_add_epi32(sum, _mm256_madd_epi16(pair, tap));
        keepInOrder(sum);
        return sum;
    }

    /// Sums added up in another order would not fit the registers.
    static void keepInOrder(Words& sum) { asm("" : "+x"(sum)); }
};

} // namespace

constinit const Kernels kAvx2Kernels = tableOf<Avx2>(InstructionSet::kAvx2);

} // namespace kovalune
