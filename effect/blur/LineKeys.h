// What pixels of a line have in common where their windows show one colour alone.
#pragma once

#include "effect/blur/PlanarOf.h"

#include <cstdint>

namespace kovalune {

/// What has to be the same in all counted pixels of a window for their mean to be theirs, for FlatWindows.h. `keyOf` is one of
/// the two keys of PlanarOf.
template <class Format, auto keyOf>
struct LineKeys {
    const typename Format::Pixel* pixels;

    auto of(int32_t x) const { return keyOf(pixels[x]); }

    static constexpr int32_t kAtOnce = 16;

    /// Whether kAtOnce pixels from `x` on have this key.
    template <class Key>
    bool areSame(int32_t x, const Key& key) const {
        auto different = PlanarOf<Format>::keyDifference(key, key);
        for (int32_t i = 0; i < kAtOnce; ++i) {
            different |= PlanarOf<Format>::keyDifference(keyOf(pixels[x + i]), key);
        }
        return different == 0;
    }

    /// Some pixels at a time.
    template <class Key>
    int32_t sameFrom(int32_t x, int32_t end, const Key& key) const {
        while (end - x >= kAtOnce && areSame(x, key)) {
            x += kAtOnce;
        }
        return x;
    }
};

} // namespace kovalune
