// Part of programs whose tests run once for each instruction set: works with the one that KOVALUNE_TEST_SET names. Where the
// machine lacks it, or where it is the one that is chosen anyhow, the program ends with the code for a skipped test.
#include "effect/kernels/Kernels.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kovalune::test {
namespace {

constexpr int kSkipped = 77;

bool useTheSetOfTheEnvironment() {
    const char* const asked = std::getenv("KOVALUNE_TEST_SET");
    if (asked == nullptr) {
        return false;
    }
    for (const InstructionSet set : kInstructionSets) {
        if (std::string(asked) == nameOf(set) && set != kernels().set && useInstructionSet(set)) {
            std::printf("with %s\n", asked);
            return true;
        }
    }
    std::printf("skipped: %s is the set in use, or this machine has none\n", asked);
    std::exit(kSkipped);
}

const bool kIsChosen = useTheSetOfTheEnvironment();

} // namespace
} // namespace kovalune::test
