// Which pixels of a stretch see one colour alone: their window's counted pixels are all the same, so their mean is
// known without a sum. In drawings that is most of them.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskRuns.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// Divides [first, end), whose two ends are masked in, into `flat(from, past)` and `mixed(from, past)`, in order and without
/// gaps. Masked-out pixels may fall to either. `keyOf(j)` is what must be the same in all pixels that count in a window of
/// `reach` pixels to either side.
template <class KeyOf, class Flat, class Mixed>
void divideByFlatness(const uint8_t* mask, Span stretch, int32_t reach, const KeyOf& keyOf, const Flat& flat,
                      const Mixed& mixed) {
    const int32_t end = stretch.last + 1;
    int32_t told = stretch.first; // everything before has been handed out
    int32_t before =
        stretch.first - reach - 1; // the last pixel of another colour, or too far away to be seen
    int32_t groupFirst = stretch.first;
    auto key = keyOf(stretch.first);
    const auto closeGroup = [&](int32_t last, int32_t next) {
        const int32_t from = std::max(groupFirst, before + reach + 1);
        const int32_t past = std::min(last, next - reach - 1) + 1;
        if (from < past) {
            if (told < from) {
                mixed(told, from);
            }
            flat(from, past);
            told = past;
        }
    };
    int32_t last = stretch.first;
    forEachRun(mask, stretch.first, end, [&](int32_t runFirst, int32_t runEnd) {
        for (int32_t j = runFirst; j < runEnd; ++j) {
            const auto here = keyOf(j);
            if (here != key) {
                closeGroup(last, j);
                before = last;
                groupFirst = j;
                key = here;
            }
            last = j;
        }
    });
    closeGroup(last, end + reach);
    if (told < end) {
        mixed(told, end);
    }
}

} // namespace kovalune
