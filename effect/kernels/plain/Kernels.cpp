// The definition of every kernel, in plain numbers.
#include "effect/kernels/Sets.h"
#include "effect/kernels/impl/Table.h"

namespace kovalune {
namespace {

struct Plain {
    // Sums at once, of one line or of each of three: of doubles, and of pairs.
    static constexpr int kVectorsOfOne = 16;
    static constexpr int kVectorsOfThree = 8;
    static constexpr int kSharedByOne = 16;
    static constexpr int kSharedByThree = 8;
    static constexpr bool kStoresMasked = false;
    using Words = uint32_t;
    static constexpr int32_t kWords = 1;
    static Words fill(uint32_t value) { return value; }
    static Words load(const uint32_t* from) { return *from; }
    static void store(uint32_t* to, Words value) { *to = value; }
    static Words add(Words sum, Words pair, Words tap) {
        const auto product = [](uint32_t a, uint32_t b) {
            return static_cast<uint32_t>(static_cast<int16_t>(a) * static_cast<int16_t>(b));
        };
        return sum + product(pair, tap) + product(pair >> 16, tap >> 16);
    }

    using Doubles = double;
    static constexpr int32_t kDoubles = 1;
    static Doubles fill(double value) { return value; }
    static Doubles load(const double* from) { return *from; }
    static void store(double* to, Doubles value) { *to = value; }
    static Doubles add(Doubles sum, Doubles value, Doubles tap) { return sum + value * tap; }
};

} // namespace

constinit const Kernels kPlainKernels = tableOf<Plain>(InstructionSet::kPlain);

} // namespace kovalune
