// Weighted sums that are exact in any order, by a kernel that is the same on both sides: the two samples at the same distance
// are added first and multiplied once. An addition and a fused product go to different units of a processor, so that half as
// many products take about half the time.
#pragma once

#include "effect/kernels/Kernels.h"
#include "effect/kernels/impl/Weigh.h"

#include <cstdint>

namespace kovalune {
namespace {

/// Blocks of kVectors neighbouring vectors of sums of one line.
///
/// What one vector of sums takes of the line at some distance its neighbour takes one vector's width further out or in. So of
/// every so many distances one is taken at a time, and the line's parts wait in registers on both sides: a distance
/// costs two loads for all vectors.
template <class Set, int kVectors>
class MirroredBlock {
public:
    using Vector = typename Set::Doubles;
    static constexpr intptr_t kWidth = Set::kDoubles;

    __attribute__((always_inline)) MirroredBlock(const double* line, const double* taps, int32_t reach) {
        const Vector centre = Set::fill(taps[0]);
        for (int v = 0; v < kVectors; ++v) {
            sums_[v] = Set::add(Set::fill(0.0), Set::load(line + v * kWidth), centre);
        }
        for (intptr_t first = 1; first <= kWidth && first <= reach; ++first) {
            left_ = line - first;
            right_ = line + first;
            taps_ = taps + first;
            turns_ = (reach - first) / kWidth + 1;
            for (int v = 0; v < kVectors; ++v) {
                lefts_[v] = Set::load(left_ + v * kWidth);
                rights_[v] = Set::load(right_ + v * kWidth);
            }
            for (intptr_t turn = 0; addTurns<0>(turn); turn += kVectors) {
            }
        }
    }

    void store(double* sums) const {
        for (int v = 0; v < kVectors; ++v) {
            Set::store(sums + v * kWidth, sums_[v]);
        }
    }

private:
    /// kVectors turns, or those that are left: then false. Turn t is at t vectors' widths further out than the first; there
    /// vector v needs the left part v - t and the right part v + t, which stand at those numbers modulo kVectors.
    template <int kTurn>
    __attribute__((always_inline)) bool addTurns(intptr_t from) {
        if constexpr (kTurn < kVectors) {
            const intptr_t turn = from + kTurn;
            if (turn >= turns_) {
                return false;
            }
            if (turn != 0) {
                lefts_[(kVectors - kTurn) % kVectors] = Set::load(left_ - turn * kWidth);
                rights_[(kVectors - 1 + kTurn) % kVectors] =
                    Set::load(right_ + (kVectors - 1 + turn) * kWidth);
            }
            const Vector tap = Set::fill(taps_[turn * kWidth]);
            for (int v = 0; v < kVectors; ++v) {
                const Vector both =
                    Set::plus(lefts_[(v + kVectors - kTurn) % kVectors], rights_[(v + kTurn) % kVectors]);
                sums_[v] = Set::add(sums_[v], both, tap);
            }
            return addTurns<kTurn + 1>(from);
        }
        return true;
    }

    Vector sums_[kVectors * 1UL];
    Vector lefts_[kVectors * 1UL];
    Vector rights_[kVectors * 1UL];
    const double* left_;
    const double* right_;
    const double* taps_;
    intptr_t turns_;
};

/// One line from its sum `i` on, in blocks of kVectors vectors and what is left over in smaller ones.
template <class Set, int kVectors>
inline void weighMirroredFrom(const double* line, double* sums, int32_t i, int32_t count, const double* taps,
                              int32_t reach) {
    for (; count - i > (kVectors - 1) * Set::kDoubles; i += kVectors * Set::kDoubles) {
        MirroredBlock<Set, kVectors>(line + i, taps, reach).store(sums + i);
    }
    if constexpr (kVectors > 1) {
        if (i < count) {
            weighMirroredFrom<Set, kVectors - 1>(line, sums, i, count, taps, reach);
        }
    }
}

template <class Set>
inline void weighMirrored(const WeighedLines<double>& lines, const double* taps, int32_t reach) {
    for (int32_t c = 0; c < lines.channels; ++c) {
        weighMirroredFrom<Set, Set::kMirrored>(lines.line + c * lines.lineStep,
                                               lines.sums + c * lines.sumsStep, 0, lines.count, taps, reach);
    }
}

/// Below kShortReach the set's ShortMirror is quicker.
template <class Set>
void weighExactDoubles(const WeighedLines<double>& lines, const double* taps, int32_t reach) {
    if constexpr (Set::kDoubles == 1) {
        weighDoubles<Set>(lines, taps, reach);
    } else {
        if (reach < Set::kShortReach) {
            weighMirrored<typename Set::ShortMirror>(lines, taps, reach);
        } else {
            weighMirrored<Set>(lines, taps, reach);
        }
    }
}

} // namespace
} // namespace kovalune
