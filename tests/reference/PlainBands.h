// The division of lines over iterations, as a plain evaluation of its formula.
#pragma once

#include "effect/raster/Bands.h"

namespace kovalune::test {

/// Iteration `i` of `n` over `lines` lines: with q = (lines + n - 1) / n and m = lines - (q - 1) * n, the
/// first m iterations take q lines, the others q - 1.
inline Band plainBand(int32_t lines, int32_t i, int32_t n) {
    const int32_t q = (lines + n - 1) / n;
    const int32_t m = lines - (q - 1) * n;
    if (i < m) {
        return {q * i, q * (i + 1)};
    }
    const int32_t first = m * q + (i - m) * (q - 1);
    return {first, first + q - 1};
}

} // namespace kovalune::test
