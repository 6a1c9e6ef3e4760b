// What there may be to do at a step, by its window alone. At most of a border's pixels that is little or nothing, and the same
// windows come up again and again, so what was found for one is kept.
#pragma once

#include "effect/smoothing/DiagonalTracers.h"
#include "effect/smoothing/FlagWindow.h"
#include "effect/smoothing/Patterns.h"
#include "effect/smoothing/RunBeginnings.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kovalune {

inline constexpr uint32_t kWorkLeft = 1U << 0; ///< a run or a taper may go out from a vertical step
inline constexpr uint32_t kWorkRight = 1U << 1;
inline constexpr uint32_t kWorkVerticalDiagonals = 1U << 2;
inline constexpr uint32_t kWorkFringe = 1U << 3;
inline constexpr uint32_t kWorkMendRight = 1U << 4;
inline constexpr uint32_t kWorkUp = 1U << 5; ///< likewise from a horizontal one
inline constexpr uint32_t kWorkDown = 1U << 6;
inline constexpr uint32_t kWorkHorizontalDiagonals = 1U << 7;
inline constexpr uint32_t kWorkMendDown = 1U << 8;
inline constexpr uint32_t kWorkMendDownRight = 1U << 9;
inline constexpr uint32_t kWorkNubOrRestore = 1U << 10;
inline constexpr uint32_t kWorkVerticalShoulders = 1U << 11;
inline constexpr uint32_t kWorkHorizontalShoulders = 1U << 12;

/// Both a falling and a rising corner stand at the step.
inline bool isCrossed(const FlagWindow& f) {
    return (f.has(0, 0, EDGE_RISING) || f.has(0, -1, EDGE_RISING)) &&
           (f.has(0, 0, EDGE_FALLING) || f.has(0, -1, EDGE_FALLING));
}

inline uint32_t workOfVerticalStep(const FlagWindow& f) {
    uint32_t work = 0;
    work |= mayGoOut(run_beginnings::kLeft, f) ? kWorkLeft : 0;
    work |= mayGoOut(run_beginnings::kRight, f) ? kWorkRight : 0;
    work |= mayTraceVertically(f) ? kWorkVerticalDiagonals : 0;
    work |= !isCrossed(f) ? kWorkFringe : 0;
    work |= mayHold<pattern_tables::kMendRightStep>(f) ? kWorkMendRight : 0;
    work |= mayHold<pattern_tables::kVerticalShoulders>(f) ? kWorkVerticalShoulders : 0;
    return work;
}

inline uint32_t workOfHorizontalStep(const FlagWindow& f) {
    uint32_t work = 0;
    work |= mayGoOut(run_beginnings::kUp, f) ? kWorkUp : 0;
    work |= mayGoOut(run_beginnings::kDown, f) ? kWorkDown : 0;
    work |= mayTraceHorizontally(f) ? kWorkHorizontalDiagonals : 0;
    work |= mayHold<pattern_tables::kMendDownStep>(f) ? kWorkMendDown : 0;
    work |= mayHold<pattern_tables::kHorizontalShoulders>(f) ? kWorkHorizontalShoulders : 0;
    return work;
}

/// All that the window does not exclude.
inline uint32_t workIn(const FlagWindow& f) {
    const bool verticalStep = f.has(0, 0, EDGE_RIGHT);
    const bool horizontalStep = f.has(0, 0, EDGE_DOWN);
    uint32_t work = isNub(f) || mayRestore(f) ? kWorkNubOrRestore : 0;
    work |= verticalStep ? workOfVerticalStep(f) : 0;
    work |= horizontalStep ? workOfHorizontalStep(f) : 0;
    if (verticalStep && horizontalStep && mayHold<pattern_tables::kMendDownRightStep>(f)) {
        work |= kWorkMendDownRight;
    }
    return work;
}

/// The same, found once as long as another window does not take its place.
class StepWorkMemo {
public:
    uint32_t workIn(const FlagWindow& f) {
        Known& known = known_[static_cast<std::size_t>((f.cells() * kSpread) >> (64 - kIndexBits))];
        return known.cells == f.cells() ? known.work : learn(known, f);
    }

private:
    static constexpr int kIndexBits = 10;
    static constexpr uint64_t kSpread = 0x9E3779B97F4A7C15U; ///< odd, its bits without a pattern

    struct Known {
        uint64_t cells = 0; ///< of no step: none is known
        uint32_t work = 0;
    };

    [[gnu::noinline]] static uint32_t learn(Known& known, const FlagWindow& f) {
        known = {f.cells(), kovalune::workIn(f)};
        return known.work;
    }

    std::array<Known, std::size_t{1} << kIndexBits> known_;
};

} // namespace kovalune
