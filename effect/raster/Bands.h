// The division of a pass's lines (rows or columns) over the iterations of one call to the host, and that
// call.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// Half-open range of lines. A band without lines has `first` equal to `end`.
struct Band {
    int32_t first;
    int32_t end;
};

/// The band of iteration `i` of `n` over `lines` lines: as even as possible, the longer bands first.
inline Band bandOf(int32_t lines, int32_t i, int32_t n) {
    const auto total = static_cast<int64_t>(lines);
    const int64_t longLines = (total + n - 1) / n;
    const int64_t longBands = total - (longLines - 1) * n;
    const bool isLong = i < longBands;
    const int64_t first = isLong ? longLines * i : longBands * longLines + (i - longBands) * (longLines - 1);
    const int64_t end = first + (isLong ? longLines : longLines - 1);
    return {static_cast<int32_t>(first), static_cast<int32_t>(end)};
}

/// The form of a function that the host iterates: record, thread index, iteration, number of iterations.
using PassFunction = PF_Err (*)(void*, A_long, A_long, A_long);

/// Runs `pass` over `record`, spread over `iterations` iterations (PF_Iterations_ONCE_PER_PROCESSOR: one a
/// processor). Returns when all are done; the record is shared read-only by all of them.
template <class Record>
[[nodiscard]] PF_Err iterate(PF_InData* inData, A_long iterations, Record& record, PassFunction pass) {
    return inData->utils->iterate_generic(iterations, &record, pass);
}

template <class Record>
[[nodiscard]] PF_Err iterate(PF_InData* inData, Record& record, PassFunction pass) {
    return iterate(inData, PF_Iterations_ONCE_PER_PROCESSOR, record, pass);
}

} // namespace kovalune
