// What the colour extension does along one line, a row or a column alike, around what is active there: how far the ends of
// each stretch of core reach, and which of the entries that a crossing spread left on the line lies nearest. The first takes time in
// proportion to the line's length, whatever the reach is; so does the second but where the nearest entry of all
// has just left the reach, and a walk over the reach finds the next one.
#pragma once

#include "effect/raster/MaskPlane.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kovalune {

inline constexpr int32_t kNowhere = -1;

/// No distance on a plane and no length of a search gets this far, so that a longer reach changes neither.
inline constexpr int32_t kFarthest = MaskPlane16::kFar;

/// One line of both masks.
struct ExtendLine {
    const uint8_t* limit; ///< what may receive colour
    const uint8_t* seed;  ///< the core, which gives it
    int32_t length;
    int32_t reach; ///< whole pixels, 0 to kFarthest; walks end one short of it
};

/// A part of a line, of which nothing beyond its ends makes a difference to what is inside, nor the other way round.
struct Stretch {
    int32_t first;
    int32_t end;
};

/// Calls `visit` with the stretches around what is active on a line, in order: as far as `reach` to both sides of it.
///   nextActive, nextIdle  the first such position from the given one on, or `length`
template <class NextActive, class NextIdle, class Visit>
void forEachStretch(int32_t length, int32_t reach, const NextActive& nextActive, const NextIdle& nextIdle,
                    const Visit& visit) {
    const int32_t margin = std::max(reach, 1); // so that a stretch begins and ends with what is idle
    for (int32_t active = nextActive(0); active < length;) {
        const int32_t first = std::max(active - margin, 0);
        int32_t idle = nextIdle(active);
        for (active = nextActive(idle); active < length && active - idle < 2 * margin;) {
            idle = nextIdle(active);
            active = nextActive(idle);
        }
        visit(Stretch{first, std::min(idle + margin, length)});
    }
}

/// The first position from `p` on whose distance is known, or `end`.
inline int32_t nextKnown(const uint16_t* distances, int32_t p, int32_t end) {
    constexpr uint64_t kFour = uint64_t{MaskPlane16::kFar} * 0x0001000100010001;
    uint64_t four = kFour;
    for (; end - p >= 4; p += 4) {
        std::memcpy(&four, distances + p, sizeof four);
        if (four != kFour) {
            break;
        }
    }
    while (p < end && distances[p] == MaskPlane16::kFar) {
        ++p;
    }
    return p;
}

inline int32_t nextUnknown(const uint16_t* distances, int32_t p, int32_t end) {
    while (p < end && distances[p] != MaskPlane16::kFar) {
        ++p;
    }
    return p;
}

/// For each position of a stretch, which position of core a spread reached it from, or kNowhere. Both ends of a stretch of
/// core spread, never onto the line's outermost position on their side. The nearer one wins, the one before
/// the position where both are as near. A position of core tells which earlier stretch passed over it.
inline void spreadLine(const ExtendLine& line, const Stretch& stretch, bool stopAtGap, int32_t* from) {
    const int32_t last = line.length - 1;
    int32_t origin = kNowhere;
    for (int32_t p = stretch.first; p < stretch.end; ++p) {
        const bool isGap = line.limit[p] == 0;
        if (isGap && stopAtGap) {
            origin = kNowhere;
        }
        const bool isReached = origin != kNowhere && !isGap && p < last && p - origin < line.reach;
        from[p] = isReached ? origin : kNowhere;
        if (line.seed[p] != 0 && p < last && line.seed[p + 1] == 0) {
            origin = p;
        }
    }
    origin = kNowhere;
    for (int32_t p = stretch.end - 1; p >= std::max(stretch.first, 1); --p) {
        const bool isGap = line.limit[p] == 0;
        if (isGap && stopAtGap) {
            origin = kNowhere;
        }
        if (line.seed[p] != 0) {
            origin = line.seed[p - 1] == 0 ? p : origin;
        } else if (origin != kNowhere && !isGap && origin - p < line.reach &&
                   (from[p] == kNowhere || origin - p < p - from[p])) {
            from[p] = origin;
        }
    }
}

/// The entry of a line that a search found. Lengths are compared as squares: up to kFarthest, the roots of
/// different whole numbers differ as floats too.
struct NearestEntry {
    int32_t at = kNowhere;
    int32_t squared = kFarthest * kFarthest; ///< offset and distance together; this much means none
};

/// The entries that a sweep has passed, of which it keeps those that can still become the nearest: a queue in
/// the order of their turns. Times grow by 1 a position. At the time `t` the entry that was passed at time `a`
/// with distance `e` is `(t - a)^2 + e^2` away, so that a later entry, once it is as near, stays ahead.
class PassedEntries {
public:
    struct Entry {
        int32_t passed;
        int32_t squared; ///< its distance
        int32_t turn;    ///< the time from which on it is as near as the entry before it in the queue
    };

