// The sets of kernels as parameters of tests; one that this machine lacks is skipped.
#pragma once

#include "effect/kernels/Kernels.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kovalune::test {

class KernelTest : public testing::TestWithParam<InstructionSet> {
protected:
    void SetUp() override {
        if (kernelsOf(GetParam()) == nullptr) {
            GTEST_SKIP() << "this machine has no " << nameOf(GetParam());
        }
    }
    static const Kernels& kernel() { return *kernelsOf(GetParam()); }
};

/// Under Wine those of this machine alone, since nothing is skipped there.
inline std::vector<InstructionSet> allSets() {
    std::vector<InstructionSet> sets;
    for (const InstructionSet set : kInstructionSets) {
#ifdef _WIN32
        if (kernelsOf(set) == nullptr) {
            continue;
        }
#endif
        sets.push_back(set);
    }
    return sets;
}

inline std::string setName(const testing::TestParamInfo<InstructionSet>& test) {
    return nameOf(test.param);
}

} // namespace kovalune::test
