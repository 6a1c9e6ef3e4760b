// The weighted sums along lines, in registers: a block of neighbouring sums, of all channels, takes all taps before it is
// stored. `Set` tells what a vector is and what can be done with it; each set has one of its own, in an unnamed namespace.
#pragma once

#include "effect/kernels/Kernels.h"

#include <cstdint>

namespace kovalune {
namespace {

#ifdef __i386__
/// 32-bit code has eight vector registers, whatever the set.
inline constexpr bool kHasManyRegisters = false;
#else
inline constexpr bool kHasManyRegisters = true;
#endif

inline uint32_t pairOf(const uint16_t* taps) {
    return static_cast<uint32_t>(taps[0]) | static_cast<uint32_t>(taps[1]) << 16;
}

/// The set's vector of a kind of numbers. The vector is nowhere a template's argument, where it would lose what it is.
template <class Set, class Number>
struct VectorOf;

template <class Set>
struct VectorOf<Set, uint32_t> {
    using Type = typename Set::Words;
    static constexpr int32_t kWidth = Set::kWords;
};

template <class Set>
struct VectorOf<Set, double> {
    using Type = typename Set::Doubles;
    static constexpr int32_t kWidth = Set::kDoubles;
};

/// Blocks of kVectors neighbouring vectors of sums, of kChannels lines each, in registers.
template <class Set, class Number, int kChannels, int kVectors>
class SumBlock {
public:
    using Vector = typename VectorOf<Set, Number>::Type;
    static constexpr int32_t kWidth = VectorOf<Set, Number>::kWidth;

    explicit SumBlock(Number start) {
        for (auto& each : sums_) {
            each = Set::fill(start);
        }
    }

    /// Adds `tap` times what lies at `at` and after it, for each vector its own part.
    void addTap(const WeighedLines<Number>& lines, const Number* at, Vector tap) {
        for (int c = 0; c < kChannels; ++c) {
            for (int v = 0; v < kVectors; ++v) {
                auto& each = sums_[c * kVectors + v];
                each = Set::add(each, Set::load(at + c * lines.lineStep + v * kWidth), tap);
            }
        }
    }

    /// Adds `taps` taps, which `tapAt(k)` tells, of what lies at `at` and after it, from each to the next kStep entries further.
    ///
    /// What a vector of sums takes of the line for some tap, the vector on its left takes some taps later. So of every so many
    /// taps one is taken at a time: each part of the line is loaded once and multiplied for all vectors, while the taps wait
    /// in registers for their turn.
    template <int kStep, class Tap>
    void addTaps(const WeighedLines<Number>& lines, const Number* at, int32_t taps, const Tap& tapAt) {
        constexpr int32_t kEvery = kWidth / kStep;
        for (int32_t first = 0; first < kEvery && first < taps; ++first) {
            const int32_t own = (taps - first + kEvery - 1) / kEvery;
            const Number* const parts = at + first * kStep;
            const auto ownTap = [&](int32_t turn) { return tapAt(first + turn * kEvery); };
            if constexpr (kVectors > 1) {
                if (own >= kVectors) {
                    addShared(lines, parts, own, ownTap);
                    continue;
                }
            }
            for (int32_t k = 0; k < own; ++k) {
                addTap(lines, parts + k * kWidth, ownTap(k));
            }
        }
    }

    void store(const WeighedLines<Number>& lines, int32_t i) const {
        for (int c = 0; c < kChannels; ++c) {
            for (int v = 0; v < kVectors; ++v) {
                Set::store(lines.sums + c * lines.sumsStep + i + v * kWidth, sums_[c * kVectors + v]);
            }
        }
    }

private:
    /// At turn t of a part vector v takes tap t - v, of which there are `own`, at least kVectors.
    template <class Tap>
    __attribute__((always_inline)) void addShared(const WeighedLines<Number>& lines, const Number* parts,
                                                  int32_t own, const Tap& tapAt) {
        addFirst<0>(lines, parts, tapAt);
        int32_t turn = kVectors - 1;
        Vector waiting[kVectors + 0UL]; // tap k at k modulo kVectors
        for (int k = 0; k < kVectors - 1; ++k) {
            waiting[k] = tapAt(k);
        }
        const Number* part = parts + turn * kWidth;
        for (; own - turn >= kVectors; turn += kVectors) {
            addTurns<0>(
                lines, part, [&](int32_t k) { return tapAt(turn + k); }, waiting);
            part += kVectors * kWidth;
        }
        for (; turn < own; ++turn) {
            addPart<0, kVectors>(lines, part, turn, tapAt);
            part += kWidth;
        }
        addLast<1>(lines, part, own, tapAt);
    }

    /// One part, for the vectors from kFirst to before kPast.
    template <int kFirst, int kPast, class Tap>
    __attribute__((always_inline)) void addPart(const WeighedLines<Number>& lines, const Number* part,
                                                int32_t turn, const Tap& tapAt) {
        for (int c = 0; c < kChannels; ++c) {
            const Vector samples = Set::load(part + c * lines.lineStep);
            for (int v = kFirst; v < kPast; ++v) {
                auto& each = sums_[c * kVectors + v];
                each = Set::add(each, samples, tapAt(turn - v));
            }
        }
    }

