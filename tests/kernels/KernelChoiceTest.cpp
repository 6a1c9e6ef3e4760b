// Which set of kernels is in use, and which can be had.
#include "effect/kernels/Kernels.h"

#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

TEST(KernelChoice, IsTheWidestSetOfTheMachine) {
    const InstructionSet first = kernels().set;
    for (const InstructionSet set : kInstructionSets) {
        EXPECT_EQ(kernelsOf(set) != nullptr && set > first, false) << nameOf(set);
    }
}

TEST(KernelChoice, TakesEachSetThatTheMachineHasAndNoOther) {
    const InstructionSet first = kernels().set;
    for (const InstructionSet set : kInstructionSets) {
        const InstructionSet before = kernels().set;
        const bool has = kernelsOf(set) != nullptr;
        EXPECT_EQ(useInstructionSet(set), has);
        EXPECT_EQ(kernels().set, has ? set : before);
    }
    EXPECT_TRUE(useInstructionSet(first));
}

TEST(KernelChoice, HasThePlainSetEverywhere) {
    ASSERT_NE(kernelsOf(InstructionSet::kPlain), nullptr);
    EXPECT_EQ(kernelsOf(InstructionSet::kPlain)->set, InstructionSet::kPlain);
}

TEST(KernelChoice, NamesTheSetsAsUsersWriteThem) {
    const std::string names[] = {"plain", "sse2", "avx2", "avx512"};
    for (const InstructionSet set : kInstructionSets) {
        EXPECT_EQ(nameOf(set), names[static_cast<std::size_t>(set)]);
        if (const Kernels* const found = kernelsOf(set)) {
            EXPECT_EQ(found->set, set);
        }
    }
}

} // namespace
} // namespace kovalune::test
