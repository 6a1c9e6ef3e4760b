#include "effect/Kovalune.h"
#include "effect/kernels/Kernels.h"

#include <array>

namespace kovalune {
namespace {

constexpr std::array<InstructionSet, kInstructionSets> kSets = {
    InstructionSet::kPlain, InstructionSet::kSse2, InstructionSet::kAvx2, InstructionSet::kAvx512};

} // namespace

std::vector<std::string> instructionSets() {
    std::vector<std::string> names;
    for (const InstructionSet set : kSets) {
        if (kernelsOf(set) != nullptr) {
            names.emplace_back(nameOf(set));
        }
    }
    return names;
}

std::string instructionSet() {
    return nameOf(kernels().set);
}

bool useInstructionSet(const std::string& name) {
    for (const InstructionSet set : kSets) {
        if (name == nameOf(set)) {
            return useInstructionSet(set);
        }
    }
    return false;
}

} // namespace kovalune