    /// The turns at which the vectors begin, one after the other.
    template <int kTurn, class Tap>
    __attribute__((always_inline)) void addFirst(const WeighedLines<Number>& lines, const Number* parts,
                                                 const Tap& tapAt) {
        if constexpr (kTurn < kVectors - 1) {
            addPart<0, kTurn + 1>(lines, parts, kTurn, tapAt);
            addFirst<kTurn + 1>(lines, parts + kWidth, tapAt);
        }
    }

    /// And those at which they end.
    template <int kFirst, class Tap>
    __attribute__((always_inline)) void addLast(const WeighedLines<Number>& lines, const Number* parts,
                                                int32_t turn, const Tap& tapAt) {
        if constexpr (kFirst < kVectors) {
            addPart<kFirst, kVectors>(lines, parts, turn, tapAt);
            addLast<kFirst + 1>(lines, parts + kWidth, turn + 1, tapAt);
        }
    }

    /// kVectors parts; the first one's turn is kVectors - 1 or some kVectors later.
    template <int kTurn, class Tap>
    __attribute__((always_inline)) void addTurns(const WeighedLines<Number>& lines, const Number* parts,
                                                 const Tap& tapAt, Vector* waiting) {
        if constexpr (kTurn < kVectors) {
            constexpr int kNewest = (kTurn + kVectors - 1) % kVectors;
            waiting[kNewest] = tapAt(kTurn);
            for (int c = 0; c < kChannels; ++c) {
                const Vector samples = Set::load(parts + kTurn * kWidth + c * lines.lineStep);
                for (int v = 0; v < kVectors; ++v) {
                    auto& each = sums_[c * kVectors + v];
                    each = Set::add(each, samples, waiting[(kNewest + kVectors - v) % kVectors]);
                }
            }
            addTurns<kTurn + 1>(lines, parts, tapAt, waiting);
        }
    }

    Vector sums_[kChannels * 1UL * kVectors];
};

struct PairTaps {
    const uint16_t* taps;
    int32_t tapPairs;
    uint32_t start;
};

template <class Set, int kChannels, int kVectors>
inline void weighBlock(const WeighedLines<uint32_t>& lines, int32_t i, const PairTaps& with) {
    SumBlock<Set, uint32_t, kChannels, kVectors> sums(with.start);
    const auto tapAt = [&](intptr_t k) { return Set::fill(pairOf(with.taps + k * 2)); };
    if constexpr (Set::kWords > 1) {
        sums.template addTaps<2>(lines, lines.line + i, with.tapPairs, tapAt);
    } else {
        for (intptr_t k = 0; k < with.tapPairs; ++k) {
            sums.addTap(lines, lines.line + i + 2 * k, tapAt(k));
        }
    }
    sums.store(lines, i);
}

struct DoubleTaps {
    const double* taps;
    int32_t reach;
};

template <class Set, int kChannels, int kVectors>
inline void weighBlock(const WeighedLines<double>& lines, int32_t i, const DoubleTaps& with) {
    SumBlock<Set, double, kChannels, kVectors> sums(0.0);
    const double* const centre = lines.line + i;
    for (int32_t k = 1; k <= with.reach; ++k) {
        sums.addTap(lines, centre - k, Set::fill(with.taps[k]));
    }
    for (int32_t k = 0; k <= with.reach; ++k) {
        sums.addTap(lines, centre + k, Set::fill(with.taps[k]));
    }
    sums.store(lines, i);
}

/// All lines in blocks of kVectors vectors of `step` entries, and what is left over in smaller ones.
template <class Set, int kChannels, int kVectors, class Number, class Taps>
inline void weighFrom(const WeighedLines<Number>& lines, int32_t i, int32_t step, const Taps& with) {
    for (; lines.count - i > (kVectors - 1) * step; i += kVectors * step) {
        weighBlock<Set, kChannels, kVectors>(lines, i, with);
    }
    if constexpr (kVectors > 1) {
        if (i < lines.count) {
            weighFrom<Set, kChannels, kVectors - 1>(lines, i, step, with);
        }
    }
}

/// Three lines at once, in blocks of kOfThree vectors, or each by itself, in blocks of kOfOne.
template <class Set, int kOfOne, int kOfThree, class Number, class Taps>
inline void weighLines(const WeighedLines<Number>& lines, const Taps& with) {
    constexpr int32_t kStep = VectorOf<Set, Number>::kWidth;
    if constexpr (kHasManyRegisters) {
        if (lines.channels == 3) {
            weighFrom<Set, 3, kOfThree>(lines, 0, kStep, with);
            return;
        }
    }
    WeighedLines<Number> each = lines;
    for (int32_t c = 0; c < lines.channels; ++c) {
        weighFrom<Set, 1, kOfOne>(each, 0, kStep, with);
        each.line += lines.lineStep;
        each.sums += lines.sumsStep;
    }
}

template <class Set>
void weighPairs(const WeighedLines<uint32_t>& lines, const uint16_t* taps, int32_t tapPairs, uint32_t start) {
    weighLines<Set, Set::kSharedByOne, Set::kSharedByThree>(lines, PairTaps{taps, tapPairs, start});
}

template <class Set>
void weighDoubles(const WeighedLines<double>& lines, const double* taps, int32_t reach) {
    weighLines<Set, Set::kVectorsOfOne, Set::kVectorsOfThree>(lines, DoubleTaps{taps, reach});
}

} // namespace
} // namespace kovalune
