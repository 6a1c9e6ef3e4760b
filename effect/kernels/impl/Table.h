// A set's table, of the functions that its flags compile here.
#pragma once

#include "effect/kernels/Kernels.h"
#include "effect/kernels/impl/Loops.h"
#include "effect/kernels/impl/Mirror.h"
#include "effect/kernels/impl/Weigh.h"

namespace kovalune {
namespace {

template <class Set>
constexpr Kernels tableOf(InstructionSet set) {
    return {.set = set,
            .splitColors16 = splitColors16,
            .splitAlpha16 = splitAlpha16,
            .splitMask = splitMask,
            .pairUp = pairUp,
            .weighPairs = weighPairs<Set>,
            .addScaled = addScaled,
            .addScaledDoubles = addScaledDoubles,
            .reciprocals = reciprocals,
            .coreMeans16 = coreMeans16,
            .wholeMeans16 = wholeMeans16,
            .mixedMeans16 = mixedMeans16,
            .flatMeans16 = flatMeans16,
            .mergeColors16 = mergeColors16,
            .layColors16 = layColors16<Set::kStoresMasked>,
            .splitColors32 = splitColors32,
            .splitAlpha32 = splitAlpha32,
            .weighDoubles = weighDoubles<Set>,
            .weighExactDoubles = weighExactDoubles<Set>,
            .coreMeans32 = coreMeans32,
            .wholeMeans32 = wholeMeans32,
            .mixedMeans32 = mixedMeans32,
            .flatMeans32 = flatMeans32,
            .mergeColors32 = mergeColors32,
            .layColors32 = layColors32};
}

} // namespace
} // namespace kovalune