    /// `storage` holds as many entries as the line is long.
    explicit PassedEntries(Entry* storage) : entries_(storage) {}

    void clear() { first_ = end_ = 0; }
    bool isEmpty() const { return first_ == end_; }
    int32_t latest() const { return entries_[end_ - 1].passed; }

    void add(int32_t time, int32_t squared) {
        int32_t turn = time;
        for (; !isEmpty(); --end_) {
            const Entry& before = entries_[end_ - 1];
            if (squared > before.squared) {
                turn = turnAgainst(before, time, squared);
                if (turn > before.turn) {
                    break;
                }
            }
        }
        turn = isEmpty() ? time : turn;
        entries_[end_++] = {time, squared, turn};
    }

    /// The nearest at `time`, the later one of a tie. Times of calls never fall; nothing may be empty.
    const Entry& nearest(int32_t time) {
        while (first_ + 1 < end_ && entries_[first_ + 1].turn <= time) {
            ++first_;
        }
        return entries_[first_];
    }

private:
    /// For a later entry that is further from the line than `before`.
    static int32_t turnAgainst(const Entry& before, int32_t time, int32_t squared) {
        const int32_t apart = time - before.passed;
        const int32_t lead = (squared - before.squared + apart - 1) / apart;
        return (time + before.passed + lead + 1) >> 1;
    }

    Entry* entries_;
    int32_t first_ = 0;
    int32_t end_ = 0;
};

enum class Look { kBack, kAhead };

/// One way of a search: back from each position, itself included, or ahead of it. A look back never sees
/// position 0, and none sees beyond a gap. Improves `nearest` where it finds something strictly nearer.
template <Look kLook>
class LineSearch {
public:
    LineSearch(const ExtendLine& line, const uint16_t* distances) : line_(line), distances_(distances) {}

    void run(const Stretch& stretch, PassedEntries& passed, NearestEntry* nearest) const {
        passed.clear();
        int32_t p = kLook == Look::kBack ? stretch.first : stretch.end - 1;
        for (int32_t left = stretch.end - stretch.first; left > 0; --left, p += kStep) {
            if (line_.limit[p] == 0) {
                passed.clear();
                continue;
            }
            if (kLook == Look::kBack) {
                pass(p, passed);
            }
            if (line_.seed[p] == 0 && !passed.isEmpty()) {
                improve(p, passed, nearest[p]);
            }
            if (kLook == Look::kAhead) {
                pass(p, passed);
            }
        }
    }

private:
    static constexpr int32_t kStep = kLook == Look::kBack ? 1 : -1;

    void pass(int32_t p, PassedEntries& passed) const {
        const int32_t distance = distances_[p];
        if (distance != MaskPlane16::kFar && (kLook == Look::kAhead || p > 0)) {
            passed.add(kStep * p, distance * distance);
        }
    }

    void improve(int32_t p, PassedEntries& passed, NearestEntry& nearest) const {
        const int32_t time = kStep * p;
        if (time - passed.latest() >= line_.reach) {
            passed.clear();
            return;
        }
        const PassedEntries::Entry& entry = passed.nearest(time);
        const int32_t offset = time - entry.passed;
        if (offset >= kFarthest || offset * offset + entry.squared >= nearest.squared) {
            return;
        }
        if (offset < line_.reach) {
            nearest = {p - kStep * offset, offset * offset + entry.squared};
        } else {
            walk(p, nearest);
        }
    }

    /// The search in plain steps: the nearest entry of all has fallen behind the reach, and the queue has let
    /// go of entries that were never nearer than that one.
    void walk(int32_t p, NearestEntry& nearest) const {
        const int32_t farthest =
            kLook == Look::kBack ? std::min(line_.reach, p) : std::min(line_.reach, line_.length - p);
        for (int32_t o = kLook == Look::kBack ? 0 : 1; o < farthest && o * o < nearest.squared; ++o) {
            const int32_t at = p - kStep * o;
            if (line_.limit[at] == 0) {
                return;
            }
            const int32_t distance = distances_[at];
            const int32_t squared = o * o + distance * distance;
            if (distance != MaskPlane16::kFar && squared < nearest.squared) {
                nearest = {at, squared};
            }
        }
    }

    const ExtendLine& line_;
    const uint16_t* distances_;
};

/// For each position of a stretch that belongs to the area outside the core, the nearest entry within reach: of several as
/// near, one found by looking back, and of those the one at the smallest offset.
inline void searchLine(const ExtendLine& line, const Stretch& stretch, const uint16_t* distances,
                       PassedEntries& passed, NearestEntry* nearest) {
    std::fill(nearest + stretch.first, nearest + stretch.end, NearestEntry{});
    LineSearch<Look::kBack>(line, distances).run(stretch, passed, nearest);
    LineSearch<Look::kAhead>(line, distances).run(stretch, passed, nearest);
}

} // namespace kovalune
