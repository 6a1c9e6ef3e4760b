#include "effect/Kovalune.h"
#include "effect/kernels/Kernels.h"

namespace kovalune {

std::vector<std::string> instructionSets() {
    std::vector<std::string> names;
    for (const InstructionSet set : kInstructionSets) {
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
    for (const InstructionSet set : kInstructionSets) {
        if (name == nameOf(set)) {
            return useInstructionSet(set);
        }
    }
    return false;
}

} // namespace kovalune
