// The sets of kernels as parameters of tests; one that this machine lacks is skipped.
#pragma once

#include "effect/kernels/Kernels.h"

#include <gtest/gtest.h>
#include <string>

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

inline auto allSets() {
    return testing::Values(InstructionSet::kPlain, InstructionSet::kSse2, InstructionSet::kAvx2,
                           InstructionSet::kAvx512);
}

inline std::string setName(const testing::TestParamInfo<InstructionSet>& test) {
    return nameOf(test.param);
}

} // namespace kovalune::test
