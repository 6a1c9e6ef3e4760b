#include "effect/kernels/Kernels.h"

#include "effect/kernels/Sets.h"

#include <array>
#include <atomic>
#include <iterator>

namespace kovalune {
namespace {

constexpr std::array<const char*, std::size(kInstructionSets)> kNames = {"plain", "sse2", "avx2", "avx512"};

const Kernels* widest() {
    const Kernels* widest = &kPlainKernels;
    for (const InstructionSet set : kInstructionSets) {
        if (const Kernels* const found = kernelsOf(set)) {
            widest = found;
        }
    }
    return widest;
}

std::atomic<const Kernels*>& inUse() {
    static std::atomic<const Kernels*> choice{widest()};
    return choice;
}

} // namespace

const Kernels* kernelsOf(InstructionSet set) {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    switch (set) {
    case InstructionSet::kPlain:
        return &kPlainKernels;
    case InstructionSet::kSse2:
        return __builtin_cpu_supports("sse2") ? &kSse2Kernels : nullptr;
    case InstructionSet::kAvx2:
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? &kAvx2Kernels : nullptr;
    case InstructionSet::kAvx512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                       __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq")
                   ? &kAvx512Kernels
                   : nullptr;
    }
    return nullptr;
#else
    return set == InstructionSet::kPlain ? &kPlainKernels : nullptr;
#endif
}

const Kernels& kernels() {
    return *inUse().load(std::memory_order_relaxed);
}

bool useInstructionSet(InstructionSet set) {
    const Kernels* const asked = kernelsOf(set);
    if (asked != nullptr) {
        inUse().store(asked, std::memory_order_relaxed);
    }
    return asked != nullptr;
}

const Kernels& exchangeKernels(const Kernels& table) {
    return *inUse().exchange(&table);
}

const char* nameOf(InstructionSet set) {
    return kNames[static_cast<std::size_t>(set)];
}

} // namespace kovalune
