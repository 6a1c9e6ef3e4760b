// Which pixels of a stretch see one colour alone: their window's counted pixels are all the same, so their mean is
// known without a sum. In drawings that is most of them.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskRuns.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// The last masked-in place of [first, x) whose key is another one, or `first` - 1.
template <class Keys, class Key>
int32_t lastOther(const uint8_t* mask, int32_t first, int32_t x, const Keys& keys, const Key& key) {
    constexpr int32_t kAtOnce = Keys::kAtOnce;
    for (int32_t j = x - 1; j >= first; --j) {
        if (mask[j] != 0 && keys.of(j) != key) {
            return j;
        }
        while (j - kAtOnce >= first && nextMaskedOut(mask, j - kAtOnce, j) == j &&
               keys.areSame(j - kAtOnce, key)) {
            j -= kAtOnce;
        }
    }
    return first - 1;
}

/// The first masked-in place of [x, end) whose key is another one, or `end`.
template <class Keys, class Key>
int32_t firstOther(const uint8_t* mask, int32_t x, int32_t end, const Keys& keys, const Key& key) {
    for (int32_t run = nextMaskedIn(mask, x, end); run < end;) {
        const int32_t runEnd = nextMaskedOut(mask, run, end);
        for (int32_t j = keys.sameFrom(run, runEnd, key); j < runEnd; ++j) {
            if (keys.of(j) != key) {
                return j;
            }
        }
        run = nextMaskedIn(mask, runEnd, end);
    }
    return end;
}

/// Divides a part of a stretch, whose two ends are masked in and which has no hole of `reach` or more, into `flat(from, past, like)`
/// and `mixed(from, past)`, in order and without gaps; masked-out pixels may fall to either. All pixels that count in a window of
/// `reach` pixels to either side of a flat one are like the pixel at `like`: `keys.of(j)` is what they have in common, and
/// `keys.sameFrom(j, end, key)` how far from `j` on pixels are sure to have this key.
///
/// A window is looked at from its right end: where two pixels differ there, as in noise, all windows that hold both are
/// passed over at once. Where that happens again and again more and more is passed over, which may be flat and is told as
/// mixed.
template <class Keys, class Flat, class Mixed>
void divideByFlatness(const uint8_t* mask, Span stretch, Span part, int32_t reach, const Keys& keys,
                      const Flat& flat, const Mixed& mixed) {
    constexpr int32_t kPatience = 4; // windows in a row that are not flat
    constexpr int32_t kFurther = 16; // pixels more with each that follows
    constexpr int32_t kMostPassedOver = 128;
    const auto [first, last] = stretch;
    int32_t told = part.first; // everything before has been handed out
    int32_t passedOver = -kFurther * kPatience;
    for (int32_t x = part.first; x <= part.last;) {
        const int32_t right = std::min(last, x + reach);
        const int32_t like = endOfMaskedIn(mask, first, right + 1) - 1;
        const auto key = keys.of(like);
        const int32_t left = std::max(first, x - reach);
        const int32_t other = lastOther(mask, left, like, keys, key);
        if (other >= left) {
            passedOver = std::min(passedOver + kFurther, kMostPassedOver);
            x = std::max(other + reach + 1, x + passedOver);
            continue;
        }
        passedOver = -kFurther * kPatience;
        const int32_t next = firstOther(mask, right + 1, last + 1, keys, key);
        const int32_t past = std::min(part.last + 1, next > last ? last + 1 : next - reach);
        if (told < x) {
            mixed(told, x);
        }
        flat(x, past, like);
        told = past;
        if (past > part.last) {
            break;
        }
        x = endOfMaskedIn(mask, first, next) + reach;
    }
    if (told <= part.last) {
        mixed(told, part.last + 1);
    }
}

} // namespace kovalune
